// Screens of company settings on the embedded server of two companies: BAZ2012 as the card makes it,
// GUNCEL2012 upgraded. Statements are noted.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

#include "company/sirket.h"
#include "support/izleyen_surucu.h"
#include "ui/console_port.h"
#include "ui/kart.h"
#include "ui/screen.h"

namespace settings_ui::test {

struct Konsol : ui::ConsolePort {
  void Durum_Yaz(const QString& text) override { durum = text.toStdString(); }
  void Alan_Listesi_Doldur() override {}
  std::string durum;
};

class EkranTest : public company::test::SirketTest {
 protected:
  using Sirket = company::test::Sirket;
  void SetUp() override {
    oturum().surucu = &izleyen;
    oturum().Kullanici_ID = 1;
    kutular().shown.clear();
    kutular().answers.clear();
    kutular().onMessage = {};
    sirket().bagla("Defination_DB");
  }
  void TearDown() override {
    oturum().Baglanti2.reset();
    oturum().surucu = sirket().factory.get();
    sirket().bagla("Defination_DB");
  }
  static session::Oturum& oturum() { return sirket().s.oturum; }
  static support::FakeBoxes& kutular() { return sirket().s.boxes; }
  // Statements sent while `is` runs.
  template <class Is>
  std::vector<std::string> deyimler(Is&& is) {
    izleyen.izleme.sifirla();
    is();
    return izleyen.izleme.deyimler;
  }
  static std::string rows(const std::string& database, const std::string& sql) {
    sirket().bagla(database);
    const std::string sonuc = sirket().rows(sql);
    sirket().bagla("Defination_DB");
    return sonuc;
  }
  static void run(const std::string& database, const std::string& sql) {
    sirket().bagla(database);
    sirket().run(sql);
    sirket().bagla("Defination_DB");
  }
  static void tikla(QWidget& ekran, const char* ad) {
    QTest::mouseClick(screen::find<QPushButton>(ekran, ad), Qt::LeftButton);
  }
  Konsol konsol;
  support::IzleyenSurucu izleyen{db::makeConnectionFactory(sirket().folder)};
};

// Typed into whatever has the focus.
inline void yaz(const QString& metin) {
  for (const QChar harf : metin) {
    QKeyEvent press(QEvent::KeyPress, harf.unicode() < 128 ? harf.toUpper().unicode() : 0, Qt::NoModifier,
                    QString(harf));
    QApplication::sendEvent(QApplication::focusWidget(), &press);
  }
}

}  // namespace settings_ui::test
