// What can be listed and loaded as a file.
#include <algorithm>
#include <array>
#include <cstdlib>

#include "catalog/katalog.h"
#include "session/metin.h"
#include "session/sayi.h"
#include "session/statements.h"
#include "settings/firma_baglanti.h"
#include "settings/parametre.h"
#include "settings/rapor.h"
#include "settings/tanim_dosyasi.h"
#include "settings/tarti.h"
#include "settings/terminal.h"

namespace settings {

namespace {

using session::HucreTuru;
using session::IzgaraSatiri;
using session::Oturum;

// --- The editors of the family

TanimListesi tanimYukle(Oturum& oturum, const ListeTuru& tur) {
  return Tanim_Yukle(oturum, *tanimBul(tur.ad));
}

void tekTikleriUygula(const TanimTuru& tur, IzgaraSatirlari& satirlar, const std::vector<int>& dokunulan) {
  for (const std::string_view tik : tur.tekTikler) {
    const auto k = static_cast<std::size_t>(kolonu(tur, tik));
    int isaretli = -1;
    for (const int satir : dokunulan)
      if (satirlar[static_cast<std::size_t>(satir)].hucreler[k] == "1") isaretli = satir;
    if (isaretli < 0) continue;
    for (std::size_t i = 0; i < satirlar.size(); ++i)
      satirlar[i].hucreler[k] = static_cast<int>(i) == isaretli ? "1" : "0";
  }
}

std::string bagliAmbarHatasi(Oturum& oturum, const TanimTuru& tur, const IzgaraSatiri& satir,
                             std::vector<session::ListeSecenegi>& ambarlar) {
  const int k = kolonu(tur, "Ambar_No");
  if (k < 0 || tur.kolonlar[static_cast<std::size_t>(k)].tur != HucreTuru::Liste) return {};
  const std::string& no = satir.hucreler[static_cast<std::size_t>(k)];
  if (ambarlar.empty()) ambarlar = Bagli_Ambarlar(oturum);
  if (no.empty() || std::ranges::find(ambarlar, no, &session::ListeSecenegi::deger) != ambarlar.end())
    return {};
  return "Bağlı Ambar: “" + no + "” listede yok.";
}

Kontrol tanimKontrol(Oturum& oturum, const ListeTuru& liste, IzgaraSatirlari& satirlar,
                     const std::vector<int>& dokunulan) {
  const TanimTuru& tur = *tanimBul(liste.ad);
  const auto kod = static_cast<std::size_t>(kolonu(tur, tur.kod)),
             ad = static_cast<std::size_t>(kolonu(tur, tur.adKolonu));
  const AnahtarSayaci sayac(tur, satirlar);
  std::vector<session::ListeSecenegi> ambarlar;
  for (const int satir : dokunulan) {
    const IzgaraSatiri& s = satirlar[static_cast<std::size_t>(satir)];
    std::string hata;
    if (session::Trim(s.hucreler[kod]).empty())
      hata = std::string(tur.kolonlar[kod].baslik) + " boş.";
    else if (tur.kodKontrol)
      hata =
          tur.kodKontrol(s.hucreler[kod], s.hucreler[ad], sayac.baskasinda(s.hucreler[kod], s.hucreler[kod]));
    if (hata.empty()) hata = bagliAmbarHatasi(oturum, tur, s, ambarlar);
    if (tur.enCokSatir > 0 && satir >= tur.enCokSatir)
      hata = "En çok " + std::to_string(tur.enCokSatir) + " satır olabilir.";
    if (!hata.empty()) return {std::move(hata), satir};
  }
  tekTikleriUygula(tur, satirlar, dokunulan);
  return tur.kontrol(satirlar, -1);
}

std::string kayitHatasi(const ListeKaydi& kayit) {
  if (!kayit.hata.empty() || kayit.aradaki.empty()) return kayit.hata;
  std::string metin = "Liste bu arada başkası tarafından değiştirildi:";
  for (const std::string& fark : kayit.aradaki) metin += "\n" + fark;
  return metin;
}

std::string tanimKaydet(Oturum& oturum, const ListeTuru& liste, const IzgaraSatirlari& okunan,
                        const IzgaraSatirlari& satirlar, const std::vector<int>&) {
  return kayitHatasi(Tanim_Kaydet(oturum, {{tanimBul(liste.ad), satirlar, okunan}}));
}

// --- Scale layouts

TanimListesi tartiYukle(Oturum& oturum, const ListeTuru&) {
  auto liste = Tarti_Yukle(oturum);
  return {std::move(liste.satirlar), std::move(liste.hata)};
}

Kontrol tartiKontrol(Oturum&, const ListeTuru&, IzgaraSatirlari& satirlar,
                     const std::vector<int>& dokunulan) {
  for (const int satir : dokunulan)
    if (auto& adet = satirlar[static_cast<std::size_t>(satir)].hucreler[Adetli]; adet.empty()) adet = "0";
  const std::string hata = Tarti_Kontrol(satirlar);
  if (hata.empty()) return {};
  constexpr std::string_view bas = "Lütfen ";
  return {hata, std::atoi(hata.c_str() + bas.size()) - 1};
}

std::string tartiKaydet(Oturum& oturum, const ListeTuru&, const IzgaraSatirlari& okunan,
                        const IzgaraSatirlari& satirlar, const std::vector<int>&) {
  return kayitHatasi(Tarti_Kaydet(oturum, satirlar, okunan));
}

// --- Terminal files: the fields, then three columns for each item

constexpr std::size_t terminalAlani = 8;

TerminalTanimi terminalTanimi(const IzgaraSatiri& satir) {
  const auto& h = satir.hucreler;
  TerminalTanimi t{h[0], h[1], h[2], h[3], h[4] == "1", h[5], h[6] == "1", h[7], {}};
  for (std::size_t i = 0; i < t.ogeler.size(); ++i) {
    const std::size_t at = terminalAlani + 3 * i;
    t.ogeler[i] = {h[at] == "1", h[at + 1], h[at + 2]};
  }
  return t;
}

TanimListesi terminalYukle(Oturum& oturum, const ListeTuru&) {
  TanimListesi liste;
  for (const TerminalTanimi& tanim : Terminal_Tumu(oturum)) liste.satirlar.push_back(terminalSatiri(tanim));
  return liste;
}

Kontrol terminalKontrol(Oturum&, const ListeTuru& tur, IzgaraSatirlari& satirlar,
                        const std::vector<int>& dokunulan) {
  for (const int satir : dokunulan) {
    const auto& h = satirlar[static_cast<std::size_t>(satir)].hucreler;
    if (session::Trim(h[1]).empty()) return {"Tanım Kodu boş.", satir};
    for (std::size_t i = 0; i < h.size(); ++i)
      if (tur.kolonlar[i].tur == HucreTuru::Sayi && !h[i].empty() && !session::sayiMi(h[i]))
        return {std::string(tur.kolonlar[i].baslik) + ": “" + h[i] + "” bir sayı değil.", satir};
  }
  return {};
}

// Several rows one by one, whole or not at all.
template <class Yaz>
std::string hepsiniYaz(Oturum& oturum, const std::vector<int>& dokunulan, Yaz&& yaz) {
  try {
    oturum.Baglanti->execute("BEGIN TRANSACTION");
    for (const int satir : dokunulan)
      if (std::string hata = yaz(static_cast<std::size_t>(satir)); !hata.empty()) {
        oturum.Baglanti->execute("IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
        return hata;
      }
    oturum.Baglanti->execute("COMMIT TRANSACTION");
    return {};
  } catch (const db::SqlError& hata) {
    return hata.what();
  }
}

std::string terminalKaydet(Oturum& oturum, const ListeTuru&, const IzgaraSatirlari&,
                           const IzgaraSatirlari& satirlar, const std::vector<int>& dokunulan) {
  return hepsiniYaz(oturum, dokunulan, [&](std::size_t satir) {
    const TerminalTanimi tanim = terminalTanimi(satirlar[satir]);
    return Terminal_Kaydet(oturum, tanim, tanim.Tanim_ID.empty());
  });
}

// --- Report texts

TanimListesi raporYukle(Oturum& oturum, const ListeTuru&) {
  TanimListesi liste;
  for (const RaporMetni& metin : Rapor_Tumu(oturum))
    liste.satirlar.push_back({{std::to_string(metin.modul), std::to_string(metin.kisim), metin.metin}});
  return liste;
}

Kontrol raporKontrol(Oturum&, const ListeTuru&, IzgaraSatirlari& satirlar,
                     const std::vector<int>& dokunulan) {
  const auto arasinda = [](const std::string& metin, std::size_t enCok) {
    return session::sayiMi(metin) && std::atoi(metin.c_str()) >= 1 &&
           std::atoi(metin.c_str()) <= static_cast<int>(enCok);
  };
  for (const int satir : dokunulan) {
    const auto& h = satirlar[static_cast<std::size_t>(satir)].hucreler;
    if (!arasinda(h[0], raporModulleri().size())) return {"Modul 1 ile 10 arasında bir sayı olmalı.", satir};
    if (!arasinda(h[1], raporKisimlari().size())) return {"Kisim 1 ile 5 arasında bir sayı olmalı.", satir};
  }
  return {};
}

std::string raporKaydet(Oturum& oturum, const ListeTuru&, const IzgaraSatirlari&,
                        const IzgaraSatirlari& satirlar, const std::vector<int>& dokunulan) {
  return hepsiniYaz(oturum, dokunulan, [&](std::size_t satir) {
    const auto& h = satirlar[satir].hucreler;
    return Rapor_Kaydet(oturum, std::atoi(h[0].c_str()), std::atoi(h[1].c_str()), h[2])
               ? std::string()
               : std::string("Metin yazılamadı.");
  });
}

std::vector<ListeTuru> turleriKur() {
  std::vector<ListeTuru> turler;
  for (const TanimTuru& tur : tanimTurleri()) {
    ListeTuru liste{tur.ad, true, {}, tur.kimlik, tur.kod, tanimYukle, tanimKontrol, tanimKaydet};
    for (const IzgaraKolonu& kolon : tur.kolonlar) liste.kolonlar.push_back(kolon);
    turler.push_back(std::move(liste));
  }
  const auto tarti = tartiKolonlari();
  turler.push_back({"tarti",
                    true,
                    {tarti.begin(), tarti.end()},
                    "Tasarim_ID",
                    "Bayrak_Kodu",
                    tartiYukle,
                    tartiKontrol,
                    tartiKaydet});
  const auto terminal = terminalKolonlari();
  turler.push_back({"terminal",
                    false,
                    {terminal.begin(), terminal.end()},
                    "Tanim_ID",
                    "Tanim_Kod",
                    terminalYukle,
                    terminalKontrol,
                    terminalKaydet});
  turler.push_back(
      {"rapor",
       false,
       {{"Modul", "Modül", 0, HucreTuru::Sayi}, {"Kisim", "Kısım", 0, HucreTuru::Sayi}, {"DEF_SQL", "SQL"}},
       "",
       "",
       raporYukle,
       raporKontrol,
       raporKaydet});
  return turler;
}

const std::vector<ListeTuru>& turler() {
  static const std::vector<ListeTuru> hepsi = turleriKur();
  return hepsi;
}

}  // namespace

const ListeTuru* listeTuru(std::string_view ad) {
  const auto at = std::ranges::find(turler(), ad, &ListeTuru::ad);
  return at == turler().end() ? nullptr : &*at;
}

std::string listeTurleri() {
  std::string adlar;
  for (const ListeTuru& tur : turler()) adlar += (adlar.empty() ? "" : ", ") + std::string(tur.ad);
  return adlar;
}

std::string Liste_Bagla(Oturum& oturum, const ListeTuru& tur, const std::string& firma) {
  try {
    session::Katalog_Bagla(oturum, std::string(catalog::catalogDatabase));
  } catch (const db::SqlError& hata) {
    return hata.what();
  }
  if (!tur.firmali) return {};
  oturum.Secili_Firma = firma;
  if (std::string hata = Tanim_Firma_Bagla(oturum); !hata.empty()) return hata;
  return tur.ad == "tarti" ? Firma_Bagla(oturum, firma) : std::string();
}

}  // namespace settings
