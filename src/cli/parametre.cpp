#include "settings/parametre.h"

#include <algorithm>
#include <sstream>

#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/parametre_ortak.h"
#include "cli/sonuc_yaz.h"
#include "session/statements.h"

namespace cli {

namespace {

using settings::FirmaKaydi;
using settings::Parametre;

constexpr std::array<Secenek, 4> options = {
    {{"--ad", "Firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--yaz", "Yazılacak parametre; birden çok kez verilebilir. Değer saklandığı gibi, tarih GG/AA/YYYY",
      false, Secenek::Tur::Coklu, "KOLON=DEĞER"},
     {"--dene", "Yazmaz, neyin değişeceğini gösterir", false, Secenek::Tur::Bayrak, ""},
     bicimTablo}};

constexpr std::string_view more =
    "--yaz verilmezse bütün parametreleri listeler: kolon, değer, anlam, başlık. Sabit tanımların ve\n"
    "taksitli satışın bütün parametreleri vardır. Verilenlerden biri bile reddedilirse hiçbiri yazılmaz.\n"
    "Yazılanlar metin olarak bildirilir, --bicim verilirse tablo olarak.";

void listele(Ortam& ortam, const FirmaKaydi& kayit, Bicim bicim) {
  static constexpr std::array<std::string_view, 4> basliklar = {"Kolon", "Deger", "Anlam", "Baslik"};
  std::vector<std::vector<std::string>> satirlar;
  const auto tablo = settings::parametreler();
  for (std::size_t i = 0; i < tablo.size(); ++i)
    satirlar.push_back({std::string(tablo[i].sutun), settings::depoMetni(tablo[i], kayit.degerler[i]),
                        settings::anlami(tablo[i], kayit.degerler[i]), settings::parametreAdi(tablo[i])});
  sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicim);
}

// The assignments into `yeni`; the reason of the first that is refused, empty when all are taken.
std::string atamalariOku(const std::vector<std::string>& atamalar, std::vector<db::Value>& yeni) {
  const auto tablo = settings::parametreler();
  for (const std::string& atama : atamalar) {
    const std::size_t esit = atama.find('=');
    if (esit == std::string::npos) return "KOLON=DEĞER bekleniyordu: " + atama;
    const Parametre* p = settings::parametreBul(atama.substr(0, esit));
    if (!p) return "Bilinmeyen parametre: " + atama.substr(0, esit);
    std::string hata;
    const auto deger = settings::depoDegeri(*p, atama.substr(esit + 1), hata);
    if (!deger) return hata;
    yeni[static_cast<std::size_t>(p - tablo.data())] = *deger;
  }
  return {};
}

int yaz(KomutOturumu& komut, FirmaKaydi& kayit, const Degerler& values) {
  std::vector<db::Value> yeni = kayit.degerler;
  std::string hata = atamalariOku(values.liste("yaz"), yeni);
  if (hata.empty()) hata = parametreEngeli(komut, kayit, yeni);
  if (!hata.empty()) {
    komut.ortam.err << hata << "\nHiçbir şey yazılmadı.\n";
    return reddedildi;
  }
  Degisiklikler rapor(komut.ortam, values, degisiklikBasliklari);
  const int kod = parametreYaz(komut, kayit, yeni, values.var("dene"), rapor);
  if (kod == tamam) rapor.bitir();
  return kod;
}

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tablo);
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  auto kayit = settings::Firma_Kaydi_Ac(komut.oturum, komut.firma(values.metin("ad")));
  if (!kayit) {
    ortam.err << komut.oturum.Son_Hata << "\n";
    return reddedildi;
  }
  if (!values.liste("yaz").empty()) return yaz(komut, *kayit, values);
  listele(ortam, *kayit, bicim);
  return tamam;
}

}  // namespace

void farklariYaz(std::ostream& out, const std::vector<settings::ParametreFarki>& farklar) {
  for (const auto& fark : farklar)
    out << fark.parametre->sutun << ": " << settings::depoMetni(*fark.parametre, fark.eski) << " -> "
        << settings::depoMetni(*fark.parametre, fark.yeni) << "  (" << settings::parametreAdi(*fark.parametre)
        << ")\n";
}

std::string parametreEngeli(KomutOturumu& komut, const FirmaKaydi& kayit,
                            const std::vector<db::Value>& yeni) {
  std::vector<db::Value> tarihler;
  for (const auto& fark : settings::farklar(kayit.degerler, yeni)) {
    const std::string_view sutun = fark.parametre->sutun;
    if (fark.parametre->tur == settings::ParametreTuru::Tarih) tarihler.push_back(fark.yeni);
    if (sutun != "Emanet_Ambar_No" || fark.eski.isNull()) continue;
    session::Oturum& o = komut.oturum;
    session::Veritabani_Bagla2(o, o.SQL_Surum, o.SQL_Login, o.SQL_Sifre, kayit.sysfrm_dbnm, o.Server_Adi);
    if (settings::Emanet_Ambari_Hareketli(o, fark.eski.trimmed()))
      return kayit.sysfrm_dbnm + ": " + std::string(settings::emanetAmbariHatasi);
  }
  if (tarihler.empty()) return {};
  const auto metni = [&](std::string_view kontrol) {
    const auto i = static_cast<std::size_t>(settings::parametreSirasi(kontrol));
    return settings::depoMetni(settings::parametreler()[i], yeni[i]);
  };
  return settings::Kilit_Tarih_Kontrol(metni("KilitBasTarih"), metni("KilitBitTarih")).hata;
}

int parametreYaz(KomutOturumu& komut, FirmaKaydi& kayit, const std::vector<db::Value>& yeni, bool dene,
                 Degisiklikler& rapor) {
  const auto degisen = settings::farklar(kayit.degerler, yeni);
  if (!dene) {
    const auto sonuc = settings::Parametre_Kaydet(komut.oturum, kayit, yeni);
    if (!sonuc.yazildi) {
      komut.ortam.err << kayit.sysfrm_dbnm << ": "
                      << (sonuc.hata.empty() ? "başkası tarafından değiştirildi, yazılmadı:" : sonuc.hata)
                      << "\n";
      farklariYaz(komut.ortam.err, sonuc.aradaki);
      return reddedildi;
    }
  }
  std::ostringstream metin;
  metin << kayit.sysfrm_dbnm << ": " << degisen.size()
        << (dene ? " parametre değişecek\n" : " parametre değişti\n");
  farklariYaz(metin, degisen);
  std::vector<std::vector<std::string>> satirlar;
  for (const auto& fark : degisen)
    satirlar.push_back({kayit.sysfrm_dbnm, std::string(fark.parametre->sutun),
                        settings::depoMetni(*fark.parametre, fark.eski),
                        settings::depoMetni(*fark.parametre, fark.yeni),
                        settings::parametreAdi(*fark.parametre)});
  rapor.ekle(metin.str(), std::move(satirlar));
  return tamam;
}

const Komut& parametreKomutu() {
  static const Komut command{"parametre", "Bir firmanın parametrelerini listeler ya da yazar", more, options,
                             run};
  return command;
}

}  // namespace cli
