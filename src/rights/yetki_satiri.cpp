#include "rights/yetki_satiri.h"

namespace rights {

namespace {

bool bitAcik(const YetkiSatiri& satir, const Hak& hak) {
  return verilmis(satir, hak.okunan, hak.yer);
}

}  // namespace

YetkiSatiri yetkiSatiriOku(const db::Recordset& kayitlar) {
  YetkiSatiri satir;
  for (std::size_t i = 0; i < kolonlar().size(); ++i) {
    const int field = kayitlar.fieldIndex(kolonlar()[i].ad);
    if (field >= 0) satir.degerler[i] = kayitlar.field(field);
  }
  return satir;
}

bool verilmis(const YetkiSatiri& satir, std::size_t kolon, int yer) {
  const Kolon& tanim = kolonlar()[kolon];
  const db::Value& deger = satir.degerler[kolon];
  if (deger.isNull() || yer >= std::max(tanim.genislik, 1)) return false;
  if (tanim.tur == KolonTuru::Bit) return deger.boolean();
  const std::string text = deger.text();
  return static_cast<std::size_t>(yer) < text.size() && text[static_cast<std::size_t>(yer)] == '1';
}

void agacaYaz(const YetkiSatiri& satir, session::TikAgaci& agac) {
  agac.hepsineKoy(false);
  const auto& haklar = yetkiAgaci().haklar;
  for (std::size_t i = 0; i < haklar.size(); ++i) {
    const bool again = i > 0 && haklar[i - 1].satir == haklar[i].satir;
    agac.koy(haklar[i].satir, bitAcik(satir, haklar[i]) && (!again || agac.isaretli(haklar[i].satir)));
  }
  agac.babalariTuret(false);
  // A branch without a BIT of its own shows what lies below it.
  std::vector<bool> stored(static_cast<std::size_t>(agac.boy()), false);
  for (const Hak& hak : haklar) stored[static_cast<std::size_t>(hak.satir)] = true;
  for (const int top : agac.cocuklar(-1)) {
    if (stored[static_cast<std::size_t>(top)]) continue;
    for (const int row : agac.cocuklar(top)) agac.koy(top, agac.isaretli(top) || agac.isaretli(row));
  }
}

void agactanOku(const session::TikAgaci& agac, YetkiSatiri& satir) {
  std::vector<std::string> diziler(kolonlar().size());
  for (std::size_t i = 0; i < kolonlar().size(); ++i)
    diziler[i].assign(static_cast<std::size_t>(kolonlar()[i].genislik), '0');
  for (const Hak& hak : yetkiAgaci().haklar) {
    const bool tick = agac.isaretli(hak.satir);
    if (kolonlar()[hak.kolon].tur == KolonTuru::Bit)
      satir.degerler[hak.kolon] = tick;
    else if (static_cast<std::size_t>(hak.yer) < diziler[hak.kolon].size())
      diziler[hak.kolon][static_cast<std::size_t>(hak.yer)] = tick ? '1' : '0';
  }
  for (std::size_t i = 0; i < kolonlar().size(); ++i)
    if (kolonlar()[i].bolum == Bolum::Agac && kolonlar()[i].tur == KolonTuru::Dizi)
      satir.degerler[i] = diziler[i];
}

YetkiSatiri gosterilenSatir(const session::TikAgaci& agac, const YetkiSatiri& okunan) {
  YetkiSatiri satir = okunan;
  agactanOku(agac, satir);
  for (const Hak& hak : yetkiAgaci().haklar) {
    if (hak.kolon == hak.okunan || agac.isaretli(hak.satir) != bitAcik(okunan, hak)) continue;
    std::string dizi = satir.degerler[hak.kolon].text();
    dizi[static_cast<std::size_t>(hak.yer)] = verilmis(okunan, hak.kolon, hak.yer) ? '1' : '0';
    satir.degerler[hak.kolon] = dizi;
  }
  return satir;
}

}  // namespace rights
