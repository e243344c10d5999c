// What holds for every screen of the program: captions that are whole at the usual size and with larger
// letters, names for those who cannot see, and keys in bursts.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <span>
#include <utility>

#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "rights/kullanici_karti.h"
#include "screen.h"
#include "session/ui/zembera_menu.h"
#include "support/firma_karti.h"
#include "support/temp_folder.h"
#include "ui/kart.h"
#include "ui/theme.h"

namespace {

using namespace screen;

constexpr const char* firmaKomutlari[] = {"MNEkle",   "MNDegistir", "MNIncele", "MNIsyeri",   "MNAmbar",
                                          "MnSatici", "MNDoviz",    "MNFiyat",  "MNRenkTanim"};
constexpr const char* kullaniciKomutlari[] = {"MNEkle", "MNDegistir", "MNIncele", "MNYetki",
                                              "MNYetkiKasiyer"};

// One server with one company and one user for all of them.
struct Sunucu {
  Sunucu() {
    engine::Server::create(klasor.path / "veri", "sa", "gizli");
    surucu = db::makeConnectionFactory(klasor.path);
    bagla(s);
    catalog::Sunucu_Hazirla(s.oturum, {"Korvena", "abc", ""});
    s.oturum.Veri_Klasoru = (klasor.path / "veri").string();
    s.oturum.Yeni_Kayit = true;
    auto kart = support::firmaKarti("MAGAZA");
    EXPECT_TRUE(company::Kaydet(s.oturum, kart)) << s.oturum.Son_Hata;
    s.oturum.Yeni_Kayit = true;
    s.oturum.Inceleme = false;
    rights::KullaniciKarti kullanici;
    EXPECT_TRUE(rights::Kullanici_Karti_Ac(s.oturum, kullanici));
    kullanici.Kullanici_Adi = "INCI";
    kullanici.Kullanici_Sifre = kullanici.Sifre_Onay = "abc123";
    for (auto& firma : kullanici.Firmatreelist) firma.secili = true;
    EXPECT_TRUE(rights::Kullanici_Kaydet(s.oturum, kullanici).kaydedildi) << s.boxes.last();
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
  }
  void bagla(support::FakeSurroundings& cevre) const {
    cevre.oturum.surucu = surucu.get();
    cevre.oturum.Server_Adi = "(yerel)";
    cevre.oturum.Tanim_DB_Versiyon = cevre.oturum.Firma_DB_Versiyon = "2012.002";
    cevre.oturum.Veri_Klasoru = (klasor.path / "veri").string();
    cevre.oturum.Supervisor = true;
    cevre.oturum.Ondalik_Ayrac = ",";
    cevre.oturum.Binlik_Ayrac = ".";
    cevre.platform.folder = klasor.path;
  }
  support::TempFolder klasor;
  std::unique_ptr<db::ConnectionFactory> surucu;
  support::FakeSurroundings s;
};

class ButunEkranlar : public testing::Test, protected support::FakeSurroundings {
 protected:
  static void SetUpTestSuite() { sunucu_ = std::make_unique<Sunucu>(); }
  static void TearDownTestSuite() { sunucu_.reset(); }
  void SetUp() override {
    sunucu_->bagla(*this);
    qputenv("HOME", sunucu_->klasor.path.c_str());
    konsol_ = std::make_unique<session_ui::ZemberaMenu>(oturum);
    // A question of a screen's own is answered by leaving it.
    kapatan_.callOnTimeout([] {
      if (auto* kutu = qobject_cast<QDialog*>(QApplication::activeModalWidget())) kutu->reject();
    });
    kapatan_.start(20);
  }
  void TearDown() override {
    konsol_.reset();
    oturum.Kayitlar.close();
    for (auto* baglanti : {&oturum.Baglanti, &oturum.Baglanti2, &oturum.Baglanti3, &oturum.Baglanti4})
      baglanti->reset();
  }
  // Opens each screen in turn and leaves it behind `is`.
  void herBirinde(const std::function<void(const std::string&, ui::Kart&)>& is) {
    konsol_->resize(std::min(ui::byLetters(1120), 1366), 690);
    screen::show(*konsol_);
    auto* agac = find<QTreeWidget>(*konsol_, "AlanTreeList");
    auto* yigin = konsol_->findChild<QStackedWidget*>();
    const auto gez = [&](const std::string& ad) {
      auto* kart = qobject_cast<ui::Kart*>(yigin->currentWidget());
      if (!kart) return ADD_FAILURE() << ad << " did not open: " << boxes.last(), void();
      is(ad, *kart);
      if (yigin->currentWidget() == kart) emit kart->kapandi();
      ++acilan_;
    };
    auto dugmeler = konsol_->findChildren<QToolButton*>("Menu_Buton");
    dugmeler.append(find<QToolButton>(*konsol_, "Command1"));
    for (QToolButton* dugme : dugmeler) {
      dugme->click();
      gez(dugme->text().toStdString());
    }
    for (const bool firma : {true, false}) {
      for (const char* komut : firma ? std::span<const char* const>(firmaKomutlari)
                                     : std::span<const char* const>(kullaniciKomutlari)) {
        agac->setCurrentItem(agac->topLevelItem(firma ? 0 : 1)->child(0));
        konsol_->findChild<QAction*>(komut)->trigger();
        gez(komut);
      }
    }
    EXPECT_EQ(std::exchange(acilan_, 0), 26);
  }
  // A screen has a button that stops it.
  static void sunucuyuBaslat() {
    const auto yerel = sunucu_->surucu->local("(yerel)");
    if (!yerel->running()) yerel->start();
  }
  std::unique_ptr<session_ui::ZemberaMenu> konsol_;

