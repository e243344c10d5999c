#include "company/upgrade/onarim.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "db/recordset.h"
#include "db/value.h"

namespace company::upgrade {
namespace {

// Columns that both tables have under one name.
constexpr std::string_view movedColumns[] = {
    "Fis_No",   "Cari_Kod",      "Cari_Unvan",   "Cari_ID",   "Hesap_ID",     "Anlasma_ID",
    "Belge_No", "O_Kod",         "Aciklama",     "Saat",      "Gun",          "AY_Index",
    "Ay",       "Hafta",         "Kullanici_ID", "Satici_ID", "Ozel",         "Doviz_ID",
    "KUR",      "Dovizli_Tutar", "Isyeri_ID",    "Ent_Durum", "YR_Kullanici", "YR_Tarih",
    "YR_Saat",  "Deg_Kullanici", "Deg_Tarih",    "Deg_Saat",  "BTutar",       "Islem_Tipi",
};

int columnOf(const db::Rows& rows, std::string_view name) {
  const auto same = [](char a, char b) { return (a | 0x20) == (b | 0x20); };
  for (std::size_t i = 0; i < rows.fields().size(); ++i)
    if (std::ranges::equal(rows.fields()[i].name, name, same)) return static_cast<int>(i);
  return -1;
}

db::Value at(const db::Rows& rows, std::int64_t row, std::string_view name) {
  const int column = columnOf(rows, name);
  return column < 0 ? db::Value() : rows.value(row, column);
}

std::int64_t dayNumber(const db::DateTime& d) {  // civil days, for differences only
  const int y = d.month <= 2 ? d.year - 1 : d.year;
  const int m = d.month <= 2 ? d.month + 9 : d.month - 3;
  return 365LL * y + y / 4 - y / 100 + y / 400 + (153 * m + 2) / 5 + d.day;
}

// CARIHAREKET.Vade counts days; the movement falls due when the bank pays it out.
db::Value dueDays(const db::Rows& rows, std::int64_t row) {
  const db::Value from = at(rows, row, "Islem_Tarih"), to = at(rows, row, "Hesaba_Aktarim_Tarih");
  const auto *start = from.as<db::DateTime>(), *end = to.as<db::DateTime>();
  if (!start || !end) return db::Value(0);
  return db::Value(dayNumber(*end) - dayNumber(*start));
}

std::string text(const db::Rows& rows, std::int64_t row, std::string_view name) {
  return db::escape(at(rows, row, name).trimmed());
}

void moveOne(Yurutucu& y, const db::Rows& pos, std::int64_t row) {
  db::Connection& connection = y.baglanti();
  db::Recordset cari;
  cari.open(connection, "SELECT * FROM CARIHAREKET WHERE cari_ID=-1", db::Cursor::Keyset,
            db::Lock::BatchOptimistic);
  cari.addNew();
  cari.set("Tarih", at(pos, row, "Islem_Tarih"));
  for (const std::string_view name : movedColumns)
    if (const db::Value value = at(pos, row, name); !value.isNull() && cari.fieldIndex(name) >= 0)
      cari.set(name, value);
  cari.set("Vade", dueDays(pos, row));
  cari.set("ATutar", at(pos, row, "Tutar"));
  cari.updateBatch();

  const std::string type = text(pos, row, "Islem_Tipi");
  const std::string posId = at(pos, row, "PosHareket_ID").text();
  const auto found = connection.query("SELECT TOP 1 Cari_Hareket_ID FROM CARIHAREKET WHERE Fis_No='" +
                                      text(pos, row, "Fis_No") + "' AND Islem_Tipi='" + type + "'");
  const std::string cariId = found->value(0, 0).text();
  connection.execute("UPDATE POSHAREKET SET Satis_ID=" + cariId + " WHERE PosHareket_ID=" + posId);
  connection.execute("UPDATE MUHASEBEBAGLANTI SET Entegre_ID=" + cariId + " WHERE Entegre_ID=" + posId +
                     " AND Entegre_Islem_Tipi='" + type + "' AND Modul_No=2");
  y.sayilar().gonderilen += 5;
}

}  // namespace

std::vector<std::string> Hesap_Seviyesi_Hesapla(Yurutucu& y) {
  std::vector<std::string> out;
  const auto rows = y.oku("SELECT MHesap_ID, MHesap_Kod FROM MUHKART");
  if (!rows || rows->count() == 0) return out;
  y.mesaj("Muhasebe Hesapları Kontrol Ediliyor");
  for (std::int64_t r = 0; r < rows->count(); ++r) {
    const std::string code = rows->value(r, 1).trimmed();
    out.push_back("UPDATE MUHKART SET HesapSeviyesi=" + std::to_string(std::ranges::count(code, '.')) +
                  " WHERE MHesap_ID=" + rows->value(r, 0).text());
    y.adim(r + 1, rows->count());
  }
  return out;
}

std::vector<std::string> Karsi_Ambar_Doldur(Yurutucu& y) {
  std::vector<std::string> out;
  const auto slips = y.oku(
      "SELECT Islem_Tipi, Fis_No, Ambar_No FROM STOKHAREKETKART "
      "WHERE Islem_Tipi='Ambar Fişi(Ç)' OR Islem_Tipi='Ambar Fişi(G)'");
  if (!slips) return out;
  std::map<std::string, std::string> incoming;  // slip number -> warehouse, the first slip counts
  std::vector<std::pair<std::string, std::string>> outgoing;
  for (std::int64_t r = 0; r < slips->count(); ++r) {
    const std::string number = db::escape(slips->value(r, 1).trimmed());
    const db::Value warehouse = slips->value(r, 2);
    const std::string value = warehouse.isNull() ? "NULL" : warehouse.text();
    if (slips->value(r, 0).trimmed() == "Ambar Fişi(Ç)")
      outgoing.emplace_back(number, value);
    else
      incoming.emplace(number, value);
  }
  if (outgoing.empty()) return out;
  y.mesaj("Ambar Transfer Hareketlerie Karşı Ambarlar Yerleştiriliyor.");
  std::int64_t done = 0;
  for (const auto& [number, warehouse] : outgoing) {
    const std::string where = " AND Fis_No='" + number + "'";
    out.push_back("UPDATE AMBTRS SET Karsi_Ambar_No=" + warehouse + " WHERE Islem_Tipi='Ambar Fişi(G)'" +
                  where);
    if (const auto other = incoming.find(number); other != incoming.end())
      out.push_back("UPDATE AMBTRS SET Karsi_Ambar_No=" + other->second +
                    " WHERE Islem_Tipi='Ambar Fişi(Ç)'" + where);
    y.adim(++done, static_cast<std::int64_t>(outgoing.size()));
  }
  return out;
}

void Kredi_Tahsilat_Tasi(Yurutucu& y) {
  y.mesaj("Kredi Kartı Tahsilatları Kontrol Ediliyor.");
  const auto pos =
      y.oku("SELECT * FROM POSHAREKET WHERE ISNULL(Satis_ID,0)=0 AND Islem_Tipi='Kredi Kartı Tahsilat'");
  if (!pos) return;
  if (y.denemeMi()) {
    y.calistir("-- " + std::to_string(pos->count()) + " kart tahsilatı CARIHAREKET tablosuna taşınır");
    return;
  }
  for (std::int64_t r = 0; r < pos->count(); ++r) {
    y.baglanti().execute("BEGIN TRANSACTION");
    try {
      moveOne(y, *pos, r);
      y.baglanti().execute("COMMIT TRANSACTION");
      ++y.sayilar().satirlar;
    } catch (const db::SqlError& error) {
      if (error.kind() == db::ErrorKind::LinkBroken) throw;
      y.baglanti().execute("IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
      ++y.sayilar().reddedilen;
    }
    y.adim(r + 1, pos->count());
  }
}

void saticilariBagla(Yurutucu& y) {
  const auto people = y.oku("SELECT Personel_ID, Kod FROM PERSONELKARTI");
  if (!people || people->count() == 0) return;
  const auto sellers = y.oku("SELECT Satici_ID, Satici_Kodu FROM SATICI");
  if (!sellers) return;
  std::map<std::string, std::string> byCode;  // the first seller of a code counts
  for (std::int64_t r = 0; r < sellers->count(); ++r)
    byCode.emplace(sellers->value(r, 1).trimmed(), sellers->value(r, 0).text());
  std::vector<std::string> statements;
  for (std::int64_t r = 0; r < people->count(); ++r)
    if (const auto it = byCode.find(people->value(r, 1).trimmed()); it != byCode.end())
      statements.push_back("UPDATE SATICI SET Personel_ID=" + people->value(r, 0).text() +
                           " WHERE Satici_ID=" + it->second);
  if (!y.topluca(statements)) ++y.sayilar().reddedilen;
}

}  // namespace company::upgrade
