// The screens on the embedded server: from a fresh machine to a company made and deleted, by keys alone.
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <atomic>
#include <chrono>
#include <thread>

#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "screen.h"
#include "session/ui/giris_frm.h"
#include "session/ui/sunucu_hazirlama.h"
#include "session/ui/zembera_menu.h"
#include "support/izleyen_surucu.h"

namespace {

using namespace screen;

class YerelSunucu : public testing::Test, protected support::FakeSurroundings {
 protected:
  void SetUp() override {
    platform.folder = folder.path().toStdString();
    surucu_ = std::make_unique<support::IzleyenSurucu>(db::makeConnectionFactory(platform.folder));
    oturum.surucu = surucu_.get();
    oturum.Server_Adi = "(yerel)";
    surucu_->local(oturum.Server_Adi)->create("sa", "Sql-123");
    oturum.SQL_Sifre = "Sql-123";
  }
  static std::string prepare(session::Oturum& oturum, const std::string& ad, const std::string& sifre) {
    const auto rapor = catalog::Sunucu_Hazirla(oturum, {ad, sifre, {}});
    return rapor.sonuc == catalog::KurulumSonucu::Hazirlandi ? std::string() : rapor.metin;
  }
  // Opens the login screen; the preparation that it offers is carried out with the password.
  void logIn() {
    session_ui::GirisFrm giris(oturum, prepare);
    QSignalSpy konsol(&giris, &session_ui::GirisFrm::konsolAc);
    screen::show(giris);
    whenModal<session_ui::SunucuHazirlama>([](session_ui::SunucuHazirlama& shown) {
      auto* dialog = &shown;
      type(find<QLineEdit>(*dialog, "YoneticiSifre"), "Gizli1");
      type(find<QLineEdit>(*dialog, "YoneticiSifre2"), "Gizli1");
      QTest::mouseClick(find<QPushButton>(*dialog, "HazirlaBtn"), Qt::LeftButton);
      if (dialog->isVisible()) {
        ADD_FAILURE() << find<QLabel>(*dialog, "HataLbl")->text().toStdString();
        dialog->reject();
      }
    });
    key(Qt::Key_Return);
    ASSERT_EQ(konsol.count(), 1);
    ASSERT_EQ(oturum.Giris_Hatali, 0) << boxes.last();
  }
  static void typeCard(QWidget& konsol, const char* ad, const char* unvan) {
    type(find<QLineEdit>(konsol, "Firma_Adi"), ad);
    type(find<QLineEdit>(konsol, "Firma_Kodu"), "00001");
    type(find<QLineEdit>(konsol, "Firma_Unvani"), unvan);
    type(find<QLineEdit>(konsol, "Sehir"), "Iğdır'ın içi");
  }
  QTemporaryDir folder;
  std::unique_ptr<support::IzleyenSurucu> surucu_;
};

TEST_F(YerelSunucu, FromFreshMachineToCompanyAndBack) {
  logIn();
  EXPECT_TRUE(oturum.Supervisor);
  session_ui::ZemberaMenu konsol(oturum);
  screen::show(konsol);
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  ASSERT_EQ(tree->topLevelItemCount(), 2);
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 0);
  EXPECT_EQ(tree->topLevelItem(1)->child(0)->text(0), "KORVENA");

  key(Qt::Key_Insert);
  typeCard(konsol, "MAGAZA2012", "Çiçek'in Mağazası");
  key(Qt::Key_F2);
  EXPECT_EQ(boxes.texts(), std::vector<std::string>{});
  ASSERT_EQ(tree->topLevelItem(0)->childCount(), 1);
  EXPECT_EQ(tree->topLevelItem(0)->child(0)->text(0), "MAGAZA2012");

  tree->setCurrentItem(tree->topLevelItem(0)->child(0));
  key(Qt::Key_Return);
  EXPECT_EQ(find<QLineEdit>(konsol, "Firma_Unvani")->text(), "Çiçek'in Mağazası");
  EXPECT_EQ(find<QLineEdit>(konsol, "Sehir")->text(), "Iğdır'ın içi");
  EXPECT_EQ(find<QLineEdit>(konsol, "Bas_Tar")->text(), "01/01/2012");
  type(find<QLineEdit>(konsol, "Ulke"), "Türkiye");
  find<QLineEdit>(konsol, "Sehir")->clear();  // an emptied field keeps its old value
  key(Qt::Key_F2);
  key(Qt::Key_Return);
  EXPECT_EQ(find<QLineEdit>(konsol, "Ulke")->text(), "Türkiye");
  EXPECT_EQ(find<QLineEdit>(konsol, "Sehir")->text(), "Iğdır'ın içi");
  key(Qt::Key_Escape);

  boxes.answers = {true};
  key(Qt::Key_Delete);
  EXPECT_EQ(boxes.shown.size(), 1U);
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 0);
}

// The server stands still in the schema until Vazgeç has been clicked.
TEST_F(YerelSunucu, ACreationIsGivenUpByAClick) {
  logIn();
  session_ui::ZemberaMenu konsol(oturum);
  screen::show(konsol);
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  const auto stands = [&] {
    std::string out;
    for (const auto& [database, sql] :
         {std::pair{"master", "SELECT name FROM sysdatabases"},
          {"Defination_DB", "SELECT sysfrm_dbnm FROM sysfrmlng"},
          {"Defination_DB", "SELECT Firma_ID FROM Kullanici UNION ALL SELECT sysfrm_ID FROM sysusfrmlng"}}) {
      const auto connection = surucu_->make(oturum.Server_Adi);
      connection->open({oturum.Server_Adi, oturum.SQL_Login, oturum.SQL_Sifre, database, false});
      const auto rows = connection->query(sql);
      for (std::int64_t r = 0; r < rows->count(); ++r) out += rows->value(r, 0).trimmed() + "|";
    }
    for (const QString& file : QDir(folder.filePath("veri")).entryList()) out += file.toStdString() + "|";
    return out;
  };
  const std::string before = stands();
  key(Qt::Key_Insert);
  typeCard(konsol, "MAGAZA2012", "Mağaza");
  std::atomic<bool> clicked{false};
  surucu_->izleme.once = [&](std::size_t) {
    if (!surucu_->izleme.deyimler.back().starts_with("CREATE TABLE STOKKART")) return;
    for (int i = 0; i < 2000 && !clicked; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  };
  QTimer clicker;
  QObject::connect(&clicker, &QTimer::timeout, &konsol, [&] {
    auto* button = konsol.findChild<QPushButton*>("IsVazgecBtn");
    if (button == nullptr || !button->isVisible() || clicked) return;
    QTest::mouseClick(button, Qt::LeftButton);
    clicked = true;
  });
  clicker.start(20);
  QTest::mouseClick(find<QPushButton>(konsol, "KaydetBtn"), Qt::LeftButton);
  EXPECT_TRUE(clicked);
  surucu_->izleme.once = {};
  EXPECT_EQ(boxes.texts(), std::vector<std::string>{});
  EXPECT_EQ(stands(), before);
  EXPECT_TRUE(find<QLineEdit>(konsol, "Firma_Adi")->isVisible()) << "the card stays open";
  EXPECT_EQ(find<QLineEdit>(konsol, "Firma_Unvani")->text(), "Mağaza");
  EXPECT_EQ(find<QLabel>(konsol, "DurumBbg_2")->text(), "Firma oluşturmaktan vazgeçildi");
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 0);
  // What was typed is saved as it stands.
  QTest::mouseClick(find<QPushButton>(konsol, "KaydetBtn"), Qt::LeftButton);
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 1);
}

}  // namespace
