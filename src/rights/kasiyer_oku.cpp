// Reading the till's settings.
#include <algorithm>
#include <map>

#include "platform/code_page.h"
#include "rights/islem.h"
#include "rights/kasiyer.h"
#include "rights/yetki_duzeni.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

using session::Oturum;

namespace {

bool ac(Oturum& oturum, db::Recordset& kayitlar, const std::string& sql) {
  session::Sorgu_Ac_Mesajli(oturum, kayitlar, sql);
  return kayitlar.state() == db::State::Open;
}
// In the company, on the third connection.
bool firmadaAc(Oturum& oturum, db::Recordset& kayitlar, const std::string& sql) {
  return session::Sorgu_Ac_Tekrarli(oturum, kayitlar, sql) == 0 && kayitlar.state() == db::State::Open;
}

std::string kosul(const KasiyerDuzeni& duzen) {
  return " WHERE Kullanici_ID=" + duzen.Kullanici_ID + " AND Firma_ID=" + duzen.Firma_ID;
}

// The code and name behind a stored value; empty when its row has gone.
bool kodunuBul(Oturum& oturum, const FisTanimi& tanim, const db::Value& deger, FisDegeri& fis) {
  fis.Yetkisi.clear();
  fis.ad.clear();
  const AramaTanimi& a = aramaTanimi(tanim.arama);
  const bool metinle = a.id == a.kod && !a.sayi;
  const std::string aranan = deger.trimmed();
  if (aranan.empty() || (!metinle && deger.integer() == 0)) return true;
  std::string columns(a.id);
  for (const std::string_view each : {a.kod, a.ad})
    if (columns.find(each) == std::string::npos) columns += "," + std::string(each);
  const std::string sql = "SELECT " + columns + " FROM " + std::string(a.tablo) + " WHERE " +
                          std::string(a.id) + "=" +
                          (metinle ? "'" + db::escape(aranan) + "'" : std::to_string(deger.integer()));
  db::Recordset row;
  if (!(a.katalogda ? ac(oturum, row, sql) : firmadaAc(oturum, row, sql))) return false;
  if (row.eof()) return true;
  fis.Yetkisi = row.field(a.kod).trimmed();
  fis.ad = row.field(a.ad).trimmed();
  return true;
}

// The scales of the company, then those that are chosen but not among them any more.
bool terazileriGetir(Oturum& oturum, KasiyerDuzeni& duzen, const std::string& secilenler) {
  duzen.TeraziGRD.clear();
  db::Recordset row;
  if (!firmadaAc(oturum, row, "SELECT * FROM TARTIBARKOD ORDER BY Bayrak_Kodu")) return false;
  for (; !row.eof(); row.moveNext()) {
    const std::string birim = row.field("Adetli").boolean() ? "Adetli" : "Gramajlı";
    duzen.TeraziGRD.push_back({row.field("Bayrak_Kodu").trimmed(),
                               birim + ", stok kodu " + row.field("Master_Kod").text() + " hane"});
  }
  for (std::size_t at = 0; at < secilenler.size();) {
    const std::size_t end = std::min(secilenler.find(';', at), secilenler.size());
    const std::string kod = session::Trim(secilenler.substr(at, end - at));
    at = end + 1;
    if (kod.empty()) continue;
    const auto terazi = std::find_if(duzen.TeraziGRD.begin(), duzen.TeraziGRD.end(),
                                     [&](const TeraziSatiri& t) { return t.kod == kod; });
    if (terazi != duzen.TeraziGRD.end())
      terazi->Sec = true;
    else
      duzen.TeraziGRD.push_back({kod, "tanımı silinmiş", true});
  }
  return true;
}

}  // namespace

bool Kasiyer_Yukle(Oturum& oturum, KasiyerDuzeni& duzen) {
  duzen = KasiyerDuzeni{};
  duzen.Kullanici_ID = std::to_string(oturum.Secili_ID);
  YetkiDuzeni kullanici;
  kullanici.Kullanici_ID = duzen.Kullanici_ID;
  if (!katalogaBaglan(oturum) || !Firma_ekle(oturum, kullanici)) return false;
  duzen.Firma_Combo = kullanici.Firma_Combo;
  if (duzen.Firma_Combo.empty()) {
    oturum.kutular->message(std::string(yetkiFirmaYok));
    return false;
  }
  Kasiyer_Firma_Sec(oturum, duzen, duzen.Firma_Combo.front());
  return true;
}

bool Kasiyer_Firma_Sec(Oturum& oturum, KasiyerDuzeni& duzen, const std::string& firma) {
  duzen.firma = firma;
  duzen.okundu = false;
  YetkiDuzeni secilen;
  secilen.firma = firma;
  if (!katalogaBaglan(oturum) || !Firma_ID_Al(oturum, secilen)) return false;
  duzen.Firma_ID = secilen.Firma_ID;
  duzen.okundu = hatayiGoster(oturum, "\"" + firma + "\" firmasının veritabanına ulaşılamadı.", [&] {
    session::Veritabani_Bagla3(oturum, oturum.SQL_Surum, oturum.SQL_Login, oturum.SQL_Sifre, firma,
                               oturum.Server_Adi);
    return Kasiyer_Getir(oturum, duzen) && Config_Getir(oturum, duzen) && Kisayol_Getir(oturum, duzen);
  });
  return duzen.okundu;
}

