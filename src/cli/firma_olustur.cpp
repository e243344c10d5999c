#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "company/firma_karti.h"

namespace cli {

namespace {

using company::FirmaKarti;

// A text option and the field of the card that it fills.
struct Field {
  Secenek option;
  std::string FirmaKarti::*field;
};
constexpr std::array<Field, 13> fields = {{
    {{"--ad", "Veritabanının adı", true}, &FirmaKarti::Firma_Adi},
    {{"--kod", "Firma kodu", true}, &FirmaKarti::Firma_Kodu},
    {{"--unvan", "Firma unvanı", true}, &FirmaKarti::Firma_Unvani},
    {{"--baslangic", "Mali yıl başlangıcı; verilmezse yılın ilk günü", false, Secenek::Tur::Metin,
      "GG/AA/YYYY"},
     &FirmaKarti::Bas_Tar},
    {{"--bitis", "Mali yıl bitişi; verilmezse yılın son günü", false, Secenek::Tur::Metin, "GG/AA/YYYY"},
     &FirmaKarti::Bit_Tar},
    {{"--adres", "Adres"}, &FirmaKarti::Adres},
    {{"--sehir", "Şehir"}, &FirmaKarti::Sehir},
    {{"--ulke", "Ülke"}, &FirmaKarti::Ulke},
    {{"--tel1", "Telefon (1)"}, &FirmaKarti::Tel1},
    {{"--tel2", "Telefon (2)"}, &FirmaKarti::Tel2},
    {{"--fax", "Fax"}, &FirmaKarti::Fax},
    {{"--vergi-dairesi", "Vergi dairesi"}, &FirmaKarti::Vergi_Dairesi},
    {{"--vergi-numarasi", "Vergi numarası"}, &FirmaKarti::Vergi_Numarasi},
}};

constexpr Secenek planOption{"--hesap-plani", "Standart hesap planını oluşturur", false, Secenek::Tur::Bayrak,
                             ""};

constexpr Secenek evetOption{"--evet", "Onay sorusunu evet sayar", false, Secenek::Tur::Bayrak, ""};

constexpr auto options = [] {
  std::array<Secenek, fields.size() + 2> all{};
  for (std::size_t i = 0; i < fields.size(); ++i) all[i] = fields[i].option;
  all[fields.size()] = planOption;
  all.back() = evetOption;
  return all;
}();

void fill(FirmaKarti& kart, const Degerler& values) {
  for (const Field& field : fields) {
    const auto name = field.option.ad.substr(2);
    if (values.var(name)) kart.*field.field = values.metin(name);
  }
  kart.StandartHesapPlani = values.var("hesap-plani");
}

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.kutular.evet = values.var("evet");
  komut.oturum.Yeni_Kayit = true;
  komut.oturum.Inceleme = false;
  FirmaKarti kart;
  company::Firma_Karti_Ac(komut.oturum, kart);
  fill(kart, values);
  if (!company::Kaydet(komut.oturum, kart, company::AdVarken::Yazma))
    return reddedildi;  // the card has shown its fault
  const std::string& error = komut.oturum.Son_Hata;
  if (!error.empty() && !komut.kutular.gosterildi(error)) ortam.err << error << "\n";
  // The card shows nothing when all went well; each of its boxes tells of something that did not.
  return error.empty() && !komut.kutular.iletiGosterildi() ? tamam : reddedildi;
}

}  // namespace

const Komut& firmaOlusturKomutu() {
  static const Komut command{"firma-olustur", "Firma kartının denetimleriyle yeni bir firma oluşturur", "",
                             options, run};
  return command;
}

}  // namespace cli
