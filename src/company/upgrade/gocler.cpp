#include "company/upgrade/gocler.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "company/upgrade/onarim.h"

namespace company::upgrade {
namespace {

enum class Kosul { Eklenince, Degisince };  // on "added" only, or on any outcome but "nothing done"

struct Goc {
  std::string_view tablo, kolon;
  Kosul kosul;
  std::vector<std::string> statements;
  std::string_view kutu;    // shown with a stop icon when the statement is refused
  bool satirVarsa = false;  // only when the table has rows
};

// The bracket that this statement opens is never closed, so that the server refuses it each time and the
// link column stays empty. That is the required outcome of this step.
constexpr const char* acilisMetni =
    "UPDATE ACILIS SET CariHareket_Fis_ID=(SELECT Cari_Hareket_ID FROM CARIHAREKET WHERE Islem_Tipi='Açılış "
    "Fişi' AND Fis_No=ACILIS.Fis_No";

std::string odemeMetni(const std::string& kolon) {
  return "UPDATE ODEMEHAREKET SET " + kolon + "=CARIHAREKETLERVALOR." + kolon +
         " FROM CARIHAREKETLERVALOR WHERE CARIHAREKETLERVALOR.Islem_ID=ODEMEHAREKET.Islem_ID AND "
         "CARIHAREKETLERVALOR.Islem_Tipi=ODEMEHAREKET.Islem_Tipi";
}

constexpr std::string_view odemeKutusu =
    "Ödeme Hareketlerinin İşyeri Bağlantılarını Yapamadım. Elle Ayarlanması Gerekebilir. Lütfen Program "
    "Satıcınızla Görüşün.";

const std::vector<Goc>& gocTablosu() {
  static const std::vector<Goc> rows = {
      {"ACILIS",
       "CariHareket_Fis_ID",
       Kosul::Eklenince,
       {acilisMetni},
       "Cari Hesap Açılış Hareketlerini Açılış Kartlarıyla Bağlayamadım.Elle Ayarlanması Gerekebilir.Lütfen "
       "Program Satıcınızla Görüşün.",
       true},
      {"ODEMEHAREKET", "Isyeri_ID", Kosul::Eklenince, {odemeMetni("Isyeri_ID")}, odemeKutusu},
      {"ODEMEHAREKET", "Ozel", Kosul::Eklenince, {odemeMetni("Ozel")}, odemeKutusu},
      {"STOKKART", "AktifBirim", Kosul::Eklenince, {"UPDATE STOKKART SET AktifBirim=Ana_Birim"}, {}},
      {"MUHKART",
       "Ana_Hesap_Kod",
       Kosul::Eklenince,
       {"UPDATE MUHKART SET Ana_Hesap_Kod=MHesap_Kod",
        "UPDATE MUHKART SET Ana_Hesap_Kod=LEFT(Ana_Hesap_Kod,3)"},
       {}},
      // Four types of notes stand against five of cheques; both lists are as they must be.
      {"BORDRO",
       "Hesap_ID",
       Kosul::Eklenince,
       {"UPDATE BORDRO SET Hesap_No=(SELECT TOP 1 Banka_Hesap_No FROM CEK WHERE "
        "Bordro_ID=BORDRO.Bordro_ID),Hesap_ID=ISNULL((SELECT TOP 1 Hesap_ID FROM CEK WHERE "
        "Bordro_ID=BORDRO.Bordro_ID),0) WHERE Islem_Tipi IN ('Çek Çıkış(Banka Tahsil)','Çek Çıkış(Banka "
        "Teminat)','Çek Giriş(Bankadan İade)','Bankadaki Müş. Çek Tahsili','Bankadan Çek Ödemesi')",
        "UPDATE BORDRO SET Hesap_No=(SELECT TOP 1 Banka_Hesap_No FROM SENET WHERE "
        "Bordro_ID=BORDRO.Bordro_ID),Hesap_ID=ISNULL((SELECT TOP 1 Hesap_ID FROM SENET WHERE "
        "Bordro_ID=BORDRO.Bordro_ID),0) WHERE Islem_Tipi IN ('Senet Çıkış(Banka Tahsil)','Senet Çıkış(Banka "
        "Teminat)','Senet Giriş(Bankadan İade)','Bankadaki Müş. Senet Tahsili')"},
       {}},
      {"FATURAKART",
       "Toplam_KDV",
       Kosul::Degisince,
       {"UPDATE FATURAKART SET Toplam_KDV=ISNULL(KDV_Toplam,0)"},
       {}},
      {"STOKHAREKETKART",
       "Toplam_KDV",
       Kosul::Degisince,
       {"UPDATE STOKHAREKETKART SET Toplam_KDV=ISNULL(KDV_Toplam,0)"},
       {}},
      {"FATURAHAREKET",
       "Toplam_KDV",
       Kosul::Degisince,
       {"UPDATE FATURAHAREKET SET Toplam_KDV=ISNULL(KDV_Tutar,0)"},
       {}},
      {"STOKHAREKET",
       "Toplam_KDV",
       Kosul::Degisince,
       {"UPDATE STOKHAREKET SET Toplam_KDV=ISNULL(KDV_Tutar,0)"},
       {}},
      {"AMBTRS", "Toplam_KDV", Kosul::Degisince, {"UPDATE AMBTRS SET Toplam_KDV=ISNULL(KDV_Tutar,0)"}, {}},
      {"SIPARISKART", "KDV_Dahil", Kosul::Degisince, {"UPDATE SIPARISKART SET KDV_Dahil =0"}, {}},
      {"STOKHAREKETKART",
       "FaturaTuru",
       Kosul::Eklenince,
       {"UPDATE STOKHAREKETKART SET FaturaTuru=FATURAKART.FaturaTuru FROM FATURAKART WHERE "
        "FATURAKART.Fatura_ID=STOKHAREKETKART.Fatura_ID"},
       {}},
      {"STOKKART",
       "AktifBirim_Barkod",
       Kosul::Eklenince,
       {"UPDATE STOKKART SET AktifBirim_Barkod=Ana_Birim_Barkod  WHERE AktifBirim_Katsayi=1",
        "UPDATE STOKKART SET AktifBirim_Barkod=Birim2_Barkod  WHERE AktifBirim_Katsayi=Birim2_Katsayi",
        "UPDATE STOKKART SET AktifBirim_Barkod=Birim3_Barkod  WHERE AktifBirim_Katsayi=Birim3_Katsayi"},
       {}},
  };
  return rows;
}

bool applies(const Goc& goc, Sonuc sonuc) {
  return goc.kosul == Kosul::Eklenince ? sonuc == Sonuc::Eklendi : sonuc != Sonuc::Degismedi;
}

// Discounts go into a column of their own and back; together, or the column would be gone without its values.
// A copy that an earlier move left behind holds old texts, unless it broke off after the column was dropped:
// then it holds the only ones.
Gocler iskontoGocu(const SemaGoruntusu& sema, Sonuc sonuc) {
  Gocler out{{"ALTER TABLE FATURAHAREKET ADD ISKYEDEK CHAR(20)",
              "UPDATE FATURAHAREKET SET ISKYEDEK=ISK WHERE NOT ISK IS NULL",
              "ALTER TABLE FATURAHAREKET DROP COLUMN ISK", "ALTER TABLE FATURAHAREKET ADD ISK CHAR(20)",
              "UPDATE FATURAHAREKET SET ISK=ISKYEDEK WHERE NOT ISKYEDEK IS NULL"},
             true};
  if (!sema.kolon("FATURAHAREKET", "ISKYEDEK")) return out;
  if (sonuc == Sonuc::Eklendi)
    out.deyimler.erase(out.deyimler.begin());
  else
    out.deyimler.front() = "UPDATE FATURAHAREKET SET ISKYEDEK=NULL";
  return out;
}

// Names the rows for which the move was refused.
std::string iskontoKutusu(Yurutucu& y) {
  constexpr std::int64_t named = 20;
  std::string text =
      "FATURAHAREKET.ISK kolonu CHAR(20) yapılamadı ve olduğu gibi bırakıldı; hiçbir iskonto değişmedi.";
  const auto rows = y.oku(
      "SELECT Fatura_Hareket_ID,Fis_No,Islem_No,CONVERT(VARCHAR(8000),ISK) FROM FATURAHAREKET WHERE "
      "LEN(CONVERT(VARCHAR(8000),ISK))>20 ORDER BY Fatura_Hareket_ID");
  if (!rows || rows->count() == 0) return text;
  text += "\n20 karaktere sığmayanlar:";
  for (std::int64_t r = 0; r < std::min(rows->count(), named); ++r)
    text += "\nHareket " + rows->value(r, 0).text() + ", fiş " + rows->value(r, 1).trimmed() + ", satır " +
            rows->value(r, 2).text() + ": " + rows->value(r, 3).trimmed();
  if (rows->count() > named) text += "\n… ve " + std::to_string(rows->count() - named) + " satır daha";
  return text;
}

bool rowsIn(Yurutucu& y, const std::string& tablo) {
  const auto rows = y.oku("SELECT TOP 1 1 FROM " + tablo);
  return rows && rows->count() > 0;
}

}  // namespace

Gocler kolonGocu(Yurutucu& y, const SemaGoruntusu& sema, const std::string& tablo, const std::string& kolon,
                 Sonuc sonuc) {
  if (sonuc == Sonuc::Eklendi && tablo == "MUHKART" && kolon == "HesapSeviyesi")
    return {Hesap_Seviyesi_Hesapla(y)};
  if (sonuc == Sonuc::Eklendi && tablo == "AMBTRS" && kolon == "Karsi_Ambar_No")
    return {Karsi_Ambar_Doldur(y)};
  if (sonuc != Sonuc::Degismedi && tablo == "FATURAHAREKET" && kolon == "ISK")
    return iskontoGocu(sema, sonuc);
  for (const Goc& goc : gocTablosu())
    if (goc.tablo == tablo && goc.kolon == kolon && !goc.satirVarsa && applies(goc, sonuc))
      return {goc.statements};
  return {};
}

void gocleriBitir(Yurutucu& y, const std::string& tablo, const TabloSonucu& sonuc) {
  for (const Goc& goc : gocTablosu()) {
    if (goc.tablo != tablo) continue;
    const std::string kolon(goc.kolon);
    bool refused = sonuc.basarisizGocler.contains(kolon);
    if (const auto it = sonuc.kolonlar.find(kolon);
        goc.satirVarsa && it != sonuc.kolonlar.end() && applies(goc, it->second) && rowsIn(y, tablo))
      refused = !y.onar(goc.statements.front());
    if (refused && !goc.kutu.empty()) y.oturum().kutular->message(std::string(goc.kutu), session::Icon::Stop);
  }
  if (tablo == "FATURAHAREKET" && sonuc.basarisizGocler.contains("ISK"))
    y.oturum().kutular->message(iskontoKutusu(y), session::Icon::Stop);
}

}  // namespace company::upgrade
