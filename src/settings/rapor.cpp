#include "settings/rapor.h"

#include <array>

#include "catalog/katalog.h"
#include "session/izgara.h"
#include "session/metin.h"
#include "session/statements.h"

namespace settings {

namespace {

using session::Oturum;

constexpr std::array<std::string_view, 10> moduller = {
    "KASA", "CARİ", "FATURA", "STOK", "SİPARİŞ", "BANKA", "ÇEK SENET", "ÜRETİM", "PERSONEL", "MUHASEBE"};
// "RAPOLARI" is the system's own spelling.
constexpr std::array<std::string_view, 5> kisimlar = {"EVRAK BASIMI", "KART RAPORLARI", "HAREKET RAPORLARI",
                                                      "TOPLAM RAPOLARI", "PİVOT RAPORLAR"};
// Nothing ever sets it, so every save adds a row.
constexpr int Secili_TSR_ID = 0;

}  // namespace

std::span<const std::string_view, 10> raporModulleri() {
  return moduller;
}
std::span<const std::string_view, 5> raporKisimlari() {
  return kisimlar;
}

bool Rapor_Bagla(Oturum& oturum) {
  try {
    if (oturum.Baglanti && oturum.Baglanti->state() == db::State::Open) oturum.Baglanti->close();
    oturum.Katalog_Adi = catalog::catalogDatabase;
    session::Katalog_Bagla(oturum, oturum.Katalog_Adi);
    return true;
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    return false;
  }
}

std::string Rapor_Oku(Oturum& oturum, int modul, int kisim) {
  db::Recordset k;
  const std::string sql =
      "SELECT * FROM TSRSQL WHERE Modul=" + std::to_string(modul) + " AND Kisim=" + std::to_string(kisim);
  if (session::Sorgu_Ac(oturum, k, sql) != 0 || k.state() != db::State::Open || k.eof()) return {};
  return k.field("DEF_SQL").trimmed();
}

bool Rapor_Kaydet(Oturum& oturum, int modul, int kisim, const std::string& metin) {
  if (modul == 0 || kisim == 0) return false;
  if (const auto harf = session::yabanciHarf(metin)) {
    oturum.kutular->message("“" + *harf + "” harfi kullanılamaz (1254 Türkçe kod sayfasında yok).",
                            session::Icon::Stop);
    return false;
  }
  try {
    db::Recordset k;
    k.open(*oturum.Baglanti, "SELECT * FROM TSRSQL WHERE TSR_ID=" + std::to_string(Secili_TSR_ID),
           db::Cursor::Keyset, db::Lock::BatchOptimistic);
    if (k.eof()) k.addNew();
    k.set("Modul", modul);
    k.set("Kisim", kisim);
    k.set("DEF_SQL", metin);
    k.updateBatch();
    return true;
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    return false;
  }
}

std::vector<RaporMetni> Rapor_Tumu(Oturum& oturum) {
  std::vector<RaporMetni> hepsi;
  db::Recordset k;
  k.open(*oturum.Baglanti, "SELECT * FROM TSRSQL ORDER BY TSR_ID");
  for (; !k.eof(); k.moveNext())
    hepsi.push_back({static_cast<int>(k.field("Modul").integer()),
                     static_cast<int>(k.field("Kisim").integer()), k.field("DEF_SQL").trimmed()});
  return hepsi;
}

}  // namespace settings
