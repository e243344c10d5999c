#include "company/ui/firma_tanim.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>

#include "company/kart_alanlari.h"
#include "screen.h"
#include "ui/console_port.h"

namespace {

using namespace screen;

struct Console : ui::ConsolePort {
  void Durum_Yaz(const QString&) override {}
  void Alan_Listesi_Doldur() override { ++refilled; }
  int refilled = 0;
};

class FirmaKartiEkrani : public testing::Test, protected support::FakeSurroundings {
 protected:
  void open(bool yeni, bool inceleme = false) {
    oturum.Yeni_Kayit = yeni;
    oturum.Inceleme = inceleme;
    oturum.Secili_ID = 4;
    oturum.Veri_Klasoru = "/yok";
    oturum.Tanim_DB_Versiyon = "2012.002";
    screen::show(kart);
    kart.ac();
  }
  void existing() {
    server.rows("FROM sysfrmlng WHERE sysfrm_ID=4",
                {"sysfrm_ID", "sysfrm_nm", "sysfrm_dbnm", "sysfrm_kd", "Mali_Yil_Baslangic", "Mali_Yil_Bitis",
                 "Adres", "sehir", "Ulke", "Tel1", "Tel2", "Fax", "Vergi_Dairesi", "Vergi_Numarasi"},
                {{4,
                  "Mağaza A.Ş.",
                  "MAGAZA    ",
                  "00001   ",
                  db::DateTime{2012, 1, 1},
                  db::DateTime{2012, 12, 31},
                  "Şişli   ",
                  "İstanbul",
                  {},
                  {},
                  {},
                  {},
                  {},
                  {}}});
  }
  QLineEdit* field(const char* name) { return find<QLineEdit>(kart, name); }
  bool ran(const std::string& part) const {
    for (const std::string& statement : server.statements)
      if (statement.find(part) != std::string::npos) return true;
    return false;
  }
  Console konsol;
  company_ui::FirmaTanim kart{oturum, konsol};
  QSignalSpy kapandi{&kart, &ui::Kart::kapandi};
};

TEST_F(FirmaKartiEkrani, NewCardOpensWithTheYearAndAWritableName) {
  open(true);
  EXPECT_EQ(field("Bas_Tar")->text(), "01/01/2012");
  EXPECT_EQ(field("Bit_Tar")->text(), "31/12/2012");
  EXPECT_EQ(focusName(), "Firma_Adi");
  EXPECT_FALSE(field("Firma_Adi")->isReadOnly());
  EXPECT_FALSE(find<QGroupBox>(kart, "Frame2")->isVisible());
  EXPECT_EQ(find<QLabel>(kart, "DurumPanel")->text(), "  Escape (Çıkış)  F2 (Kaydet)");
}

TEST_F(FirmaKartiEkrani, RefusedCardStaysOpenAndSaysWhyInOrder) {
  open(true);
  const struct {
    const char *name, *text, *fault, *faulty;
  } steps[] = {
      {"Bas_Tar", "01012", "Firmamnın Mali Başlangıç Tarihi Girilmemiş Yada Yanlış Girilmiş", "Bas_Tar"},
      {"Bas_Tar", "31022012", "Firmamnın Mali Başlangıç Tarihi Girilmemiş Yada Yanlış Girilmiş", "Bas_Tar"},
      {"Bas_Tar", "15032012", "Firmamnın Mali Bitiş Tarihi Girilmemiş Yada Yanlış Girilmiş", "Bit_Tar"},
      {"Bit_Tar", "01042012", "Baslangıç ve Bitiş Tarihini Düzeltiniz.", "Bit_Tar"},
      {"Bit_Tar", "31122012", "Firma Kodunu boş geçemezsiniz.", "Firma_Kodu"},
      {"Firma_Kodu", "00001", "Database Adını boş geçemezsiniz.", "Firma_Adi"},
      {"Firma_Adi", "9A", "Firma Ünvanını boş geçemezsiniz.", "Firma_Unvani"},
      {"Firma_Unvani", "Çiçek Mağazası", "Database Adı Numara ile Başlayamaz", "Firma_Adi"}};
  field("Bit_Tar")->clear();
  for (const auto& step : steps) {
    type(field(step.name), step.text);
    key(Qt::Key_F2);
    EXPECT_EQ(boxes.last(), step.fault) << step.text;
    EXPECT_EQ(boxes.shown.back().icon, session::Icon::Stop);
    EXPECT_EQ(focusName(), step.faulty) << step.text;
  }
  type(field("Firma_Adi"), "A/B");
  key(Qt::Key_F2);
  EXPECT_TRUE(boxes.last().starts_with("Database Adı içinde Eksi(+) İşareti Olamaz."));
  EXPECT_EQ(kapandi.count(), 0);
  EXPECT_FALSE(ran("CREATE DATABASE"));
}

TEST_F(FirmaKartiEkrani, SavingCreatesClosesAndRefills) {
  open(true);
  server.rows("FROM sysdatabases", {"name"}, {});
  std::vector<std::string> names = {"sysfrm_ID", "KilitBasTarih", "KilitBitTarih", "DBVRSYN", "YR_DT"};
  for (const auto& alan : company::kartAlanlari()) names.emplace_back(alan.column);
  for (const auto& each : company::yeniFirmaDegerleri()) names.emplace_back(each.first);
  server.rows("Select * from sysfrmlng", names, {});
  server.rows("SELECT sysfrm_ID FROM sysfrmlng", {"sysfrm_ID"}, {{7}});
  server.rows("SELECT * FROM sysuslng", {"sysus_nm", "sysus"}, {{"KORVENA", "x"}});
  type(field("Firma_Adi"), "MAGAZA2012");
  type(field("Firma_Kodu"), "00001");
  type(field("Firma_Unvani"), "Kasap'ın Yeri");
  QTest::mouseClick(find<QPushButton>(kart, "KaydetBtn"), Qt::LeftButton);
  EXPECT_TRUE(ran("CREATE DATABASE MAGAZA2012 ON "));
  EXPECT_EQ(kapandi.count(), 1);
  EXPECT_EQ(konsol.refilled, 1);
  EXPECT_EQ(server.openings.back().database, "master");
  EXPECT_EQ(oturum.ilerleme, &progress);
}

TEST_F(FirmaKartiEkrani, ExistingCardKeepsItsNameAndInspectionIsClosed) {
  existing();
  server.rows("MUHKART", {"MHesap_Kod"}, {{"100"}});
  open(false);
  EXPECT_EQ(field("Firma_Adi")->text(), "MAGAZA");
  EXPECT_TRUE(field("Firma_Adi")->isReadOnly());
  EXPECT_EQ(field("Sehir")->text(), "İstanbul");
  EXPECT_EQ(field("Bit_Tar")->text(), "31/12/2012");
  EXPECT_FALSE(find<QCheckBox>(kart, "StandartHesapPlani")->isEnabled());

  oturum.Inceleme = true;
  kart.ac();
  for (const char* name : {"Firma_Kodu", "Firma_Unvani", "Adres", "Bas_Tar", "Vergi_Numarasi"})
    EXPECT_TRUE(field(name)->isEnabled() && field(name)->isReadOnly()) << name;
  EXPECT_FALSE(find<QPushButton>(kart, "KaydetBtn")->isEnabled());
  EXPECT_EQ(find<QLabel>(kart, "DurumPanel")->text(), "  Escape (Çıkış)");
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi.count(), 0);
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi.count(), 1);

  // The same screen is used again: nothing of the inspection may be left.
  oturum.Inceleme = false;
  oturum.Yeni_Kayit = true;
  kart.ac();
  EXPECT_TRUE(field("Firma_Unvani")->isEnabled());
  EXPECT_EQ(field("Sehir")->text(), "");
  EXPECT_TRUE(find<QCheckBox>(kart, "StandartHesapPlani")->isEnabled());
}

