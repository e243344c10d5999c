#include "settings/firma_baglanti.h"

#include <algorithm>

#include "session/metin.h"
#include "session/statements.h"

namespace settings {

namespace {
constexpr int tabloYok = 208, kolonYok = 207;  // the server's own numbers
}

std::string Firma_Bagla(session::Oturum& oturum, const std::string& veritabani) {
  try {
    if (oturum.Baglanti2 && oturum.Baglanti2->state() == db::State::Open) oturum.Baglanti2->close();
    session::Veritabani_Bagla2(oturum, oturum.SQL_Surum, oturum.SQL_Login, oturum.SQL_Sifre, veritabani,
                               oturum.Server_Adi);
    return {};
  } catch (const db::SqlError& hata) {
    oturum.Baglanti2.reset();
    return "“" + veritabani + "” veritabanına bağlanılamadı: " + hata.what();
  }
}

int kolonYeri(const db::Rows& tablo, std::string_view ad) {
  const auto& alanlar = tablo.fields();
  const std::string aranan = session::Buyuk_Harf(ad);
  const auto at = std::ranges::find_if(
      alanlar, [&](const db::FieldInfo& alan) { return session::Buyuk_Harf(alan.name) == aranan; });
  if (at == alanlar.end())
    throw db::SqlError(db::ErrorKind::StatementRefused, kolonYok, "“" + std::string(ad) + "” kolonu yok");
  return static_cast<int>(at - alanlar.begin());
}

std::string sqlHatasi(const db::SqlError& hata, const std::string& veritabani) {
  if (hata.serverNumber() != tabloYok && hata.serverNumber() != kolonYok) return hata.what();
  return "“" + veritabani + "” veritabanı eski yapıda (" + hata.what() +
         ")\nÖnce güncelleyiniz: zembera-cli guncelle --ad " + veritabani;
}

std::vector<session::ListeSecenegi> Ambar_Listesi(session::Oturum& oturum) {
  std::vector<session::ListeSecenegi> liste;
  db::Recordset kayitlar;
  if (session::Sorgu_Ac2(oturum, kayitlar, "SELECT * FROM AMBAR order by Ambar_No") != 0) return liste;
  for (; !kayitlar.eof(); kayitlar.moveNext()) {
    const std::string no = kayitlar.field("Ambar_No").trimmed();
    liste.push_back({no, no + "  " + kayitlar.field("Ambar_Ad").trimmed()});
  }
  return liste;
}

}  // namespace settings
