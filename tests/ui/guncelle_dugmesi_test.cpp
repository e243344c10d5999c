// "Güncelle" and "Dene" of the company panel, on a company that is behind.
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include "catalog/sunucu_hazirla.h"
#include "company/upgrade/eksik.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "screen.h"
#include "session/ui/zembera_menu.h"
#include "support/firma_karti.h"
#include "support/temp_folder.h"

namespace {

using namespace screen;

class GuncelleDugmesi : public testing::Test, protected support::FakeSurroundings {
 protected:
  void SetUp() override {
    engine::Server::create(klasor_.path / "veri", "sa", "gizli");
    surucu_ = db::makeConnectionFactory(klasor_.path);
    oturum.surucu = surucu_.get();
    oturum.Server_Adi = "(yerel)";
    oturum.Tanim_DB_Versiyon = oturum.Firma_DB_Versiyon = "2012.002";
    platform.folder = ZEMBERA_DATA;
    catalog::Sunucu_Hazirla(oturum, {"Korvena", "abc", ""});
    oturum.Veri_Klasoru = (klasor_.path / "veri").string();
    oturum.Supervisor = oturum.Yeni_Kayit = true;
    auto kart = support::firmaKarti("MAGAZA");
    ASSERT_TRUE(company::Kaydet(oturum, kart)) << oturum.Son_Hata;
    oturum.Yeni_Kayit = false;
    boxes.shown.clear();
  }
  void TearDown() override {
    oturum.Kayitlar.close();
    oturum.Baglanti.reset();
    surucu_.reset();
  }
  std::string eksik() const {
    const auto okunan = company::upgrade::Sema_Eksigi_Oku(oturum, "MAGAZA");
    return okunan ? company::upgrade::eksikYazisi(*okunan) : "okunamadı";
  }
  static bool okundu(QWidget& konsol) {
    return QTest::qWaitFor(
        [&] {
          for (const QLineEdit* satir : konsol.findChildren<QLineEdit*>())
            if (satir->isVisible() && satir->text().contains("okunuyor")) return false;
          return true;
        },
        5000);
  }

 private:
  support::TempFolder klasor_;
  std::unique_ptr<db::ConnectionFactory> surucu_;
};

TEST_F(GuncelleDugmesi, TheTrialChangesNothingAndTheRunAsksFirst) {
  session_ui::ZemberaMenu konsol(oturum);
  screen::show(konsol);
  auto* agac = find<QTreeWidget>(konsol, "AlanTreeList");
  agac->setCurrentItem(agac->topLevelItem(0)->child(0));
  auto* cerceve = find<QWidget>(konsol, "GuncelleFrm");
  auto* dene = find<QPushButton>(konsol, "GuncelleDeneBtn");
  auto* guncelle = find<QPushButton>(konsol, "GuncelleBtn");
  ASSERT_TRUE(okundu(konsol));
  ASSERT_TRUE(cerceve->isVisible());
  const std::string once = eksik();
  EXPECT_NE(once, "");

  QTest::mouseClick(dene, Qt::LeftButton);
  ASSERT_EQ(boxes.shown.size(), 1U);
  const std::string denemede = boxes.last();
  const std::string bas = "\"MAGAZA\" denendi; hiçbir şey değiştirilmedi. Güncelleme şunları yapacak:";
  ASSERT_TRUE(denemede.starts_with(bas)) << denemede;
  EXPECT_EQ(eksik(), once);

  ASSERT_TRUE(okundu(konsol));
  boxes.shown.clear();
  QTest::mouseClick(guncelle, Qt::LeftButton);
  ASSERT_EQ(boxes.texts(), std::vector<std::string>{
                               "\"MAGAZA\" veritabanının şeması güncellenecek. Önce yedek almanız önerilir.\n"
                               "Güncelleme başlasın mı?"});
  EXPECT_TRUE(boxes.shown[0].question);
  EXPECT_EQ(eksik(), once) << "answered No";

  boxes.shown.clear();
  boxes.answers = {true};
  QTest::mouseClick(guncelle, Qt::LeftButton);
  ASSERT_EQ(boxes.shown.size(), 2U);
  EXPECT_EQ(boxes.last(), "\"MAGAZA\" güncellendi." + denemede.substr(bas.size()))
      << "the trial's own counts";
  EXPECT_EQ(eksik(), "");
  ASSERT_TRUE(okundu(konsol));
  EXPECT_FALSE(cerceve->isVisible());
}

}  // namespace