TEST_F(FirmaKartiEkrani, AFailureOfTheServerKeepsWhatWasTyped) {
  existing();
  open(false);
  type(field("Sehir"), "Ankara");
  for (int i = 0; i < 2; ++i) server.failOpening(db::SqlError(db::ErrorKind::LinkBroken, 0, "sunucu gitti"));
  key(Qt::Key_F2);
  EXPECT_TRUE(boxes.last().ends_with("sunucu gitti"));
  EXPECT_EQ(kapandi.count(), 0);
  EXPECT_EQ(field("Sehir")->text(), "Ankara");
  EXPECT_EQ(konsol.refilled, 0);
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi.count(), 1);
  EXPECT_EQ(konsol.refilled, 1) << "the failed save may have changed the list";
}

TEST_F(FirmaKartiEkrani, TellsThatTheDatabaseIsGone) {
  existing();
  server.rows("SELECT DB_ID", {"id"}, {{{}}});
  open(false);
  EXPECT_EQ(find<QLabel>(kart, "UyariLbl")->text(), "\"MAGAZA\" veritabanı sunucuda yok.");
  server.rows("SELECT DB_ID", {"id"}, {{7}});
  kart.ac();
  EXPECT_FALSE(find<QLabel>(kart, "UyariLbl")->isVisible());
  EXPECT_TRUE(find<QGroupBox>(kart, "Frame2")->isVisible());
}

