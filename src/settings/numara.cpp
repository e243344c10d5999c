#include "settings/numara.h"

#include <array>
#include <map>
#include <set>

#include "session/izgara.h"
#include "session/metin.h"
#include "settings/firma_baglanti.h"
#include "settings/toplu_yazici.h"

namespace settings {

namespace {

using session::Oturum;

struct Sabit {
  std::string_view etiket, anahtar;
};
constexpr std::array<Sabit, 28> sabitler = {{{"Satış Faturası", "SATFATFIS"},
                                             {"Alış Faturası", "ALFATFIS"},
                                             {"Satış İrsaliye", "SATSTKFIS"},
                                             {"Alış İrsaliye", "ALSTKFIS"},
                                             {"Ambar Transfer Fişi", "STKVIR"},
                                             {"Alınan Sipariş", "ALSIPFIS"},
                                             {"Verilen Sipariş", "VERSIPFIS"},
                                             {"Borç Dekontu", "BODEK"},
                                             {"Alacak Dekontu", "ALDEK"},
                                             {"Cari Virman Fişi", "CARVIR"},
                                             {"Banka Fişi", "BANFIS"},
                                             {"Çek / Senet Bordro", "BORNO"},
                                             {"Çek Portföy No", "CEKPORNO"},
                                             {"Senet Portföy No", "SENETPORNO"},
                                             {"Üretim Emir No", "UREMNO"},
                                             {"Kasa Fatura Fişi", "KASFAT"},
                                             {"Kasa Virman Fişi", "KASVIR"},
                                             {"BARKOD", "BARKOD"},
                                             {"Muhasebe Açılış Fişi", "MUHACILIS"},
                                             {"Muhasebe Tahsil Fişi", "MUHTAHSIL"},
                                             {"Tediye Fişi", "MUHTEDIYE"},
                                             {"Mahsup Fişi", "MUHMAHSUP"},
                                             {"Muhasebe Kapanış Fişi", "MUHKAPANIS"},
                                             {"Kredi Kartı Tahsilatı", "KREDIKARTI"},
                                             {"Emanet Alım Fişi", "EMANETAL"},
                                             {"Emanet Teslim Fişi", "EMANETTES"},
                                             {"Peşin Satış Faturası", "PESSATFIS"},
                                             {"Peşin İade Faturası", "PESIADFIS"}}};

// The counter tables that exist; a missing one must not keep the others from being read.
std::set<std::string> sayacTablolari(Oturum& oturum) {
  std::set<std::string> adlar;
  const auto satirlar =
      oturum.Baglanti2->query("SELECT name FROM sysobjects WHERE xtype='U' AND name LIKE 'IP[_]%'");
  for (std::int64_t i = 0; satirlar && i < satirlar->count(); ++i)
    adlar.insert(satirlar->value(i, 0).trimmed().substr(3));
  return adlar;
}

void kasalar(Oturum& oturum, std::vector<Numara>& numaralar) {
  const auto satirlar = oturum.Baglanti2->query("SELECT Kasa_ID,Kasa_Kod FROM KASAKART");
  for (std::int64_t i = 0; satirlar && i < satirlar->count(); ++i) {
    const std::string id = satirlar->value(i, 0).trimmed(), kod = satirlar->value(i, 1).trimmed();
    numaralar.push_back({kod + " Kodlu Kasa Tahsilat", "KNTF" + id, "", false});
    numaralar.push_back({kod + " Kodlu Kasa Ödeme", "KNOF" + id, "", false});
  }
}

// All counters by one statement.
void sayilariOku(Oturum& oturum, std::vector<Numara>& numaralar) {
  const std::set<std::string> tablolar = sayacTablolari(oturum);
  std::string sql;
  for (Numara& n : numaralar) {
    n.var = tablolar.contains(n.anahtar);
    if (n.var)
      sql += (sql.empty() ? "" : " UNION ALL ") + ("SELECT '" + n.anahtar + "',IP FROM IP_") + n.anahtar;
  }
  if (sql.empty()) return;
  std::map<std::string, std::string> bulunan;
  const auto satirlar = oturum.Baglanti2->query(sql);
  // The first row counts, should a counter have more than one.
  for (std::int64_t i = 0; satirlar && i < satirlar->count(); ++i)
    bulunan.emplace(satirlar->value(i, 0).trimmed(), satirlar->value(i, 1).trimmed());
  for (Numara& n : numaralar) n.numara = bulunan[n.anahtar];
}

}  // namespace

NumaraListesi Numaralari_Oku(Oturum& oturum) {
  NumaraListesi liste;
  if (!oturum.Baglanti2) return {{}, "Firmanın veritabanına bağlı değil."};
  for (const Sabit& sabit : sabitler)
    liste.numaralar.push_back({std::string(sabit.etiket), std::string(sabit.anahtar), "", false});
  try {
    kasalar(oturum, liste.numaralar);
    sayilariOku(oturum, liste.numaralar);
  } catch (const db::SqlError& hata) {
    liste.hata = sqlHatasi(hata, oturum.Baglanti2->parts().database);
  }
  return liste;
}

std::size_t numaraUzunlugu(std::string_view anahtar) {
  return anahtar == "BARKOD" ? 23 : 10;
}

std::string Numaralari_Yaz(Oturum& oturum, const std::vector<NumaraYazisi>& yazilar) {
  try {
    TopluYazici yazici(*oturum.Baglanti2);
    for (const NumaraYazisi& yazi : yazilar)
      yazici.ekle("UPDATE IP_" + yazi.anahtar + " SET IP='" +
                  db::escape(session::ilkHarfler(yazi.numara, numaraUzunlugu(yazi.anahtar))) + "'");
    yazici.bitir();
    return {};
  } catch (const db::SqlError& hata) {
    return sqlHatasi(hata, oturum.Baglanti2->parts().database);
  }
}

}  // namespace settings
