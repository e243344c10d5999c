#include "rights/haklar.h"

#include <algorithm>

#include "rights/islem.h"
#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

namespace {

constexpr std::string_view ayrac = " › ";

struct BolumAdi {
  Bolum bolum;
  std::string_view ad;
};
constexpr BolumAdi bolumAdlari[] = {{Bolum::Genel, "Genel Kullanım"},
                                    {Bolum::Kutu, "Onaylar ve Kısıtlar"},
                                    {Bolum::Varsayilan, "Varsayılanlar"},
                                    {Bolum::Kasiyer, "Kasiyer"}};

std::string kolonYolu(const Kolon& kolon) {
  for (const BolumAdi& bolum : bolumAdlari)
    if (bolum.bolum == kolon.bolum)
      return std::string(bolum.ad) + std::string(ayrac) + std::string(kolon.yazi);
  return std::string(kolon.ad);
}

const session::TikAgaci& bosAgac() {
  static const session::TikAgaci agac(yetkiAgaci().satirlar);
  return agac;
}

std::vector<Bayrak> bayraklariTopla() {
  std::vector<Bayrak> all;
  for (const Hak& hak : yetkiAgaci().haklar)
    if (hak.yer < std::max(kolonlar()[hak.kolon].genislik, 1))
      all.push_back({hakYolu(hak.satir), hak.kolon, hak.yer, hak.satir});
  for (std::size_t i = 0; i < kolonlar().size(); ++i)
    if (kolonlar()[i].bolum != Bolum::Agac && kolonlar()[i].tur == KolonTuru::Bit)
      all.push_back({kolonYolu(kolonlar()[i]), i, 0, -1});
  return all;
}

// At the beginning of a word: "sil" is not in "Tahsilat".
bool sozVar(std::string_view metin, std::string_view soz) {
  for (std::size_t at = metin.find(soz); at != std::string_view::npos; at = metin.find(soz, at + 1))
    if (soz.empty() || at == 0 || std::string_view(" (/").find(metin[at - 1]) != std::string_view::npos)
      return true;
  return false;
}

std::string yerDegeri(const YerYetkisi& yer, const char* isaret) {
  return !yer.Sec ? "yok" : yer.varsayilan ? std::string("var, ") + isaret : "var";
}

void yerFarklari(std::vector<Fark>& out, const std::string& baslik, const char* isaret, const Yerler& sol,
                 const Yerler& sag) {
  for (const YerYetkisi& yer : sol) {
    const auto other =
        std::find_if(sag.begin(), sag.end(), [&](const YerYetkisi& each) { return each.kod == yer.kod; });
    const std::string left = yerDegeri(yer, isaret);
    const std::string right = other == sag.end() ? "yok" : yerDegeri(*other, isaret);
    if (left != right) out.push_back({baslik + std::string(ayrac) + yer.kod + " " + yer.ad, left, right, -1});
  }
}

}  // namespace

const std::vector<Bayrak>& bayraklar() {
  static const std::vector<Bayrak> all = bayraklariTopla();
  return all;
}

std::string hakYolu(int satir) {
  std::string yol;
  for (int row = satir; row >= 0; row = bosAgac().baba(row))
    yol = bosAgac().satir(row).yazi + (yol.empty() ? "" : std::string(ayrac) + yol);
  return yol;
}

bool sozlerVar(std::string_view metin, std::string_view sozler) {
  const std::string upper = session::Buyuk_Harf(metin), words = session::Buyuk_Harf(sozler);
  for (std::size_t at = 0; at < words.size();) {
    const std::size_t end = std::min(words.find(' ', at), words.size());
    if (!sozVar(upper, std::string_view(words).substr(at, end - at))) return false;
    at = end + 1;
  }
  return true;
}