 private:
  inline static std::unique_ptr<Sunucu> sunucu_;
  QTimer kapatan_;
  int acilan_ = 0;
};

// Captions that do not fit their place.
std::string kesikler(QWidget& ekran) {
  std::string sonuc;
  for (QWidget* parca : ekran.findChildren<QWidget*>()) {
    if (!parca->isVisible()) continue;
    bool sigar = true;
    QString yazi;
    if (const auto* dugme = qobject_cast<QAbstractButton*>(parca)) {
      yazi = dugme->text();
      sigar = yazi.isEmpty() || parca->inherits("settings_ui::RenkPaneli") ||
              dugme->width() >= dugme->minimumSizeHint().width();
    } else if (const auto* etiket = qobject_cast<QLabel*>(parca)) {
      yazi = etiket->text();
      sigar =
          yazi.isEmpty() || (etiket->wordWrap() ? etiket->height() >= etiket->heightForWidth(etiket->width())
                                                : etiket->width() >= etiket->sizeHint().width());
    }
    if (const auto* baslik = qobject_cast<QHeaderView*>(parca);
        baslik && baslik->orientation() == Qt::Horizontal)
      for (int i = 0; i < baslik->count(); ++i) {
        const QString ad = baslik->model()->headerData(i, Qt::Horizontal).toString();
        const int en = baslik->sectionSize(i) - 8;
        const QRect yer = baslik->fontMetrics().boundingRect(QRect(0, 0, en, 1000), Qt::TextWordWrap, ad);
        if (!baslik->isSectionHidden(i) && (yer.width() > en || yer.height() > baslik->height()))
          sonuc += parca->parent()->objectName().toStdString() + " column " + ad.toStdString() + "\n";
      }
    if (!sigar)
      sonuc += parca->objectName().toStdString() + " '" + yazi.toStdString() + "' " +
               std::to_string(parca->width()) + " of " + std::to_string(parca->minimumSizeHint().width()) +
               "\n";
  }
  return sonuc;
}

TEST_F(ButunEkranlar, NoCaptionIsCutWithUsualAndLargerLetters) {
  const QFont usual = QApplication::font();
  for (const qreal buyuk : {usual.pointSizeF(), usual.pointSizeF() * 1.4}) {
    QFont font = usual;
    font.setPointSizeF(buyuk);
    QApplication::setFont(font);
    konsol_ = std::make_unique<session_ui::ZemberaMenu>(oturum);
    konsol_->resize(1280, 900);
    screen::show(*konsol_);
    EXPECT_EQ(kesikler(*konsol_), "") << buyuk;
    herBirinde([&](const std::string& ad, ui::Kart& kart) {
      QTest::qWait(5);
      EXPECT_EQ(kesikler(kart), "") << ad << " at " << buyuk;
    });
    konsol_->hide();
  }
  QApplication::setFont(usual);
}

TEST_F(ButunEkranlar, EveryListAndPictureButtonHasAName) {
  herBirinde([](const std::string& ad, ui::Kart& kart) {
    for (const auto* liste : kart.findChildren<QAbstractItemView*>())
      EXPECT_NE(liste->accessibleName(), "") << ad << " " << liste->objectName().toStdString();
    for (const auto* dugme : kart.findChildren<QAbstractButton*>())
      if (dugme->isVisible() && dugme->text().isEmpty() && !dugme->inherits("QTableCornerButton")) {
        EXPECT_NE(dugme->accessibleName() + dugme->toolTip(), "")
            << ad << " " << dugme->objectName().toStdString();
      }
  });
  for (const auto* dugme : konsol_->findChildren<QToolButton*>("Menu_Buton"))
    EXPECT_NE(dugme->toolTip(), dugme->text()) << "a tip says more than its caption";
}

TEST_F(ButunEkranlar, TheStatusBarNamesTheScreen) {
  herBirinde([this](const std::string& ad, ui::Kart&) {
    const QString durum = find<QLabel>(*konsol_, "DurumBbg_2")->text();
    EXPECT_TRUE(durum.contains(QRegularExpression("^\\p{L}"))) << ad << ": " << durum.toStdString();
  });
}

TEST_F(ButunEkranlar, BurstsOfKeysLeaveTheProgramStanding) {
  constexpr Qt::Key tuslar[] = {
      Qt::Key_Return, Qt::Key_F2, Qt::Key_Delete,  Qt::Key_Insert, Qt::Key_Space,  Qt::Key_Tab, Qt::Key_F5,
      Qt::Key_Down,   Qt::Key_F4, Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Escape, Qt::Key_F3};
  herBirinde([&](const std::string&, ui::Kart&) {
    for (const Qt::Key tus : tuslar)
      for (int i = 0; i < 3; ++i) {
        QWidget* hedef = QApplication::focusWidget();
        QTest::keyClick(hedef ? hedef : konsol_.get(), tus);
        if (auto* acik = QApplication::activePopupWidget()) acik->close();
      }
    sunucuyuBaslat();
  });
  EXPECT_TRUE(konsol_->isVisible());
  for (const std::string& deyim : server.statements)
    EXPECT_EQ(deyim.find("DROP DATABASE"), std::string::npos);
}

TEST_F(ButunEkranlar, AMaximisedCardStaysReadableWithItsButtonsNear) {
  herBirinde([this](const std::string& ad, ui::Kart& kart) {
    konsol_->resize(1910, 1000);
    QTest::qWait(40);
    for (const auto* dugme : kart.findChildren<QPushButton*>())
      if (dugme->isVisible()) {
        EXPECT_LE(dugme->mapTo(&kart, dugme->rect().topRight()).x(), 1040)
            << ad << " " << dugme->text().toStdString();
      }
  });
}

}  // namespace
