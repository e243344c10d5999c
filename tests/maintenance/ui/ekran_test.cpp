// The screens of maintenance, driven by keys and clicks on a server in a temporary folder.
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTableWidget>

#include "maintenance/ortam.h"
#include "maintenance/ui/db_aktar_frm.h"
#include "maintenance/ui/klasor_secici.h"
#include "maintenance/ui/offline_ayarlar_frm.h"
#include "maintenance/ui/server_para_frm.h"
#include "maintenance/ui/servis_menu.h"
#include "maintenance/ui/yedek_frm.h"
#include "ui/console_port.h"
#include "ui/screen.h"

namespace maintenance::test {
namespace {

using namespace screen;

struct Konsol : ui::ConsolePort {
  void Durum_Yaz(const QString&) override {}
  void Alan_Listesi_Doldur() override { ++dolduruldu; }
  int dolduruldu = 0;
};

template <class Ekran>
struct Acik {
  explicit Acik(Ortam& o) : frm(o.s.oturum, konsol) {
    frm.resize(1000, 700);
    screen::show(frm);
    frm.ac();
  }
  QPushButton* tus(const char* ad) { return find<QPushButton>(frm, ad); }
  // The panel of a long work takes the window's activation along on this platform.
  void tikla(const char* ad) {
    QTest::mouseClick(tus(ad), Qt::LeftButton);
    screen::show(frm);
  }
  Konsol konsol;
  Ekran frm;
  QSignalSpy kapandi{&frm, &ui::Kart::kapandi};
};

TEST(YedekFrm, BacksUpAndRestoresTheChosenCompany) {
  Ortam o;
  o.firma("MAGAZA", "eski");
  o.firma("KOMSU", "komşu");
  const fs::path hedef = o.klasor / "yedek";
  fs::create_directory(hedef);
  Acik<maintenance_ui::YedekFrm> e(o);
  auto* firma = find<QComboBox>(e.frm, "Firma_Combo");
  EXPECT_EQ(focusName(), "Firma_Combo");
  EXPECT_EQ(firma->count(), 2);
  EXPECT_EQ(firma->currentText(), "MAGAZA");
  type(find<QLineEdit>(e.frm, "Dir1_Yol"), (hedef / "yok").c_str());
  key(Qt::Key_Return);
  EXPECT_NE(e.frm.klasorler()->klasor(), hedef);
  type(find<QLineEdit>(e.frm, "Dir1_Yol"), hedef.c_str());
  key(Qt::Key_Return);
  EXPECT_EQ(e.frm.klasorler()->klasor(), hedef);
  EXPECT_TRUE(
      find<QLabel>(e.frm, "DurusUyarisi")->text().contains(QRegularExpression("kesinti: 0[,.]1 saniye")));
  e.tikla("YedekleBtn");
  EXPECT_EQ(o.s.boxes.last(), "Yedekleme İşlemi Başarı İle Tamamlanmıştır");
  EXPECT_EQ(icerik(hedef), Adlar{"MAGAZA_2012_03_14"});
  EXPECT_EQ(e.frm.klasorler()->klasor(), hedef / "MAGAZA_2012_03_14");
  EXPECT_EQ(find<QListWidget>(e.frm, "File2")->count(), 2);
  o.yaz("MAGAZA", "yeni");
  for (const bool evet : {false, true}) {
    o.s.boxes.answers = {evet};
    e.tikla("Geri_Al");
    EXPECT_EQ(o.deger("MAGAZA"), evet ? "eski" : "yeni");
  }
  e.tikla("Command2");
  EXPECT_FALSE(o.calisiyor());
  e.tikla("Command1");
  EXPECT_TRUE(o.calisiyor());
  key(Qt::Key_Escape);
  EXPECT_EQ(e.kapandi.count(), 1);
}

TEST(YedekFrm, ProvesABackupMadeWithoutAStop) {
  Ortam o;
  o.firma("MAGAZA", "eski");
  const fs::path hedef = o.klasor / "yedek";
  fs::create_directory(hedef);
  Acik<maintenance_ui::YedekFrm> e(o);
  auto* sonuc = find<QTableWidget>(e.frm, "DenetimGrd");
  EXPECT_FALSE(sonuc->isVisible());
  e.frm.klasorler()->git(hedef);
  e.tikla("CanliYedekBtn");
  const fs::path klasor = hedef / "MAGAZA_2012_03_14";
  EXPECT_EQ(e.frm.klasorler()->klasor(), klasor);
  // A company of one table is none; everything else is as it was copied.
  const auto satirlar = [&] {
    std::vector<QString> out;
    for (int i = 0; i < sonuc->rowCount(); ++i)
      out.push_back(sonuc->item(i, 0)->text() + "|" + sonuc->item(i, 1)->text());
    return out;
  };
  ASSERT_TRUE(sonuc->isVisible());
  EXPECT_EQ(satirlar(), (std::vector<QString>{"Dosyalar|Sağlam", "Sayfalar ve dizinler|Sağlam", "Şema|Bilgi",
                                              "Şema|Kusurlu", "Tablolar|Sağlam"}));
  EXPECT_EQ(find<QLabel>(e.frm, "AltBaslik")->text(),
            QString(klasor.c_str()) + " — sunucu hiç durmadı; MAGAZA: YEDEK KUSURLU");
  e.frm.klasorler()->git(hedef);
  e.tikla("YedekDenetimiBtn");
  EXPECT_EQ(o.s.boxes.last(), "Bu Klasör Geri Alınabilecek Bir Firma Bilgisi İçermiyor.");
  EXPECT_FALSE(sonuc->isVisible());
}

TEST(ServerParaFrm, WritesTheLineByKeysAndTriesItBefore) {
  Ortam o;
  std::ofstream(o.klasor / "sys.inf") << "SRV;sa;x;1;\n";
  Acik<maintenance_ui::ServerParaFrm> e(o);
  EXPECT_EQ(focusName(), "SunucuAdi");
  EXPECT_EQ(find<QLineEdit>(e.frm, "sqlSifre")->echoMode(), QLineEdit::Password);
  EXPECT_TRUE(find<QCheckBox>(e.frm, "SNDeg")->isChecked());
  type(find<QLineEdit>(e.frm, "SunucuAdi"), "(yerel)");
  key(Qt::Key_Return);
  EXPECT_EQ(focusName(), "sqlKullanici");
  key(Qt::Key_Down);
  type(find<QLineEdit>(e.frm, "sqlSifre"), "gizli");
  e.tikla("DeneBtn");
  EXPECT_EQ(find<QLabel>(e.frm, "BaglantiSonucu")->text(),
            "✓  Bağlantı kuruldu; sunucuda tanım veritabanı var.");
  type(find<QLineEdit>(e.frm, "MasterSifre"), "bir");
  key(Qt::Key_F2);
  EXPECT_EQ(o.s.boxes.texts(), Adlar{"Master Şifre Tutarsız Lütfen Kontrol Ediniz"});
  EXPECT_EQ(e.kapandi.count(), 0);
  type(find<QLineEdit>(e.frm, "SifreTekrar"), "bir");
  key(Qt::Key_F2);
  EXPECT_EQ(e.kapandi.count(), 1);
  std::ifstream in(o.klasor / "sys.inf");
  std::string satir;
  std::getline(in, satir);
  EXPECT_EQ(satir, "(yerel);sa;gizli;1;");
}

TEST(OfflineAyarlarFrm, ClosesWhereThereIsNoBranchAndFillsInTheDayByABlank) {
  Ortam o;
  {
    Acik<maintenance_ui::OfflineAyarlarFrm> e(o);
    EXPECT_EQ(o.s.boxes.shown.size(), 1U);
    QTRY_COMPARE(e.kapandi.count(), 1);
  }
  o.calistir(
      "Defination_DB",
      "CREATE TABLE OFFLINEAYARLAR(Sube_Kodu CHAR(10) NULL,Merkez_IP CHAR(20) NULL,Merkez_Adi CHAR(20) "
      "NULL,MerkezSa CHAR(20) NULL,MerkezSaSifre CHAR(20) NULL,MerkezFirma CHAR(20) NULL,SonTransferFirma "
      "CHAR(20) NULL,SonAlimTarih CHAR(10) NULL,SonAlimSaat CHAR(8) NULL,GonAralik INT NULL,OtoGon BIT "
      "NULL)");
  Acik<maintenance_ui::OfflineAyarlarFrm> e(o);
  type(find<QLineEdit>(e.frm, "Sube_Kodu"), "Ş1");
  auto* tarih = find<QLineEdit>(e.frm, "SonAlimTarih");
  tarih->setFocus();
  tarih->clear();
  key(Qt::Key_Space);
  EXPECT_EQ(tarih->text(), "14/03/2012");
  auto* saat = find<QLineEdit>(e.frm, "SonAlimSaat");
  saat->setFocus();
  saat->clear();
  key(Qt::Key_Space);
  EXPECT_EQ(saat->text(), "15:09:26");
  type(saat, "2460");
  EXPECT_EQ(saat->text(), "24:60");
  o.s.boxes.shown.clear();
  key(Qt::Key_F2);
  EXPECT_EQ(o.s.boxes.texts(),
            Adlar{"Lütfen Son Bilgi Alım Saatini SS/dd/ss Formatında Geçerli Bir saat Olarak Giriniz."});
  EXPECT_EQ(focusName(), "SonAlimSaat");
  type(saat, "235959");
  key(Qt::Key_F2);
  EXPECT_EQ(e.kapandi.count(), 1);
  EXPECT_EQ(o.oku("Defination_DB", "SELECT Sube_Kodu,SonAlimTarih,SonAlimSaat,OtoGon FROM OFFLINEAYARLAR"),
            Adlar{"Ş1|14/03/2012|23:59:59|0"});
}

TEST(ServisMenu, TicksByBlankAndShowsWhatItFound) {
  Ortam o;
  o.firma("KITAP", "x");
  o.calistir(
      "KITAP",
      "CREATE TABLE STOKHAREKETKART(Stok_HareketKart_ID INT NULL,Tarih DATETIME NULL,Fis_No CHAR(10) "
      "NULL,Fatura_ID INT NULL) CREATE TABLE FATURAKART(Fatura_ID INT NULL,Tarih DATETIME NULL,Fis_No "
      "CHAR(10) NULL) INSERT INTO STOKHAREKETKART VALUES (1,'20120501','S1',777) INSERT INTO FATURAKART "
      "VALUES (5,'20120502','F;1')");
  Acik<maintenance_ui::ServisMenu> e(o);
  EXPECT_EQ(focusName(), "ServisGrd");
  auto* islemler = find<QTableWidget>(e.frm, "ServisGrd");
  EXPECT_EQ(islemler->item(0, 1)->text(), "Kullanıcı Kontrolü");
  EXPECT_EQ(islemler->item(1, 1)->text(), "Fatura-İrsaliye Bağlantıları");
  key(Qt::Key_Space);
  EXPECT_EQ(islemler->item(0, 0)->checkState(), Qt::Checked);
  key(Qt::Key_Space);
  EXPECT_EQ(islemler->item(0, 0)->checkState(), Qt::Unchecked);
  key(Qt::Key_Down);
  key(Qt::Key_Space);
  e.tikla("BaslaBtn");
  EXPECT_TRUE(o.s.boxes.shown.empty()) << o.s.boxes.last();
  auto* liste = find<QListWidget>(e.frm, "BulguListesi");
  ASSERT_EQ(liste->count(), 2);
  EXPECT_EQ(liste->item(0)->text(), "Faturası olmayan irsaliyeler  (1)");
  auto* grid = find<QTableWidget>(e.frm, "BulguGrd");
  EXPECT_EQ(grid->item(0, 1)->text(), "S1");
  e.tikla("KopyalaBtn");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            "Tarih\tFis_No\tStok_HareketKart_ID\n01/05/2012\tS1\t1");
  liste->setCurrentRow(1);
  EXPECT_EQ(grid->item(0, 2)->text(), "F;1");
}

TEST(DbAktarFrm, ListsTheSourceAndMovesWhatIsTicked) {
  Ortam o;
  const fs::path kaynak = o.klasor / "eski";
  fs::create_directory(kaynak);
  {
    Ortam eski;
    eski.firma("TASINAN", "taşınan");
    eski.surucu->local("(yerel)")->stop();
    for (const char* const ad : {"TASINAN.mdf", "TASINAN_log.ldf", "Defination_DB.mdf"})
      fs::copy_file(eski.veri / ad, kaynak / ad);
  }
  Acik<maintenance_ui::DbAktarFrm> e(o);
  ASSERT_TRUE(e.frm.kaynak()->git(kaynak));
  auto* base = find<QTableWidget>(e.frm, "Base");
  ASSERT_EQ(base->rowCount(), 1);
  EXPECT_EQ(base->item(0, 0)->text(), "TASINAN");
  EXPECT_FALSE(base->item(0, 0)->flags() & Qt::ItemIsEditable);
  e.tikla("TmS");
  EXPECT_EQ(base->item(0, 1)->checkState(), Qt::Checked);
  e.tikla("TmK");
  EXPECT_EQ(base->item(0, 1)->checkState(), Qt::Unchecked);
  e.tikla("TmS");
  e.tikla("AktarBtn");
  EXPECT_EQ(o.s.boxes.last(), "Aktarım İşlemi Başarı İle Gerçekleştirildi.");
  EXPECT_EQ(e.konsol.dolduruldu, 1);
  EXPECT_EQ(o.deger("TASINAN"), "taşınan");
}

}  // namespace
}  // namespace maintenance::test
