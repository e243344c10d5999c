#include "company/ornek_veri.h"

#include <array>
#include <cstdio>

#include "company/ornek/adimlar.h"
#include "session/firma_bul.h"
#include "session/statements.h"

namespace company {

namespace ornek {

// As they come in a shop: what a day sells was bought before, what is collected was sold before.
void gunleriYaz(Baglam& b) {
  b.adim("Günlük hareketler yazılıyor");
  Isler isler;
  faturaIsleri(isler);
  stokFisiIsleri(isler);
  kasaBankaIsleri(isler);
  siparisIsleri(isler);
  std::vector<std::int64_t> yazilan(isler.size(), 0);
  for (std::int64_t gun = 0; gun < b.donem.gunler; ++gun) {
    for (std::size_t n = 0; n < isler.size(); ++n) {
      const std::int64_t adet = static_cast<std::int64_t>(isler[n].adet) * b.olcek;
      for (; yazilan[n] < adet && yazilan[n] * b.donem.gunler / adet == gun; ++yazilan[n])
        isler[n].yaz(b, b.an(yazilan[n], adet));
    }
    b.ilerle(gun, b.donem.gunler);
  }
}

void sayaclariYaz(Baglam& b) {
  for (const auto& [anahtar, sayi] : b.sayaclar()) {
    char metin[24];
    std::snprintf(metin, sizeof metin, "%010lld", static_cast<long long>(sayi));
    b.y.calistir("UPDATE IP_" + anahtar + " SET IP='" + metin + "'", 0);
  }
}

}  // namespace ornek

namespace {

using ornek::Baglam;
using ornek::Donem;

constexpr std::array steps = {ornek::tanimlariYaz, ornek::kartlariYaz,  ornek::acilislariYaz,
                              ornek::gunleriYaz,   ornek::evraklariYaz, ornek::muhasebeYaz,
                              ornek::sayaclariYaz};

// The company's period from the catalog, and whether its stock may go below nothing; a fault in `hata`.
Donem donemOku(session::Oturum& oturum, const std::string& firmaAdi, std::string& hata, bool& eksiStok) {
  session::Katalog_Bagla(oturum, std::string(session::katalogVeritabani));
  Donem donem;
  const auto firma = session::Firma_Bul(oturum, firmaAdi);
  if (!firma) {
    hata = "Bu isimle bir firma yok: " + firmaAdi;
    return donem;
  }
  const auto rows = oturum.Baglanti->query(
      "SELECT Mali_Yil_Baslangic, Mali_Yil_Bitis, DATEDIFF(d,Mali_Yil_Baslangic,Mali_Yil_Bitis), "
      "ISNULL(StokSFRSeviye,0) FROM sysfrmlng WHERE sysfrm_ID=" +
      std::to_string(firma->id));
  if (!rows || rows->count() == 0) {
    hata = "Bu isimle bir firma yok: " + firmaAdi;
    return donem;
  }
  const db::Value bas = rows->value(0, 0);
  const auto* tarih = bas.as<db::DateTime>();
  donem.gunler = static_cast<int>(rows->value(0, 2).integer()) + 1;
  eksiStok = rows->value(0, 3).integer() == 0;  // the first entry of the list: may go below nothing
  if (tarih == nullptr || rows->value(0, 1).isNull() || donem.gunler < 1)
    hata = "Firmanın mali yılı belli değil.";
  else
    donem.bas = *tarih;
  return donem;
}

std::string engel(session::Oturum& oturum) {
  const auto rows = oturum.Baglanti->query("SELECT COUNT(*) FROM STOKKART");
  if (rows->value(0, 0).integer() == 0) return "";
  return "Firmada zaten stok kartı var; örnek veri yalnızca boş bir firmaya yazılır.";
}

}  // namespace

OrnekVeriSonucu Ornek_Veri_Yaz(session::Oturum& oturum, const std::string& firmaAdi,
                               const OrnekVeriSecenekleri& secenekler, const OrnekDinleyici& dinleyici) {
  OrnekVeriSonucu sonuc;
  bool eksiStok = false;
  const Donem donem = donemOku(oturum, firmaAdi, sonuc.hata, eksiStok);
  if (!sonuc.hata.empty()) return sonuc;
  session::Katalog_Bagla(oturum, firmaAdi);
  Baglam baglam(oturum, donem, secenekler, dinleyici);
  baglam.eksiStok = eksiStok;
  try {
    // A second run waits here for the first one's cards, and finds them.
    baglam.y.basla("UPDATE IP_AC SET IP=IP");
    sonuc.hata = engel(oturum);
    if (!sonuc.hata.empty()) {
      baglam.y.geriAl();
      return sonuc;
    }
    baglam.ekleriOku();
    std::int64_t done = 0;
    for (const auto step : steps) {
      step(baglam);
      oturum.ilerleme->whole(++done, static_cast<std::int64_t>(steps.size()));
    }
    baglam.y.bitir();
  } catch (const std::exception& error) {
    baglam.y.geriAl();
    sonuc.hata = error.what();
    sonuc.yarida = baglam.y.islendi();
  }
  sonuc.satir = baglam.y.satir();
  oturum.ilerleme->text("");
  return sonuc;
}

}  // namespace company
