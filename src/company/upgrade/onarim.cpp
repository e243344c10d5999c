#include "company/upgrade/onarim.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>

#include "company/schema/schema.h"
#include "company/upgrade/kolonlar.h"
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

constexpr const char* tahsilat = "Kredi Kartı Tahsilat";

// What a collection without currency is worth, as card rows have it elsewhere.
constexpr std::array<std::pair<std::string_view, const char*>, 3> dovizsiz{
    {{"Doviz_ID", "1"}, {"KUR", "0"}, {"Dovizli_Tutar", "0"}}};

// Columns of the new row and, for each, the expression that gives it from the old one.
using Esleme = std::vector<std::pair<std::string, std::string>>;

std::string sourceOf(const SemaGoruntusu& sema, const catalog::ColumnDef& target) {
  if (sema.kolon("POSHAREKET", target.name))
    return target.nullable || target.defaultSql.empty()
               ? target.name
               : "ISNULL(" + target.name + "," + target.defaultSql + ")";
  for (const auto& [name, value] : dovizsiz)
    if (name == target.name) return value;
  return "";
}

// What the upgrade writes into a row that it finds, it writes into this one, too.
Esleme cariRow(const SemaGoruntusu& sema) {
  // CARIHAREKET.Vade counts days; the movement falls due when the bank pays it out.
  Esleme out{{"Tarih", "Islem_Tarih"},
             {"Vade", "ISNULL(DATEDIFF(d,Islem_Tarih,Hesaba_Aktarim_Tarih),0)"},
             {"ATutar", "Tutar"}};
  for (const catalog::ColumnDef& column : schema::table("CARIHAREKET")->columns) {
    if (!sema.kolon("CARIHAREKET", column.name)) continue;
    std::string source;
    if (std::ranges::find(movedColumns, column.name) != std::end(movedColumns))
      source = sourceOf(sema, column);
    else if (column.hasFill)
      source = doldurmaDegeri(tipBoy(column.type).type, column.fill);
    if (!source.empty()) out.emplace_back(column.name, source);
  }
  return out;
}

std::string equals(const std::string& column, const db::Value& value) {
  return column + (value.isNull() ? " IS NULL" : "=" + db::literal(value));
}

struct Tahsilat {
  std::string id;
  std::string statements;  // the new row, and the old one's link to it
};

// The new row is found by its number and kind; of two such rows the first gives the link.
std::vector<Tahsilat> collections(const SemaGoruntusu& sema, const db::Rows& pos) {
  std::string names, values;
  for (const auto& [name, value] : cariRow(sema)) {
    names += (names.empty() ? "" : ",") + name;
    values += (values.empty() ? "" : ",") + value;
  }
  std::vector<Tahsilat> out;
  for (std::int64_t r = 0; r < pos.count(); ++r) {
    const std::string id = pos.value(r, 0).text(), where = " WHERE PosHareket_ID=" + id + "\n";
    out.push_back(
        {id, "INSERT INTO CARIHAREKET (" + names + ") SELECT " + values + " FROM POSHAREKET" + where +
                 "UPDATE POSHAREKET SET Satis_ID=(SELECT TOP 1 Cari_Hareket_ID FROM CARIHAREKET WHERE " +
                 equals("Fis_No", pos.value(r, 1)) + " AND " + equals("Islem_Tipi", pos.value(r, 2)) +
                 " ORDER BY Cari_Hareket_ID)" + where});
  }
  return out;
}

// Ledger links by the collection that they name. They are told by their own numbers: a new row may have the
// number of a collection whose turn comes later.
std::map<std::string, std::string> ledgerLinks(Yurutucu& y) {
  std::map<std::string, std::string> out;
  const auto rows = y.oku("SELECT Baglanti_ID,Entegre_ID FROM MUHASEBEBAGLANTI WHERE Entegre_Islem_Tipi='" +
                          std::string(tahsilat) + "' AND Modul_No=2 ORDER BY Baglanti_ID");
  for (std::int64_t r = 0; rows && r < rows->count(); ++r) {
    std::string& ids = out[rows->value(r, 1).text()];
    ids += (ids.empty() ? "" : ",") + rows->value(r, 0).text();
  }
  return out;
}

std::vector<Yurutucu::Adim> moveSteps(const std::vector<Tahsilat>& all,
                                      const std::map<std::string, std::string>& links) {
  std::vector<Yurutucu::Adim> out;
  for (const Tahsilat& each : all) out.push_back({each.statements, true, 1});
  for (const Tahsilat& each : all)
    if (const auto link = links.find(each.id); link != links.end())
      out.push_back(
          {"UPDATE MUHASEBEBAGLANTI SET Entegre_ID=(SELECT Satis_ID FROM POSHAREKET WHERE PosHareket_ID=" +
           each.id + ") WHERE Baglanti_ID IN (" + link->second + ")\n"});
  return Yurutucu::yiginlar(out);
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
  const auto pos = y.oku(
      "SELECT PosHareket_ID,Fis_No,Islem_Tipi FROM POSHAREKET WHERE ISNULL(Satis_ID,0)=0 AND Islem_Tipi='" +
      std::string(tahsilat) + "' ORDER BY PosHareket_ID");
  if (!pos || pos->count() == 0) return;
  const auto links = ledgerLinks(y);
  std::vector<Tahsilat> all = collections(sema, *pos);
  for (std::int64_t r = 0; r < pos->count(); ++r) y.adim(r + 1, pos->count());
  if (y.butun(moveSteps(all, links))) return;
  // Those that the server refuses stay where they are.
  y.sayilar().reddedilen += static_cast<std::int64_t>(
      std::erase_if(all, [&](const Tahsilat& each) { return !y.kabulEdilir(each.statements); }));
  if (!all.empty() && !y.butun(moveSteps(all, links))) ++y.sayilar().reddedilen;
}

void saticilariBagla(Yurutucu& y) {
  const auto pairs = y.oku(
      "SELECT PERSONELKARTI.Personel_ID, SATICI.Satici_ID FROM PERSONELKARTI, SATICI WHERE "
      "SATICI.Satici_Kodu=LTRIM(RTRIM(PERSONELKARTI.Kod)) ORDER BY PERSONELKARTI.Personel_ID, "
      "SATICI.Satici_ID");
  if (!pairs) return;
  std::vector<Yurutucu::Adim> adimlar;
  for (std::int64_t r = 0; r < pairs->count(); ++r)
    if (r == 0 || pairs->value(r, 0) != pairs->value(r - 1, 0))  // the first seller of a code
      adimlar.push_back({"UPDATE SATICI SET Personel_ID=" + pairs->value(r, 0).text() +
                             " WHERE Satici_ID=" + pairs->value(r, 1).text() + "\n",
                         true, 1});
  if (!adimlar.empty() && !y.butun(Yurutucu::yiginlar(adimlar))) ++y.sayilar().reddedilen;
}

}  // namespace company::upgrade
