#include "company/upgrade/guncelle.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "company/base_schema.h"
#include "company/schema/schema.h"
#include "company/upgrade/gocler.h"
#include "company/upgrade/kolonlar.h"
#include "company/upgrade/onarim.h"
#include "db/table_name.h"
#include "db/value.h"
#include "session/firma_bul.h"
#include "session/statements.h"

namespace company::upgrade {
namespace {

using catalog::Stage;
using catalog::TableDef;

const std::string katalog(session::katalogVeritabani);

constexpr const char* olasiHatalar =
    "\n- Kullanıcı Adı Yada Parola Server için Tanımsız Olabilir."
    "\n- Bağlanılacak Veritabanı Adı Yanlış Girilmiş Olabilir"
    "\n-Service Manager Programı Kapalı yada Stop(Dur) durumunda olabilir"
    "\n-SQL server Kurulu olmayabilir";

constexpr std::array bosOnarimlari{
    "UPDATE STOKHAREKET SET Cari_ID=0 WHERE Cari_ID IS NULL",
    "UPDATE FATURAHAREKET SET Cari_ID=0 WHERE Cari_ID IS NULL",
    "UPDATE AMBTRS SET Birim_Fiyat=0 WHERE Birim_Fiyat IS NULL",
};

// Migrations of other tables read these tables' columns, so their columns come first.
constexpr std::array<std::string_view, 2> ilkTablolar{"FATURAKART", "STOKHAREKETKART"};
// Their triggers write into other tables whenever a column is filled, so those must be whole by then.
// BORDRO has none, but reads the two before it.
constexpr std::array<std::string_view, 11> sonTablolar{
    "BANKAHAREKET", "CARIHAREKET", "KASAHAREKET", "POSHAREKET", "MUHFISHAR", "MUHKART",
    "CEK",          "SENET",       "BORDRO",      "CARIKART",   "STOKKART"};

constexpr std::array satirTablolari{"FATURAHAREKET", "STOKHAREKET", "RECETEHAREKET", "SIPARISHAREKET"};
constexpr std::array<std::pair<const char*, const char*>, 3> satirTanimlari{
    {{"MASRAFTANIM", "Masraf"}, {"HIZMETTANIM", "Hizmet"}, {"INDIRIMTANIM", "İndirim"}}};

constexpr std::array sonAdimlar{
    "ALTER TABLE MUHASEBEENTEGRASYON ALTER column Muhasebe_Kodu CHAR(26) not null",
    "UPDATE STOKKART SET StokTuru='Mamül'WHERE StokTuru IS NULL",
    "UPDATE STOKKART SET StTur='MM'WHERE StokTuru ='Mamül'",
    "UPDATE STOKKART SET StTur='HM'WHERE StokTuru ='Hammadde'",
    "UPDATE STOKKART SET StTur='YM'WHERE StokTuru ='Yarı Mamül'",
    "UPDATE STOKKART SET StTur='DB'WHERE StokTuru ='Demirbaş'",
};

void rememberTable(SemaGoruntusu& sema, const TableDef& table) {
  sema.nesneEkle(table.name, "U");
  for (const catalog::ColumnDef& column : table.columns) {
    if (table.stage == Stage::Base && column.stage != Stage::Base) continue;
    const TipBoy tip = tipBoy(column.baseType);
    sema.kolonYaz(
        table.name, column.name,
        {tip.type, tip.length, table.mayBeNull(column), column.identity, !column.defaultSql.empty()});
  }
}

// A creator: does nothing when the table exists; else the table with its rows and indexes, whole.
void tabloOlustur(Yurutucu& y, SemaGoruntusu& sema, const std::string& ad) {
  const TableDef* table = schema::table(ad);
  if (!table || !Nesne_Yok(sema, ad, "U")) return;
  y.mesaj(ad == "FILTRELER" ? "Tanımlama Veritabanına FILTRELER Ekleniyor" : ad + " Ekleniyor");
  y.adim(0, 2);
  const db::DateTime now = y.oturum().saat->now();
  std::vector<Yurutucu::Adim> adimlar{{catalog::createStatement(*table, Stage::Base)}};
  const auto& rows = table->upgradeRows.empty() ? table->firstRows : table->upgradeRows;
  for (const std::string& row : rows) adimlar.push_back({isaretleriDoldur(row, now)});
  for (const std::string& index : table->indexes) adimlar.push_back({index});
  if (y.butun(adimlar)) {
    rememberTable(sema, *table);
    ++y.sayilar().tablolar;
  } else {
    ++y.sayilar().reddedilen;
  }
  y.adim(2, 2);
  y.genelIlerle();
  y.mesaj("");
  y.adim(0, 2);
}

void tablolariOlustur(Yurutucu& y, SemaGoruntusu& sema) {
  constexpr std::string_view drop = "DROP ";
  for (const std::string& entry : schema::tableOrder(Stage::Upgrade)) {
    if (entry.starts_with(drop))
      Tablo_Sil(y, sema, entry.substr(drop.size()));
    else
      tabloOlustur(y, sema, entry);
  }
}

std::vector<const TableDef*> kolonSirasi() {
  std::vector<const TableDef*> out;
  out.reserve(schema::tables().size());
  const auto in = [](const auto& names, const std::string& name) {
    return std::ranges::find(names, name) != names.end();
  };
  for (const std::string_view name : ilkTablolar) out.push_back(schema::table(name));
  for (const TableDef& table : schema::tables())
    if (!in(ilkTablolar, table.name) && !in(sonTablolar, table.name)) out.push_back(&table);
  for (const std::string_view name : sonTablolar) out.push_back(schema::table(name));
  return out;
}

void kolonlariDuzenle(Yurutucu& y, SemaGoruntusu& sema) {
  const int year = y.oturum().saat->now().year;
  const auto tables = kolonSirasi();
  std::int64_t done = 0;
  for (const TableDef* table : tables) {
    y.adim(++done, static_cast<std::int64_t>(tables.size()));
    if (Nesne_Yok(sema, table->name, "U")) continue;
    y.mesaj(table->name + " Kontrol Ediliyor");
    const TabloSonucu sonuc = tabloyuDuzenle(
        y, sema, *table, year,
        [&](const std::string& kolon, Sonuc fark) { return kolonGocu(y, sema, table->name, kolon, fark); });
    gocleriBitir(y, table->name, sonuc);
  }
  for (const TableDef* table : tables)
    for (const catalog::ColumnDef& column : table->columns)
      if (column.dropped) Kolon_Sil(y, sema, table->name, column.name);
  y.genelIlerle();
}

void tahsilatlariTasi(Yurutucu& y, const SemaGoruntusu& sema) {
  const auto rows = y.oku("SELECT Count(PosHareket_ID) as Adet  FROM POSHAREKET WHERE ISNULL(Satis_ID,0)=0");
  if (rows && rows->count() > 0 && rows->value(0, 0).integer() != 0) Kredi_Tahsilat_Tasi(y, sema);
}

std::string satirMetni(const std::string& tablo, const std::string& tanim, const std::string& tip) {
  return "UPDATE " + tablo + " SET Stok_Kod=" + tanim + ".Kod,Stok_Ad=" + tanim + ".Ad FROM " + tanim +
         " WHERE " + tablo + ".Stok_ID=" + tanim + ".ID AND Satir_Tipi='" + tip +
         "' AND NOT Stok_Kod =ANY (SELECT Kod FROM " + tanim + ")";
}

void satirlariOnar(Yurutucu& y) {
  y.onar("UPDATE BANKAHAREKET SET Doviz_ID=1,KUR=0 WHERE Doviz_ID IS NULL OR KUR IS NULL");
  for (const char* tablo : satirTablolari)
    for (const auto& [tanim, tip] : satirTanimlari) y.onar(satirMetni(tablo, tanim, tip));
  y.onar("UPDATE BANKAHAREKET SET Dovizli_Tutar=0 WHERE Dovizli_Tutar IS NULL");
  y.genelIlerle();
}

void sonuBagla(Yurutucu& y) {
  for (const char* statement : sonAdimlar) y.calistir(statement);
  saticilariBagla(y);
  y.calistir("update POSHAREKET set ATutar=0,BTutar=Tutar where Islem_Tipi='Kredi Kartı Ödeme'");
  y.genelIlerle();
}

void Gorunumleri_Yaz(Yurutucu& y, SemaGoruntusu& sema) {
  y.mesaj("Görünümler Kontrol Ediliyor");
  for (const std::string& name : schema::viewOrder(Stage::Upgrade))
    Nesne_Yaz(y, sema, name, "V", schema::view(name)->text);
  for (const std::string& name : schema::triggerOrder(Stage::Upgrade))
    Nesne_Yaz(y, sema, name, "TR", schema::trigger(name)->text);
}

void run(Yurutucu& y, const std::string& firmaAdi) {
  y.genelKur(static_cast<std::int64_t>(schema::tableOrder(Stage::Upgrade).size() +
                                       schema::viewOrder(Stage::Upgrade).size() +
                                       schema::triggerOrder(Stage::Upgrade).size() + 5));
  y.sayilar().gonderilen += 2;
  SemaGoruntusu sema = SemaGoruntusu::oku(y.baglanti());
  // Files from before the checksums get them; no other statement may stand beside this one in a transaction.
  y.calistir("ALTER DATABASE " + db::bracketed(y.baglanti().parts().database) + " SET PAGE_VERIFY CHECKSUM");
  y.denemeyeBasla();
  for (const char* statement : bosOnarimlari) y.onar(statement);
  tablolariOlustur(y, sema);
  kolonlariDuzenle(y, sema);
  tahsilatlariTasi(y, sema);
  satirlariOnar(y);
  sonuBagla(y);
  Gorunumleri_Yaz(y, sema);
  y.denemeyiBitir();
  Surum_Yaz(y, firmaAdi);
  y.genelBitir();
  y.mesaj("");
}

bool firmaVeritabaniMi(const SemaGoruntusu& sema) {
  constexpr int enough = 20;  // a company that lost tables still has most of its hundred and more
  return std::ranges::count_if(schema::tables(), [&](const TableDef& table) {
           return table.stage == Stage::Base && sema.nesneVar(table.name, "U");
         }) >= enough;
}

bool baskasiKullaniyor(db::Connection& connection) {
  const auto others =
      connection.query("SELECT COUNT(*) FROM master.dbo.sysprocesses WHERE dbid=DB_ID() AND spid<>@@SPID");
  return others && others->count() > 0 && others->value(0, 0).integer() > 0;
}

// Takes the write lock and changes nothing. Throws db::SqlError.
void yazmayiDene(db::Connection& connection) {
  connection.execute("BEGIN TRANSACTION");
  try {
    connection.execute("CREATE TABLE GUNCELLEMEDENEMESI (Deneme INT)");
  } catch (const db::SqlError&) {
    connection.execute("IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
    throw;
  }
  connection.execute("ROLLBACK TRANSACTION");
}

bool baglan(session::Oturum& o, const std::string& database) {
  try {
    session::Katalog_Bagla(o, database);
    return true;
  } catch (const db::SqlError&) {
    return false;
  }
}

}  // namespace

bool Nesne_Yok(const SemaGoruntusu& sema, const std::string& ad, const std::string& tip) {
  return !sema.nesneVar(ad, tip);
}

void Nesne_Yaz(Yurutucu& y, SemaGoruntusu& sema, const std::string& ad, const std::string& tip,
               const std::string& metin) {
  std::string text = metin;
  if (!Nesne_Yok(sema, ad, tip)) {
    if (tip == "V")
      y.calistir("DROP VIEW " + ad);
    else
      text.replace(0, 6, "ALTER");  // the word CREATE
  }
  if (y.calistir(text)) sema.nesneEkle(ad, tip);
  y.genelIlerle();
}

void Tablo_Sil(Yurutucu& y, SemaGoruntusu& sema, const std::string& ad) {
  if (Nesne_Yok(sema, ad, "U")) return;
  y.mesaj(ad + " Tablosu Siliniyor");
  if (y.calistir("DROP TABLE " + ad)) sema.nesneSil(ad);
}

void Surum_Yaz(Yurutucu& y, const std::string& firmaAdi) {
  session::Oturum& o = y.oturum();
  if (!baglan(o, katalog)) {
    o.kutular->message(std::string("Tanımlama Veri Tabanına Bağlanılamadı. Olası Hatalar :") + olasiHatalar +
                       "\nVERSİYON BILGILARI YAZILAMADI");
    return;
  }
  const std::string adli = " WHERE sysfrm_dbnm='" + db::escape(firmaAdi) + "'";
  std::string kimlik;
  try {
    // The column's collation may hold names for one that are two databases.
    const auto rows = o.Baglanti->query("SELECT sysfrm_ID FROM sysfrmlng" + adli);
    if (rows && rows->count() > 1)
      if (const auto firma = session::Firma_Bul(o, firmaAdi))
        kimlik = " AND sysfrm_ID=" + std::to_string(firma->id);
  } catch (const db::SqlError&) {
    // The statement that follows tells it.
  }
  y.calistir("UPDATE sysfrmlng SET DBVRSYN='" + db::escape(o.Tanim_DB_Versiyon) + "'" + adli + kimlik);
}

std::optional<std::string> guncellemeEngeli(session::Oturum& o, const std::string& firmaAdi) {
  const std::string name = "\"" + firmaAdi + "\" ";
  try {
    session::Katalog_Bagla(o, katalog);
    if (!session::Firma_Bul(o, firmaAdi)) return name + "adında bir firma tanımlı değil.";
    session::Katalog_Bagla(o, firmaAdi);
    if (!firmaVeritabaniMi(SemaGoruntusu::oku(*o.Baglanti)))
      return name + "bir firma veritabanı değil; hiçbir şey değiştirilmedi.";
    if (baskasiKullaniyor(*o.Baglanti))
      return name + "veritabanı başka bir bağlantı tarafından kullanılıyor; hiçbir şey değiştirilmedi.";
    yazmayiDene(*o.Baglanti);
    return std::nullopt;
  } catch (const db::SqlError& error) {
    return name + "veritabanı güncellenemez; hiçbir şey değiştirilmedi.\n" + error.what();
  }
}

GuncellemeSonucu Veritabani_Guncelle(session::Oturum& o, const std::string& firmaAdi,
                                     Yurutucu::Dinleyici deneme) {
  GuncellemeSonucu sonuc;
  if (!baglan(o, firmaAdi)) {
    o.kutular->message(std::string("Veri Tabanına Bağlanılamadı. Olası Hatalar :") + olasiHatalar);
    return sonuc;
  }
  sonuc.baglandi = true;
  Yurutucu y(o, std::move(deneme));
  try {
    run(y, firmaAdi);
    sonuc.tamamlandi = true;
  } catch (const db::SqlError& error) {
    sonuc.hata = error.what();
    y.denemeyiBitir();
  }
  sonuc.sayilar = y.sayilar();
  return sonuc;
}

}  // namespace company::upgrade