bool Kasiyer_Getir(Oturum& oturum, KasiyerDuzeni& duzen) {
  db::Recordset row;
  if (!ac(oturum, row, "SELECT * FROM Kullanici" + kosul(duzen)) || row.eof()) return false;
  const auto field = [&](std::string_view name) {
    const int at = row.fieldIndex(name);
    return at < 0 ? db::Value() : row.field(at);
  };
  duzen.Kullanici_Ad = field("Kullanici_Ad").trimmed();
  for (std::size_t i = 0; i < fisTanimlari().size(); ++i) {
    const FisTanimi& tanim = fisTanimlari()[i];
    if (!tanim.deger.empty() && !kodunuBul(oturum, tanim, field(tanim.deger), duzen.FisGrd[i])) return false;
    duzen.FisGrd[i].Yetkisi2 = !tanim.hak.empty() && field(tanim.hak).boolean();
  }
  for (std::size_t i = 0; i < kasiyerKolonlari().size(); ++i)
    duzen.kolonlar[i] = field(kasiyerKolonlari()[i].ad);
  return true;
}

bool Config_Getir(Oturum& oturum, KasiyerDuzeni& duzen) {
  db::Recordset row;
  if (!ac(oturum, row, "SELECT * FROM KASIYERCONFIG" + kosul(duzen))) return false;
  const bool var = !row.eof();
  for (std::size_t i = 0; i < ayarTanimlari().size(); ++i)
    duzen.ayarlar[i] = var ? row.field(ayarTanimlari()[i].kolon) : db::Value();
  return terazileriGetir(oturum, duzen, var ? row.field("Teraziler").text() : "");
}

// Card and name of all shortcuts in one read.
bool Kisayol_Getir(Oturum& oturum, KasiyerDuzeni& duzen) {
  duzen.StokFlx.clear();
  db::Recordset row;
  if (!ac(oturum, row, "SELECT * FROM KSKISAYOL" + kosul(duzen))) return false;
  std::map<std::int64_t, std::int64_t> places;
  for (; !row.eof(); row.moveNext()) places[row.field("S_No").integer()] = row.field("Stok_ID").integer();
  if (places.empty()) return true;
  const std::string ids = birlestir(places, [](const auto& place) { return std::to_string(place.second); });
  if (!firmadaAc(oturum, row,
                 "SELECT Stok_ID,Stok_Kod,Stok_Ad AS Stok_Adi FROM STOKKART WHERE Stok_ID IN (" + ids + ")"))
    return false;
  std::map<std::int64_t, KisayolSatiri> cards;
  for (; !row.eof(); row.moveNext()) {
    const std::int64_t id = row.field("Stok_ID").integer();
    cards[id] = {id, row.field("Stok_Kod").trimmed(), row.field("Stok_Adi").trimmed()};
  }
  for (const auto& [place, stok] : places) {
    if (place < 1 || place > sonKisayol || !cards.contains(stok)) continue;
    duzen.StokFlx.resize(std::max(duzen.StokFlx.size(), static_cast<std::size_t>(place)));
    duzen.StokFlx[static_cast<std::size_t>(place - 1)] = cards[stok];
  }
  return true;
}

bool aramaListesi(Oturum& oturum, const KasiyerDuzeni& duzen, AramaTuru tur, const std::string& metin,
                  bool adaGore, ListeTipi tip, std::vector<AramaSatiri>& satirlar) {
  satirlar.clear();
  const AramaTanimi& a = aramaTanimi(tur);
  const std::string sira(adaGore ? a.ad : a.kod);
  std::string where;
  const auto ekle = [&where](const std::string& part) {
    where += (where.empty() ? " WHERE " : " AND ") + part;
  };
  if (a.katalogda) ekle("Kullanici_ID<>" + duzen.Kullanici_ID);
  if (!metin.empty())
    ekle((a.sayi && !adaGore ? "CONVERT(VARCHAR(12)," + sira + ")" : sira) + " LIKE '" + db::escape(metin) +
         "%'");
  if (tur == AramaTuru::Stok && tip != ListeTipi::Tumu)
    ekle(tip == ListeTipi::Aktif ? "STOKKART.Aktif=1" : "STOKKART.Aktif=0");
  const std::string sql = "SELECT TOP " + std::to_string(aramaSiniri) + " " + std::string(a.id) +
                          " AS Deger," + std::string(a.kod) + " AS Kod," + std::string(a.ad) +
                          " AS Ad FROM " + std::string(a.tablo) + where + " ORDER BY " + sira;
  db::Recordset row;
  if (!(a.katalogda ? ac(oturum, row, sql) : firmadaAc(oturum, row, sql))) return false;
  for (; !row.eof(); row.moveNext()) {
    AramaSatiri satir{row.field("Deger").trimmed(), row.field("Kod").trimmed(), row.field("Ad").trimmed()};
    // A user has a row a company.
    const bool twice =
        a.katalogda && std::any_of(satirlar.begin(), satirlar.end(),
                                   [&](const AramaSatiri& each) { return each.id == satir.id; });
    if (!twice) satirlar.push_back(std::move(satir));
  }
  return true;
}

bool Arama_Tus(std::string& arama, char32_t tus) {
  constexpr char32_t silme = 8, bosluk = 32;
  if (tus == silme) {
    std::u32string letters = platform::toUtf32(arama);
    if (letters.empty()) return false;
    letters.pop_back();
    arama = platform::toUtf8(letters);
    return true;
  }
  if (tus < bosluk) return false;
  arama += tus == bosluk && arama.empty() ? "%" : platform::toUtf8(std::u32string(1, tus));
  return true;
}

}  // namespace rights
