#include "session/bolgesel.h"

#include <algorithm>
#include <array>

namespace session {

namespace {

constexpr std::string_view regionalKey = "Control Panel\\International";

struct Setting {
  std::string_view value, wanted, marker;
};
// In the order in which they are checked.
constexpr std::array<Setting, 4> settings = {{{"sDecimal", ",", "ONDALIK"},
                                              {"sThousand", ".", "BASAMAK"},
                                              {"sDate", ".", "TARIH"},
                                              {"sShortDate", "dd.MM.yyyy", "TARIH"}}};
// Indexes into `settings` in the order in which they are written.
constexpr std::array<std::size_t, 4> writeOrder = {0, 1, 3, 2};

void writeWanted(Oturum& oturum) {
  for (const std::size_t index : writeOrder)
    Kayit_Yaz(oturum, kokKullanici, regionalKey, settings[index].value, settings[index].wanted);
}

bool allAsWanted(Oturum& oturum) {
  return std::ranges::all_of(settings, [&](const Setting& setting) {
    return Kayit_Oku(oturum, kokKullanici, regionalKey, setting.value) == setting.wanted;
  });
}

// Asked before a question whose answer could not be kept: it would come back at each start.
bool canBeWritten(Oturum& oturum) {
  constexpr std::string_view key = "Software\\Korvena\\Zembera", value = "YazmaSinamasi";
  const std::string other = Kayit_Oku(oturum, kokKullanici, key, value) == "1" ? "0" : "1";
  Kayit_Yaz(oturum, kokKullanici, key, value, other);
  return Kayit_Oku(oturum, kokKullanici, key, value) == other;
}

void useWanted(Oturum& oturum) {
  oturum.Ondalik_Ayrac = settings[0].wanted;
  oturum.Binlik_Ayrac = settings[1].wanted;
  oturum.Son_Hata.clear();
}

BolgeselSonuc goOnWithout(Oturum& oturum) {
  oturum.kutular->message(
      "Bölgesel ayarlar yazılamadı; program bu oturumda gereken ayarlarla sürdürülecek.\n"
      "Ayar dosyasının yazma iznini denetleyiniz.",
      Icon::Warning);
  useWanted(oturum);
  return BolgeselSonuc::Tamam;
}

}  // namespace

std::string Kayit_Oku(Oturum& oturum, std::string_view root, std::string_view key, std::string_view value) {
  std::string text = oturum.platform->registryRead(root, key, value);
  return text.substr(0, text.find('\0'));
}

void Kayit_Yaz(Oturum& oturum, std::string_view root, std::string_view key, std::string_view value,
               std::string_view text) {
  oturum.platform->registryWrite(root, key, value, text);
}

BolgeselSonuc BolgeselAyarlariAyarla(Oturum& oturum) {
  if (oturum.platform->registryKeyIsNew(kokKullanici, regionalKey)) {
    writeWanted(oturum);
    // Not read back: an account whose registry cannot be written would never get past the question.
    useWanted(oturum);
    return BolgeselSonuc::Tamam;
  }
  for (const Setting& setting : settings)
    if (Kayit_Oku(oturum, kokKullanici, regionalKey, setting.value) != setting.wanted)
      oturum.Son_Hata = setting.marker;
  oturum.Ondalik_Ayrac = Kayit_Oku(oturum, kokKullanici, regionalKey, settings[0].value);
  oturum.Binlik_Ayrac = Kayit_Oku(oturum, kokKullanici, regionalKey, settings[1].value);
  if (oturum.Son_Hata.empty()) return BolgeselSonuc::Tamam;

  if (!canBeWritten(oturum)) return goOnWithout(oturum);
  const bool agreed = oturum.kutular->ask(
      "Programın Çalışabilmesi için Sistemin Ayarlanması Gerekiyor.\n"
      "Eğer Onaylarsanız Bu ayarlar Yapılacaktır.\n"
      "Onaylıyormusunuz ?");
  if (!agreed) return BolgeselSonuc::ProgramBitsin;
  writeWanted(oturum);
  if (!allAsWanted(oturum)) return goOnWithout(oturum);
  oturum.kutular->message("Sistem Ayarlanız Tamamlandı.Bilgisayarınızın Yeniden Başlatılması Gerekiyor",
                          Icon::Information);
  oturum.platform->restart();
  return BolgeselSonuc::ProgramBitsin;
}

}  // namespace session
