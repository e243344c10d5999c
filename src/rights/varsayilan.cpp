#include "rights/varsayilan.h"

#include "db/value.h"
#include "rights/sozluk.h"

namespace rights {

namespace {

// Behind the rights; the values as they stand in the statement.
struct Ek {
  std::string_view kolon, deger;
  bool yalnizYeniFirma;
};
constexpr Ek ekler[] = {{"KS_Degistirsin", "1", true},
                        {"CR_Degistirsin", "1", true},
                        {"Def_Isyeri_Kod", "'1'", false},
                        {"Kullanici_Fiyat", "0", false}};

}  // namespace

std::string varsayilanSatir(VarsayilanTur tur, const std::string& firmaId, const std::string& kullaniciId,
                            const std::string& ad, const std::string& sifreli) {
  std::string names = "Firma_ID,Kullanici_ID,Kullanici_Ad,Kullanici_Sifre";
  std::string values = "'" + db::escape(firmaId) + "','" + db::escape(kullaniciId) + "','" + db::escape(ad) +
                       "','" + db::escape(sifreli) + "'";
  for (const std::string_view name : varsayilanKolonlar()) {
    const Kolon& kolon = kolonlar()[*kolonSirasi(name)];
    const std::size_t width = kolon.tur == KolonTuru::Dizi ? static_cast<std::size_t>(kolon.genislik) : 1;
    names += "," + std::string(name);
    values += ",'" + std::string(width, '1') + "'";
  }
  for (const Ek& ek : ekler) {
    if (ek.yalnizYeniFirma && tur != VarsayilanTur::YeniFirma) continue;
    names += "," + std::string(ek.kolon);
    values += "," + std::string(ek.deger);
  }
  return "INSERT INTO Kullanici (" + names + ")Values(" + values + ")";
}

}  // namespace rights
