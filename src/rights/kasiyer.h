// The till's rights and settings KasiyerYetkiFrm without its widgets: one user in one company.
#pragma once

#include <string>
#include <vector>

#include "rights/kasiyer_sozluk.h"
#include "session/oturum.h"

namespace rights {

// A row of FisGrd: the code chosen and the name behind it, the word as a flag.
struct FisDegeri {
  std::string Yetkisi, ad;
  bool Yetkisi2 = false;
};
// A row of TeraziGRD.
struct TeraziSatiri {
  std::string kod, aciklama;
  bool Sec = false;
};
// A row of StokFlx; its place is S_No.
struct KisayolSatiri {
  std::int64_t Stok_ID = 0;  // 0: empty
  std::string Stok_Kod, Stok_Adi;
};

struct KasiyerDuzeni {
  std::string Kullanici_ID, Kullanici_Ad, Firma_ID, firma;
  std::vector<std::string> Firma_Combo;
  bool okundu = false;
  std::vector<FisDegeri> FisGrd = std::vector<FisDegeri>(fisTanimlari().size());
  std::vector<db::Value> kolonlar = std::vector<db::Value>(kasiyerKolonlari().size());
  std::vector<db::Value> ayarlar = std::vector<db::Value>(ayarTanimlari().size());
  std::vector<TeraziSatiri> TeraziGRD;
  std::vector<KisayolSatiri> StokFlx;
};
inline constexpr int enCokKisayol = 60;   // places of StokFlx on the screen, unless more are stored
inline constexpr int sonKisayol = 10000;  // no place behind it is taken for one

// Opens the settings of the user Secili_ID in his first company; of the company chosen. False with the
// reason shown.
bool Kasiyer_Yukle(session::Oturum& oturum, KasiyerDuzeni& duzen);
bool Kasiyer_Firma_Sec(session::Oturum& oturum, KasiyerDuzeni& duzen, const std::string& firma);

// The three stores. What fails is thrown while reading and while writing; Kasiyer_Yetki_Kaydet holds them
// together.
bool Kasiyer_Getir(session::Oturum& oturum, KasiyerDuzeni& duzen);
bool Config_Getir(session::Oturum& oturum, KasiyerDuzeni& duzen);
bool Kisayol_Getir(session::Oturum& oturum, KasiyerDuzeni& duzen);
bool Kasiyer_Kaydet(session::Oturum& oturum, const KasiyerDuzeni& duzen);
void Config_Kaydet(session::Oturum& oturum, const KasiyerDuzeni& duzen);
void Kisayol_Kaydet(session::Oturum& oturum, const KasiyerDuzeni& duzen);

// Writes all three in one transaction. True when it was written; the box says so.
bool Kasiyer_Yetki_Kaydet(session::Oturum& oturum, const KasiyerDuzeni& duzen);

// --- Lookup lists
struct AramaSatiri {
  std::string id, kod, ad;
};
enum class ListeTipi : std::uint8_t { Tumu, Aktif, AktifOlmayan };  // of the stock list
inline constexpr int aramaSiniri = 1000;                            // rows shown at once

// Rows whose code (or name, with `adaGore`) begins with the text, "%" for any run of letters, in the order
// of that column. A broken link waits for the operator.
bool aramaListesi(session::Oturum& oturum, const KasiyerDuzeni& duzen, AramaTuru tur,
                  const std::string& metin, bool adaGore, ListeTipi tip, std::vector<AramaSatiri>& satirlar);

// What a key does to the text of the field Arama. True when it changed, so that the timer starts anew.
bool Arama_Tus(std::string& arama, char32_t tus);
inline constexpr int aramaBekleme = 350;  // milliseconds that AramaTimer waits for the next key

}  // namespace rights
