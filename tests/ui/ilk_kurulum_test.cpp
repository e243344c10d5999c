// The first day: no sys.inf, one window, and the console with a company of example data behind it.
#include "company/ilk_kurulum.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

#include "db/drivers.h"
#include "platform/files.h"
#include "screen.h"
#include "session/ui/giris_frm.h"
#include "session/ui/ilk_kurulum_penceresi.h"

namespace {

using namespace screen;

class IlkKurulumEkrani : public testing::Test, protected support::FakeSurroundings {
 protected:
  void SetUp() override {
    platform.folder = folder.path().toStdString();
    oturum.Server_Adi = oturum.SQL_Login = oturum.SQL_Sifre = "";
    yerel_ = db::makeConnectionFactory(platform.folder);
    oturum.surucu = yerel_.get();
  }
  std::filesystem::path inf() const { return session::sysInfYolu(platform.folder); }
  QTemporaryDir folder;
  std::unique_ptr<db::ConnectionFactory> yerel_;
};

TEST_F(IlkKurulumEkrani, WithoutAParameterFileTheMachineIsPreparedFromTheLogin) {
  session_ui::GirisFrm giris(oturum, {});
  QSignalSpy konsol(&giris, &session_ui::GirisFrm::konsolAc);
  whenModal<session_ui::IlkKurulumPenceresi>([this](session_ui::IlkKurulumPenceresi& shown) {
    auto* pencere = &shown;
    EXPECT_TRUE(find<QLabel>(*pencere, "NedenLbl")->text().contains(QString::fromStdString(inf().string())));
    EXPECT_TRUE(find<QRadioButton>(*pencere, "HazirlaYolu")->isChecked());
    const std::pair<const char*, const char*> kurallar[] = {
        {"şifre", "Yönetici şifresinde Türkçe harf ya da bu şifrelemeye sığmayan karakter olamaz."},
        {"0123456789012345", "Yönetici şifresi en çok 15 karakter olabilir."},
        {"Gizli1", ""}};
    for (const auto& [sifre, hata] : kurallar) {
      type(find<QLineEdit>(*pencere, "YoneticiSifre"), sifre);
      EXPECT_EQ(find<QLabel>(*pencere, "HataLbl")->text(), hata) << "said while it is typed";
    }
    type(find<QLineEdit>(*pencere, "YoneticiSifre2"), "Gizli2");
    EXPECT_EQ(find<QLabel>(*pencere, "HataLbl")->text(), "İki şifre birbirinden farklı.");
    type(find<QLineEdit>(*pencere, "YoneticiSifre2"), "Gizli1");
    QTest::mouseClick(find<QPushButton>(*pencere, "KurTamamBtn"), Qt::LeftButton);
    if (pencere->isVisible()) {
      ADD_FAILURE() << find<QLabel>(*pencere, "HataLbl")->text().toStdString();
      pencere->reject();
    }
  });
  giris.show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return konsol.count() == 1; }, 20000)) << boxes.last();
  EXPECT_EQ(oturum.Giris_Hatali, 0);
  EXPECT_TRUE(oturum.Supervisor);
  EXPECT_EQ(oturum.Server_Adi, "(yerel)");
  EXPECT_TRUE(platform::readFile(inf())->starts_with("(yerel);sa;" + oturum.SQL_Sifre + ";0;"));
  EXPECT_EQ(std::filesystem::status(inf()).permissions() & std::filesystem::perms::all,
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(IlkKurulumEkrani, AServerIsTestedBeforeItIsSaved) {
  oturum.surucu = &factory;
  session_ui::IlkKurulumPenceresi pencere(oturum, "sys.inf bulunamadı.", nullptr);
  screen::show(pencere);
  find<QRadioButton>(pencere, "BaglanYolu")->click();
  type(find<QLineEdit>(pencere, "SunucuAdi"), "ANASUNUCU");
  type(find<QLineEdit>(pencere, "SqlSifre"), "gizli");
  server.failOpening(db::SqlError(db::ErrorKind::LoginRefused, 18456, "Login failed"));
  find<QPushButton>(pencere, "SinaBtn")->click();
  EXPECT_EQ(find<QLabel>(pencere, "HataLbl")->text(),
            "Sunucu yanıt verdi, ama SQL kullanıcı adını ya da şifresini kabul etmedi.");
  server.failOpening(db::SqlError(db::ErrorKind::LinkBroken, 0, "yanıt yok"));
  find<QPushButton>(pencere, "KurTamamBtn")->click();
  EXPECT_EQ(find<QLabel>(pencere, "HataLbl")->text(), "Sunucuya bağlanılamadı: yanıt yok");
  EXPECT_FALSE(std::filesystem::exists(inf())) << "nothing is saved untested";
  EXPECT_EQ(oturum.Server_Adi, "");
  find<QPushButton>(pencere, "SinaBtn")->click();
  EXPECT_TRUE(find<QLabel>(pencere, "IyiLbl")->isVisible());
  find<QPushButton>(pencere, "KurTamamBtn")->click();
  EXPECT_FALSE(pencere.isVisible());
  EXPECT_EQ(oturum.Server_Adi, "ANASUNUCU");
  EXPECT_EQ(*platform::readFile(inf()), "ANASUNUCU;sa;gizli;0;\n");
}

TEST_F(IlkKurulumEkrani, TheReasonIsTheMissingFileOrFolder) {
  EXPECT_EQ(company::Kurulum_Eksigi(oturum), inf().string() + " bulunamadı.");
  oturum.Server_Adi = "(yerel)";
  EXPECT_EQ(company::Kurulum_Eksigi(oturum),
            "(yerel) sunucusunun klasörü yok: " + (inf().parent_path() / "veri").string());
  oturum.Server_Adi = "ANASUNUCU";
  EXPECT_EQ(company::Kurulum_Eksigi(oturum), "");
}

TEST_F(IlkKurulumEkrani, AFailedPreparationLeavesEverythingAsItWas) {
  EXPECT_NE(company::Bu_Makineyi_Hazirla(oturum, {"KORVENA", "şifre", false}), "");
  EXPECT_FALSE(std::filesystem::exists(inf()));
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(platform.folder) / "veri"));
  EXPECT_EQ(oturum.Server_Adi, "");
}

}  // namespace