std::vector<int> hakAra(std::string_view sozler) {
  std::vector<int> own, onTheWay;
  if (session::Trim(sozler).empty()) return own;
  const session::TikAgaci& agac = bosAgac();
  for (int row = 0; row < agac.boy(); ++row) {
    if (sozlerVar(agac.satir(row).yazi, sozler)) {
      own.push_back(row);
    } else if (sozlerVar(hakYolu(row), sozler)) {
      onTheWay.push_back(row);
    } else {
      continue;
    }
    row = agac.altSon(row) - 1;  // what lies below belongs to it
  }
  own.insert(own.end(), onTheWay.begin(), onTheWay.end());
  return own;
}

std::vector<Fark> farklar(const YetkiSatiri& sol, const YetkiSatiri& sag) {
  const auto soyle = [](bool var) { return std::string(var ? "var" : "yok"); };
  std::vector<Fark> out;
  for (const Bayrak& bayrak : bayraklar()) {
    const bool left = verilmis(sol, bayrak.kolon, bayrak.yer),
               right = verilmis(sag, bayrak.kolon, bayrak.yer);
    if (left != right) out.push_back({bayrak.yol, soyle(left), soyle(right), bayrak.satir});
  }
  for (std::size_t i = 0; i < kolonlar().size(); ++i) {
    const KolonTuru tur = kolonlar()[i].tur;
    if (tur != KolonTuru::Sayi && tur != KolonTuru::Metin) continue;
    // No number and 0 say the same.
    if (tur == KolonTuru::Sayi && sol.degerler[i].integer() == sag.degerler[i].integer()) continue;
    const std::string left = sol.degerler[i].trimmed(), right = sag.degerler[i].trimmed();
    if (left != right) out.push_back({kolonYolu(kolonlar()[i]), left, right, -1});
  }
  return out;
}

std::vector<Fark> farklar(const YetkiDuzeni& sol, const YetkiDuzeni& sag) {
  std::vector<Fark> out = farklar(sol.satir, sag.satir);
  if (sol.Firma_ID != sag.Firma_ID) return out;
  yerFarklari(out, "Ambarlar", "merkez", sol.YetkiAmbarGrd, sag.YetkiAmbarGrd);
  yerFarklari(out, "İşyerleri", "varsayılan", sol.YetkiIsyeriGrd, sag.YetkiIsyeriGrd);
  return out;
}

bool kullaniciyiBul(session::Oturum& oturum, YetkiDuzeni& duzen, const std::string& kullanici,
                    const std::string& firma) {
  duzen = YetkiDuzeni{};
  if (!katalogaBaglan(oturum)) return false;
  const std::string ad = session::Buyuk_Harf(session::Trim(kullanici));
  db::Recordset& row = oturum.Kayitlar;
  session::Sorgu_Ac_Mesajli(
      oturum, row, "SELECT sysus_ID,sysus_nm,sysus FROM sysuslng WHERE sysus_nm='" + db::escape(ad) + "'");
  if (row.state() != db::State::Open) return false;
  if (row.eof()) {
    oturum.kutular->message("Bu isimle bir kullanıcı yok: " + ad, session::Icon::Stop);
    return false;
  }
  duzen.Kullanici_ID = row.field("sysus_ID").text();
  duzen.Kullanici_Ad = row.field("sysus_nm").trimmed();
  duzen.Kullanici_Sifre = row.field("sysus").trimmed();
  if (!Firma_ekle(oturum, duzen)) return false;
  if (duzen.Firma_Combo.empty()) {
    oturum.kutular->message(std::string(yetkiFirmaYok));
    return false;
  }
  const auto istenen = session::Firma_Bul(oturum, firma);
  for (const std::string& each : duzen.Firma_Combo) {
    if (!istenen || each != istenen->ad) continue;
    duzen.firma = each;
    return true;
  }
  oturum.kutular->message(duzen.Kullanici_Ad + " kullanıcısının bu firmada yetki kaydı yok: " + firma,
                          session::Icon::Stop);
  return false;
}

bool yetkiAc(session::Oturum& oturum, YetkiDuzeni& duzen, const std::string& kullanici,
             const std::string& firma) {
  return kullaniciyiBul(oturum, duzen, kullanici, firma) &&
         Firma_Sec(oturum, duzen, std::string(duzen.firma));
}

}  // namespace rights
