#include "rollover/ui/devir_frm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>

#include "platform/files.h"
#include "rollover/devir_ortami.h"
#include "rollover/ui/kanit_penceresi.h"
#include "rollover/ui/maliyet_penceresi.h"
#include "ui/console_port.h"
#include "ui/renkler.h"
#include "ui/screen.h"
#include "ui/tik_agaci.h"

namespace rollover::test {
namespace {

using namespace screen;

struct Konsol : ui::ConsolePort {
  void Durum_Yaz(const QString&) override {}
  void Alan_Listesi_Doldur() override { ++dolan; }
  int dolan = 0;
};

class DevirFrmTest : public DevirTest {
 protected:
  void SetUp() override {
    DevirTest::SetUp();
    s().run(
        "INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez') INSERT INTO KASAHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Kasa_ID,BTutar,ATutar) SELECT '20120301','1','x',Kasa_ID,100.005,0 FROM "
        "KASAKART");
    screen::show(ekran);
    ekran.resize(1100, 700);
    ekran.ac();
    combo(0)->setCurrentIndex(combo(0)->findData(kaynak));
  }
  QComboBox* combo(int i) { return find<QComboBox>(ekran, i == 0 ? "Firma_Combo0" : "Firma_Combo1"); }
  QLineEdit* alan(const char* ad) { return find<QLineEdit>(ekran, ad); }
  ui::TikAgaciGorunumu* agac() { return find<ui::TikAgaciGorunumu>(ekran, "DevirParametreList"); }
  void tikla(const char* yol) {
    const int satir = static_cast<int>(*Secenekler::bul(yol));
    agac()->goster(satir);
    const QRect kutu = agac()->visualRect(agac()->model().index(satir));
    QTest::mouseClick(agac()->viewport(), Qt::LeftButton, {}, kutu.center());
  }
  bool tikli(const char* yol) { return agac()->agac().isaretli(static_cast<int>(*Secenekler::bul(yol))); }
  void yeniHedef(const QString& ad) {
    combo(1)->setCurrentIndex(combo(1)->count() - 1);
    type(alan("Firma_Adi1"), ad);
  }
  Konsol konsol;
  rollover_ui::DevirFrm ekran{s().s.oturum, konsol};
  QSignalSpy kapandi{&ekran, &ui::Kart::kapandi};
};

TEST_F(DevirFrmTest, ProposalFollowsTheSource) {
  EXPECT_EQ(combo(1)->itemText(combo(1)->count() - 1), "Yeni Firma Aç");
  EXPECT_EQ(combo(0)->findData("Yeni Firma Aç"), -1);
  combo(1)->setCurrentIndex(combo(1)->count() - 1);
  EXPECT_EQ(alan("Firma_Adi1")->text(), "1GUNCEL2012");
  EXPECT_EQ(alan("Firma_Kodu1")->text(), "00003");
  EXPECT_EQ(alan("Bas_Tar1")->text() + alan("Bit_Tar1")->text(), "01.01.201331.12.2013");
  combo(0)->setCurrentIndex(combo(0)->findData("BAZ2012"));
  EXPECT_EQ(alan("Firma_Adi1")->text(), "1BAZ2012");
  // The proposed name begins with a number, which the check refuses.
  key(Qt::Key_F2);
  EXPECT_EQ(s().s.boxes.last(), "Database Adı Numara ile Başlayamaz");
  EXPECT_EQ(s().s.boxes.shown.back().icon, session::Icon::Stop);
}

TEST_F(DevirFrmTest, ClicksInTheTreeSpreadButAnOnlyChildLeavesItsParent) {
  tikla("2");
  EXPECT_FALSE(tikli("2.1") || tikli("2.4"));
  tikla("2.4");
  EXPECT_TRUE(tikli("2"));
  tikla("4.1");
  EXPECT_TRUE(tikli("4"));
  EXPECT_FALSE(tikli("4.1"));
  key(Qt::Key_Space);
  EXPECT_TRUE(tikli("4.1"));
}

TEST_F(DevirFrmTest, TrialShowsTheProofAndWritesNothing) {
  yeniHedef("YENI2013");
  key(Qt::Key_F5);
  auto* pencere = ekran.findChild<rollover_ui::KanitPenceresi*>("DevirKaniti");
  ASSERT_NE(pencere, nullptr);
  EXPECT_EQ(pencere->windowTitle(), "Devir Kanıtı (deneme)");
  auto* tablo = find<QTableView>(*pencere, "KanitGrd");
  const auto hucre = [&](int satir, int kolon) {
    return tablo->model()->index(satir, kolon).data().toString();
  };
  EXPECT_EQ(hucre(0, 0) + "|" + hucre(0, 3) + "|" + hucre(0, 4), "Kasa bakiyeleri|100,005|100,01");
  const int hepsi = tablo->model()->rowCount();
  find<QCheckBox>(*pencere, "YalnizcaFarklar")->click();
  EXPECT_EQ(tablo->model()->rowCount(), 2);
  EXPECT_EQ(hucre(1, 1) + "|" + hucre(1, 6), "K1|Para biçimine yuvarlama");
  // A row that differs stands out in its colour, and can be read on it.
  for (const auto duzen : {ui::RenkDuzeni::Acik, ui::RenkDuzeni::Koyu}) {
    ui::renkDuzeniSec(duzen);
    const QModelIndex fark = tablo->model()->index(1, 0);
    const QRect yer = tablo->visualRect(fark);
    const QColor zemin = tablo->viewport()->grab().toImage().pixelColor(yer.right() - 3, yer.center().y());
    EXPECT_EQ(zemin, ui::renk(QColor(0xFFF6E0)));
    EXPECT_GT(ui::karsitlik(zemin, fark.data(Qt::ForegroundRole).value<QColor>()), 7);
  }
  ui::renkDuzeniSec(ui::RenkDuzeni::Masaustu);
  EXPECT_GT(hepsi, 20);
  QTemporaryDir klasor;
  pencere->dosyaSor = [&](const QString&, const QString& onerilen) { return klasor.filePath(onerilen); };
  QTest::mouseClick(find<QPushButton>(*pencere, "HtmlBtn"), Qt::LeftButton);
  const std::string sayfa = *platform::readFile(klasor.filePath("devir-kaniti-YENI2013.html").toStdString());
  EXPECT_NE(sayfa.find("<td>K1</td><td>Merkez</td><td class=\"s\">100,005</td><td class=\"s\">100,01</td><td "
                       "class=\"s\">0,005</td><td>Para biçimine yuvarlama</td>"),
            std::string::npos);
  EXPECT_EQ(sayfa.find("http"), std::string::npos);  // nothing from elsewhere
  s().bagla("master");
  EXPECT_EQ(satirlar("SELECT name FROM sysdatabases WHERE name='YENI2013'"), "");
  EXPECT_EQ(konsol.dolan, 0);
}

TEST_F(DevirFrmTest, RunTellsItsEndAndAsksBeforeItRepeats) {
  yeniHedef("YENI2013");
  find<QPushButton>(ekran, "TamamBtn")->click();
  EXPECT_EQ(s().s.boxes.last(), "Devir İşlemi Başarı İle Tamamlandı");
  EXPECT_EQ(konsol.dolan, 1);
  EXPECT_EQ(combo(1)->currentData().toString(), "YENI2013");
  EXPECT_TRUE(find<QPushButton>(ekran, "KanitBtn")->isEnabled());
  s().s.boxes.shown.clear();
  s().s.boxes.answers = {false};
  find<QPushButton>(ekran, "TamamBtn")->click();
  ASSERT_EQ(s().s.boxes.shown.size(), 1U);
  EXPECT_NE(s().s.boxes.last().find("1 kartın üzerine yazılacak, 1 açılış kaydı yenilenecek"),
            std::string::npos);
  s().s.boxes.answers = {true};
  find<QPushButton>(ekran, "TamamBtn")->click();
  EXPECT_EQ(s().s.boxes.last(), "Devir İşlemi Başarı İle Tamamlandı");
  // The proof stands in front.
  for (auto* pencere : ekran.findChildren<rollover_ui::KanitPenceresi*>()) pencere->close();
  find<QPushButton>(ekran, "IptalBtn")->click();
  EXPECT_EQ(kapandi.count(), 1);
}

TEST_F(DevirFrmTest, CostingIsReplayedRowByRow) {
  s().bagla(kaynak);
  s().run(
      "INSERT INTO STOKKART (Stok_Kod,Stok_Ad) VALUES ('S1','Bir') INSERT INTO STOKHAREKET "
      "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) SELECT "
      "'20120105','7','Alış Faturası','Mal',Stok_ID,Stok_Kod,1,10,0,5 FROM STOKKART INSERT INTO STOKHAREKET "
      "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) "
      "SELECT '20120106','8','Satış Faturası','Mal',Stok_ID,Stok_Kod,1,0,4,0 FROM STOKKART");
  rollover_ui::MaliyetPenceresi pencere(s().s.oturum, kaynak, "S1");
  auto* model = find<QTableView>(pencere, "MaliyetGrd")->model();
  QStringList son;
  for (int i = 0; i < model->columnCount(); ++i)
    son << model->index(model->rowCount() - 1, i).data().toString();
  EXPECT_EQ(son.join('|'), "06.01.2012|8|Satış Faturası|1|0,00|4,00|0,00|6,00|30,00|5,00");
  EXPECT_NE(find<QLabel>(pencere, "OzetLbl")->text().indexOf("birim maliyet 5,00"), -1);
  // A click beside the rows leaves the chosen one seen.
  screen::show(pencere);
  auto* tablo = find<QTableView>(pencere, "MaliyetGrd");
  QTest::mouseClick(tablo->viewport(), Qt::LeftButton, {}, tablo->visualRect(model->index(1, 2)).center());
  QTest::mouseClick(tablo->viewport(), Qt::LeftButton, {},
                    tablo->viewport()->rect().bottomLeft() + QPoint(40, -4));
  EXPECT_TRUE(tablo->selectionModel()->isRowSelected(1));
  rollover_ui::MaliyetPenceresi olmayan(s().s.oturum, kaynak, "YOK");
  EXPECT_EQ(find<QLabel>(olmayan, "OzetLbl")->text(), "Stok kartı bulunamadı: YOK");
}

}  // namespace
}  // namespace rollover::test
