#include "company/ornek_veri.h"

#include <charconv>

#include "cli/komut.h"
#include "cli/oturum_ac.h"

namespace cli {

namespace {

constexpr int enBuyukOlcek = 1000;

constexpr std::array<Secenek, 3> options = {
    {{"--ad", "Doldurulacak firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--olcek", "Veri miktarı, 1 (varsayılan) ile 1000 arası", false, Secenek::Tur::Metin, "K"},
     {"--tohum", "Rastgele sayıların tohumu; aynı tohum aynı veriyi verir (varsayılan 1)", false,
      Secenek::Tur::Metin, "S"}}};

constexpr std::string_view more =
    "Ölçek 1: 500 stok, 300 cari hesap, 4 kasa, 3 banka, 2.000 fatura ve fiş, tahsilat ve ödemeler, her "
    "durumda\n"
    "çek ve senetler, siparişler, muhasebe fişleri. Stok kartı olan bir firmaya yazmaz.";

template <class Number>
std::optional<Number> sayiOku(const std::string& text, Number enAz, Number enCok) {
  Number out{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), out);
  if (error != std::errc() || end != text.data() + text.size() || out < enAz || out > enCok)
    return std::nullopt;
  return out;
}

int run(Ortam& ortam, const Degerler& values) {
  const auto olcek = sayiOku<int>(values.metin("olcek", "1"), 1, enBuyukOlcek);
  const auto tohum = sayiOku<std::uint64_t>(values.metin("tohum", "1"), 0, UINT64_MAX);
  if (!olcek || !tohum) {
    ortam.err << (olcek ? "Tohum bir sayı olmalıdır: " + values.metin("tohum")
                        : "Ölçek 1 ile 1000 arasında bir sayı olmalıdır: " + values.metin("olcek"))
              << "\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const auto sonuc = company::Ornek_Veri_Yaz(komut.oturum, values.metin("ad"), {*olcek, *tohum});
  komut.ilerleme.bitir();
  if (!sonuc.hata.empty()) {
    ortam.err << sonuc.hata << "\n";
    if (sonuc.yarida) ortam.err << "Firmaya bir kısım veri yazıldı; firmayı silip yeniden oluşturun.\n";
    return reddedildi;
  }
  ortam.haber() << "Yazılan satır: " << sonuc.satir << "\n";
  return tamam;
}

}  // namespace

const Komut& ornekVeriKomutu() {
  static const Komut command{"ornek-veri", "Boş bir firmayı inandırıcı örnek veriyle doldurur", more, options,
                             run};
  return command;
}

}  // namespace cli
