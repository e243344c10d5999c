#include "settings/terminal.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "catalog/katalog.h"
#include "platform/code_page.h"
#include "session/metin.h"
#include "session/sayi.h"
#include "session/statements.h"

namespace settings {

namespace {

using session::Oturum;
using session::Trim;

constexpr std::array<TerminalOgesi, 9> ogeler = {{{"Barkod", "Barkod", true},
                                                  {"Stok Kodu", "Stok_Kod", false},
                                                  {"Stok Adı", "Stok_Ad", false},
                                                  {"Miktar", "Miktar", true},
                                                  {"Birim", "Birim", false},
                                                  {"Birim Fiyat", "Birim_Fiyat", false},
                                                  {"KDV", "KDV", false},
                                                  {"İskonto", "ISK", false},
                                                  {"Tutar", "Tutar", false}}};

TerminalTanimi satiriOku(const db::Recordset& k) {
  TerminalTanimi t;
  t.Tanim_ID = k.field("Tanim_ID").trimmed();
  t.Tanim_Kod = k.field("Tanim_Kod").trimmed();
  t.Tanim_Ad = k.field("Tanim_Ad").trimmed();
  t.Dosya_Yol = k.field("Dosya_Yol").trimmed();
  t.AyiracVar = k.field("AyiracVar").boolean();
  t.Ayirac = k.field("Ayirac").text();
  if (t.Ayirac == " " && !t.AyiracVar) t.Ayirac.clear();
  t.MiktarParcali = k.field("MiktarParcali").boolean();
  t.ParcaAdedi = k.field("ParcaAdedi").trimmed();
  for (std::size_t i = 0; i < ogeler.size(); ++i) {
    const std::string kok(ogeler[i].kok);
    t.ogeler[i] = {k.field(kok).boolean(), k.field(kok + "_Bas").trimmed(), k.field(kok + "_Hane").trimmed()};
  }
  return t;
}

// What a field says that its column cannot hold; empty when all fits.
std::string sigmayan(const TerminalTanimi& t) {
  const struct {
    std::string_view ad, metin;
    int sinir;
  } yazilar[] = {{"Tanım Kodu", t.Tanim_Kod, 26},
                 {"Tanım Açıklaması", t.Tanim_Ad, 50},
                 {"Ayıraç", t.Ayirac, 1},
                 {"Okunacak Dosya", t.Dosya_Yol, 0}};
  for (const auto& yazi : yazilar) {
    session::IzgaraKolonu kolon;
    kolon.baslik = yazi.ad;
    kolon.sinir = yazi.sinir;
    std::string metin(yazi.metin);
    if (std::string hata = session::hucreDenetle(kolon, metin); !hata.empty()) return hata;
  }
  constexpr double enCok = 32767;
  const auto sayi = [](const std::string& metin) { return std::atof(metin.c_str()); };
  if (t.MiktarParcali && (!session::sayiMi(t.ParcaAdedi) || sayi(t.ParcaAdedi) > enCok))
    return "Parça adedi bir sayı değil: “" + t.ParcaAdedi + "”";
  for (std::size_t i = 0; i < ogeler.size(); ++i)
    for (const std::string* metin : {&t.ogeler[i].Bas, &t.ogeler[i].Adet})
      if (session::sayiMi(*metin) && sayi(*metin) > enCok)
        return std::string(ogeler[i].yazi) + ": “" + *metin + "” çok büyük.";
  return {};
}

db::Value sayiDegeri(const std::string& metin) {
  return session::sayiMi(metin) ? db::Value(static_cast<std::int64_t>(std::atof(metin.c_str())))
                                : db::Value(0);
}

void yaz(db::Recordset& k, const TerminalTanimi& t) {
  k.set("Tanim_Kod", Trim(t.Tanim_Kod));
  k.set("Tanim_Ad", t.Tanim_Ad);
  k.set("Dosya_Yol", t.Dosya_Yol);
  k.set("AyiracVar", t.AyiracVar);
  k.set("Ayirac", t.AyiracVar ? t.Ayirac : std::string());
  k.set("MiktarParcali", t.MiktarParcali);
  k.set("ParcaAdedi", t.MiktarParcali ? sayiDegeri(t.ParcaAdedi) : db::Value(0));
  for (std::size_t i = 0; i < ogeler.size(); ++i) {
    const std::string kok(ogeler[i].kok);
    k.set(kok, t.ogeler[i].Secim);
    k.set(kok + "_Bas", sayiDegeri(t.ogeler[i].Bas));
    k.set(kok + "_Hane", sayiDegeri(t.ogeler[i].Adet));
  }
}

// A line of a file: UTF-8 where it is, else code page 1254.
std::u32string satirMetni(std::string satir) {
  while (!satir.empty() && (satir.back() == '\r' || satir.back() == '\n')) satir.pop_back();
  if (satir.starts_with("\xEF\xBB\xBF")) satir.erase(0, 3);
  return platform::toUtf32(platform::isUtf8(satir) ? satir : platform::decode1254(satir));
}

std::string kes(const TerminalTanimi& t, const TerminalTanimi::Oge& oge, const std::u32string& satir) {
  const auto bas = static_cast<std::size_t>(std::max(std::atoi(oge.Bas.c_str()), 0));
  if (bas == 0) return {};
  if (!t.AyiracVar || t.Ayirac.empty()) {
    if (bas > satir.size()) return {};
    const auto en = static_cast<std::size_t>(std::max(std::atoi(oge.Adet.c_str()), 0));
    return Trim(platform::toUtf8(satir.substr(bas - 1, en)));
  }
  const char32_t ayirac = platform::toUtf32(t.Ayirac).front();
  std::size_t yer = 0;
  for (std::size_t alan = 1; alan < bas; ++alan) {
    yer = satir.find(ayirac, yer);
    if (yer == std::u32string::npos) return {};
    ++yer;
  }
  const std::size_t son = satir.find(ayirac, yer);
  return Trim(platform::toUtf8(satir.substr(yer, son == std::u32string::npos ? son : son - yer)));
}

}  // namespace

std::span<const TerminalOgesi, 9> terminalOgeleri() {
  return ogeler;
}

namespace {

std::vector<session::IzgaraKolonu> kolonlariKur() {
  using session::HucreTuru;
  static std::vector<std::string> adlar;  // the columns keep views of them
  std::vector<session::IzgaraKolonu> kolonlar = {
      {"Tanim_ID", "Tanım ID", 0, HucreTuru::Sayi},
      {"Tanim_Kod", "Tanım Kodu", 0, HucreTuru::Metin, false, false, false, 26},
      {"Tanim_Ad", "Tanım Açıklaması", 0, HucreTuru::Metin, false, false, false, 50},
      {"Dosya_Yol", "Okunacak Dosya"},
      {"AyiracVar", "Ayıraç Kullan", 0, HucreTuru::Tik},
      {"Ayirac", "Ayıraç", 0, HucreTuru::Metin, false, false, false, 1},
      {"MiktarParcali", "Miktarlar Parçalıdır", 0, HucreTuru::Tik},
      {"ParcaAdedi", "Parça Adedi", 0, HucreTuru::Sayi}};
  adlar.reserve(2 * terminalOgeleri().size());
  for (const TerminalOgesi& oge : terminalOgeleri()) {
    kolonlar.push_back({oge.kok, oge.yazi, 0, HucreTuru::Tik});
    for (const char* son : {"_Bas", "_Hane"}) {
      adlar.push_back(std::string(oge.kok) + son);
      kolonlar.push_back({adlar.back(), adlar.back(), 0, HucreTuru::Sayi});
    }
  }
  return kolonlar;
}

}  // namespace

std::span<const session::IzgaraKolonu> terminalKolonlari() {
  static const std::vector<session::IzgaraKolonu> kolonlar = kolonlariKur();
  return kolonlar;
}

session::IzgaraSatiri terminalSatiri(const TerminalTanimi& t) {
  const auto tik = [](bool deger) { return std::string(deger ? "1" : "0"); };
  session::IzgaraSatiri satir{{t.Tanim_ID, t.Tanim_Kod, t.Tanim_Ad, t.Dosya_Yol, tik(t.AyiracVar), t.Ayirac,
                               tik(t.MiktarParcali), t.ParcaAdedi}};
  for (const auto& oge : t.ogeler) {
    satir.hucreler.push_back(tik(oge.Secim));
    satir.hucreler.push_back(oge.Bas);
    satir.hucreler.push_back(oge.Adet);
  }
  return satir;
}

std::vector<session::ListeSecenegi> Terminal_Listesi_Yenile(Oturum& oturum) {
  std::vector<session::ListeSecenegi> liste;
  db::Recordset k;
  session::Sorgu_Ac_Mesajli(oturum, k, "SELECT Tanim_kod,Tanim_Ad FROM DISVERITANIM");
  if (k.state() != db::State::Open) return liste;
  for (; !k.eof(); k.moveNext())
    liste.push_back({k.field("Tanim_kod").trimmed(), k.field("Tanim_Ad").trimmed()});
  return liste;
}

std::vector<session::ListeSecenegi> Terminal_Listesi(Oturum& oturum) {
  try {
    if (oturum.Baglanti && oturum.Baglanti->state() == db::State::Open) oturum.Baglanti->close();
    oturum.Katalog_Adi = catalog::catalogDatabase;
    session::Katalog_Bagla(oturum, oturum.Katalog_Adi);
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    return {};
  }
  return Terminal_Listesi_Yenile(oturum);
}

namespace {

std::optional<TerminalTanimi> bul(Oturum& oturum, const std::string& kosul) {
  db::Recordset k;
  if (session::Sorgu_Ac(oturum, k, "SELECT * FROM DISVERITANIM WHERE " + kosul) != 0 ||
      k.state() != db::State::Open || k.eof())
    return std::nullopt;
  return satiriOku(k);
}

}  // namespace

std::optional<TerminalTanimi> Terminal_Oku(Oturum& oturum, const std::string& kod) {
  return bul(oturum, "Tanim_Kod='" + db::escape(Trim(kod)) + "'");
}

std::vector<std::string> Terminal_Farklari(Oturum& oturum, const TerminalTanimi& okunan) {
  const auto simdiki = bul(oturum, "Tanim_ID=" + okunan.Tanim_ID);
  session::IzgaraSatirlari simdi;
  if (simdiki) simdi.push_back(terminalSatiri(*simdiki));
  return aradakiFarklar({terminalKolonlari(), 0, 1, 2, {}}, {terminalSatiri(okunan)}, simdi);
}

std::vector<TerminalTanimi> Terminal_Tumu(Oturum& oturum) {
  std::vector<TerminalTanimi> hepsi;
  db::Recordset k;
  k.open(*oturum.Baglanti, "SELECT * FROM DISVERITANIM");
  for (; !k.eof(); k.moveNext()) hepsi.push_back(satiriOku(k));
  return hepsi;
}

std::string Terminal_Kaydet(Oturum& oturum, const TerminalTanimi& tanim, bool yeni) {
  constexpr int ayniAnahtar = 2627;
  if (std::string hata = sigmayan(tanim); !hata.empty()) return hata;
  const std::string kimlik = session::sayiMi(tanim.Tanim_ID) ? tanim.Tanim_ID : "0";
  try {
    db::Recordset k;
    k.open(*oturum.Baglanti, "SELECT * FROM DISVERITANIM WHERE Tanim_ID=" + (yeni ? "0" : kimlik),
           db::Cursor::Keyset, db::Lock::BatchOptimistic);
    if (!yeni && k.eof()) return "Kaydedilecek tanım yok. Yeni bir tanım için önce Yeni düğmesine basınız.";
    if (yeni) k.addNew();
    yaz(k, tanim);
    k.updateBatch();
    return {};
  } catch (const db::SqlError& hata) {
    if (hata.serverNumber() == ayniAnahtar)
      return "“" + Trim(tanim.Tanim_Kod) + "” kodlu bir tanım zaten var.";
    return hata.what();
  }
}

void Terminal_Sil(Oturum& oturum, const std::string& kimlik) {
  session::Komut_Calistir(oturum, oturum.Kayitlar, "DELETE FROM DISVERITANIM WHERE Tanim_ID=" + kimlik);
}

TerminalOnizleme Terminal_Onizle(const TerminalTanimi& tanim, const std::filesystem::path& dosya,
                                 std::size_t enCokSatir) {
  constexpr std::size_t enUzunSatir = 4096;
  TerminalOnizleme sonuc;
  for (std::size_t i = 0; i < ogeler.size(); ++i)
    if (tanim.ogeler[i].Secim) sonuc.basliklar.emplace_back(ogeler[i].yazi);
  std::ifstream akis(dosya, std::ios::binary);
  if (!akis) {
    sonuc.hata = "Dosya okunamadı: " + dosya.string();
    return sonuc;
  }
  std::string satir;
  while (sonuc.satirlar.size() < enCokSatir && std::getline(akis, satir)) {
    if (satir.find('\0') != std::string::npos || satir.size() > enUzunSatir) {
      sonuc.hata = "Bu bir metin dosyası değil: " + dosya.string();
      sonuc.satirlar.clear();
      return sonuc;
    }
    const std::u32string metin = satirMetni(satir);
    std::vector<std::string> hucreler;
    for (const auto& oge : tanim.ogeler)
      if (oge.Secim) hucreler.push_back(kes(tanim, oge, metin));
    sonuc.satirlar.push_back(std::move(hucreler));
  }
  return sonuc;
}

}  // namespace settings