TEST_F(FirmaKartiEkrani, FieldsAreAsLongAsTheirColumns) {
  open(true);
  const std::pair<const char*, int> widths[] = {
      {"Firma_Adi", 50},     {"Firma_Kodu", 50}, {"Adres", 50},         {"Sehir", 20},
      {"Ulke", 20},          {"Tel1", 17},       {"Tel2", 17},          {"Fax", 17},
      {"Vergi_Dairesi", 20}, {"Bas_Tar", 10},    {"Vergi_Numarasi", 20}};
  for (const auto& [name, width] : widths) {
    type(field(name), QString(width + 1, name == std::string("Bas_Tar") ? '1' : 'a'));
    EXPECT_EQ(field(name)->text().size(), width) << name;
  }
}

TEST_F(FirmaKartiEkrani, ArrowsWalkTheWholeCardAndBack) {
  open(true);
  const std::vector<std::string> order = {"Firma_Adi", "Firma_Kodu",    "Firma_Unvani",  "Adres", "Sehir",
                                          "Ulke",      "Tel1",          "Tel2",          "Fax",   "Bas_Tar",
                                          "Bit_Tar",   "Vergi_Dairesi", "Vergi_Numarasi"};
  for (std::size_t i = 0; i < order.size(); ++i) {
    EXPECT_EQ(focusName(), order[i]);
    if (i + 1 < order.size()) key(i % 2 == 0 ? Qt::Key_Return : Qt::Key_Down);
  }
  for (std::size_t i = order.size(); i-- > 0;) {
    EXPECT_EQ(focusName(), order[i]);
    key(Qt::Key_Up);
  }
  field("Vergi_Numarasi")->setFocus();
  key(Qt::Key_Down);
  EXPECT_EQ(focusName(), "StandartHesapPlani");
  key(Qt::Key_Space);
  EXPECT_TRUE(find<QCheckBox>(kart, "StandartHesapPlani")->isChecked());
  for (const auto& [each, expected] : {std::pair{Qt::Key_Down, "KaydetBtn"},
                                       {Qt::Key_Right, "CikisBtn"},
                                       {Qt::Key_Left, "KaydetBtn"},
                                       {Qt::Key_Up, "Vergi_Numarasi"}}) {
    key(each);
    EXPECT_EQ(focusName(), expected);
  }
  field("Sehir")->setFocus(Qt::TabFocusReason);
  key(Qt::Key_Right);
  EXPECT_EQ(focusName(), "Bit_Tar");
}

}  // namespace
