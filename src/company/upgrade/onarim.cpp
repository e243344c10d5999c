#include "company/upgrade/onarim.h"

#include <algorithm>
#include <string_view>
#include <utility>

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

// The columns of a CARIHAREKET row with their values; what is NULL is left to its default.
std::vector<std::pair<std::string, db::Value>> cariRow(const SemaGoruntusu& sema, const db::Rows& pos,
                                                       std::int64_t row) {
  std::vector<std::pair<std::string, db::Value>> out{
      {"Tarih", at(pos, row, "Islem_Tarih")}, {"Vade", dueDays(pos, row)}, {"ATutar", at(pos, row, "Tutar")}};
  for (const std::string_view name : movedColumns)
    if (sema.kolon("CARIHAREKET", name)) out.emplace_back(name, at(pos, row, name));
  std::erase_if(out, [](const auto& field) { return field.second.isNull(); });
  return out;
}

std::string equals(const std::string& column, const db::Value& value) {
  return column + (value.isNull() ? " IS NULL" : "=" + db::literal(value));
}

// The new row is found by its number and kind; of two such rows the first gives the link.
std::vector<Yurutucu::Adim> moveSteps(const SemaGoruntusu& sema, const db::Rows& pos, std::int64_t row) {
  std::string names, values;
  for (const auto& [name, value] : cariRow(sema, pos, row)) {
    names += (names.empty() ? "" : ",") + name;
    values += (values.empty() ? "" : ",") + db::literal(value);
  }
  const std::string id = at(pos, row, "PosHareket_ID").text();
  const db::Value type = at(pos, row, "Islem_Tipi");
  return {
      {"INSERT INTO CARIHAREKET (" + names + ") VALUES (" + values + ")", true},
      {"UPDATE POSHAREKET SET Satis_ID=(SELECT TOP 1 Cari_Hareket_ID FROM CARIHAREKET WHERE " +
       equals("Fis_No", at(pos, row, "Fis_No")) + " AND " + equals("Islem_Tipi", type) +
       " ORDER BY Cari_Hareket_ID) WHERE PosHareket_ID=" + id},
      {"UPDATE MUHASEBEBAGLANTI SET Entegre_ID=(SELECT Satis_ID FROM POSHAREKET WHERE PosHareket_ID=" + id +
       ") WHERE Entegre_ID=" + id + " AND " + equals("Entegre_Islem_Tipi", type) + " AND Modul_No=2"}};
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
      "SELECT CIKIS.Stok_HareketKart_ID, CIKIS.Fis_No, CIKIS.Ambar_No, GIRIS.Ambar_No FROM STOKHAREKETKART "
      "CIKIS LEFT JOIN STOKHAREKETKART GIRIS ON GIRIS.Fis_No=CIKIS.Fis_No AND GIRIS.Islem_Tipi='Ambar "
      "Fişi(G)' WHERE CIKIS.Islem_Tipi='Ambar Fişi(Ç)' "
      "ORDER BY CIKIS.Stok_HareketKart_ID, GIRIS.Stok_HareketKart_ID");
  if (!slips || slips->count() == 0) return out;
  y.mesaj("Ambar Transfer Hareketlerie Karşı Ambarlar Yerleştiriliyor.");
  for (std::int64_t r = 0; r < slips->count(); ++r) {
    y.adim(r + 1, slips->count());
    if (r > 0 && slips->value(r, 0) == slips->value(r - 1, 0)) continue;  // the first incoming slip counts
    const std::string where = " AND Fis_No='" + db::escape(slips->value(r, 1).text()) + "'";
    const auto name = [&](const db::Value& warehouse, const char* kind) {
      if (!warehouse.isNull())
        out.push_back("UPDATE AMBTRS SET Karsi_Ambar_No=" + warehouse.text() + " WHERE Islem_Tipi='" + kind +
                      "'" + where);
    };
    name(slips->value(r, 2), "Ambar Fişi(G)");
    name(slips->value(r, 3), "Ambar Fişi(Ç)");
  }
  return out;
}

void Kredi_Tahsilat_Tasi(Yurutucu& y, const SemaGoruntusu& sema) {
  y.mesaj("Kredi Kartı Tahsilatları Kontrol Ediliyor.");
  const auto pos =
      y.oku("SELECT * FROM POSHAREKET WHERE ISNULL(Satis_ID,0)=0 AND Islem_Tipi='Kredi Kartı Tahsilat'");
  if (!pos) return;
  for (std::int64_t r = 0; r < pos->count(); ++r) {
    if (!y.butun(moveSteps(sema, *pos, r))) ++y.sayilar().reddedilen;
    y.adim(r + 1, pos->count());
  }
}

void saticilariBagla(Yurutucu& y) {
  const auto pairs = y.oku(
      "SELECT PERSONELKARTI.Personel_ID, SATICI.Satici_ID FROM PERSONELKARTI, SATICI WHERE "
      "SATICI.Satici_Kodu=LTRIM(RTRIM(PERSONELKARTI.Kod)) ORDER BY PERSONELKARTI.Personel_ID, "
      "SATICI.Satici_ID");
  if (!pairs) return;
  std::vector<std::string> statements;
  for (std::int64_t r = 0; r < pairs->count(); ++r)
    if (r == 0 || pairs->value(r, 0) != pairs->value(r - 1, 0))  // the first seller of a code
      statements.push_back("UPDATE SATICI SET Personel_ID=" + pairs->value(r, 0).text() +
                           " WHERE Satici_ID=" + pairs->value(r, 1).text());
  if (!y.topluca(statements)) ++y.sayilar().reddedilen;
}

}  // namespace company::upgrade
