// The screen's data before the run: combo lists, both sides, the proposal and the checks.
#include <array>
#include <chrono>
#include <cstdio>

#include "rollover/devir.h"
#include "session/konsol.h"
#include "session/metin.h"
#include "session/statements.h"
#include "session/tarih.h"

namespace rollover {

namespace {

using session::Oturum;
using session::Trim;

std::string noktali(const db::Value& deger) {
  const auto* tarih = deger.as<db::DateTime>();
  if (tarih == nullptr) return "";
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%02d.%02d.%04d", tarih->day, tarih->month, tarih->year);
  return buffer.data();
}

std::string ertesiGun(const std::string& metin) {
  db::DateTime t;
  if (!session::tarihOku(metin, t)) return "";
  const std::chrono::year_month_day gun{std::chrono::sys_days{std::chrono::year{t.year} / t.month / t.day} +
                                        std::chrono::days{1}};
  t.year = static_cast<int>(gun.year());
  t.month = static_cast<int>(static_cast<unsigned>(gun.month()));
  t.day = static_cast<int>(static_cast<unsigned>(gun.day()));
  return noktali(db::Value(t));
}

// Labels of "-", "/", "*" and "^" name another character, as this check always has.
struct YasakKarakter {
  char karakter;
  std::string_view metin;
};
constexpr std::array<YasakKarakter, 18> yasaklar = {{
    {' ', "Database Adı içinde Boşluk Olamaz."},
    {',', "Database Adı içinde Virgül(,) Olamaz."},
    {'.', "Database Adı içinde Nokta (.) Olamaz."},
    {'+', "Database Adı içinde Artı(+) İşareti Olamaz."},
    {'-', "Database Adı içinde Eksi(+) İşareti Olamaz."},
    {'/', "Database Adı içinde Eksi(+) İşareti Olamaz."},
    {':', "Database Adı içinde İki Nokta(:) İşareti Olamaz."},
    {'*', "Database Adı içinde Yıldız(:) İşareti Olamaz."},
    {'"', "Database Adı içinde ÇiftTırnak ( \" ) İşareti Olamaz."},
    {'\'', "Database Adı içinde TekTırnak(') İşareti Olamaz."},
    {'^', "Database Adı içinde TekTırnak(^) İşareti Olamaz."},
    {'!', "Database Adı içinde Ünlem(!) İşareti Olamaz."},
    {'#', "Database Adı içinde Diez(#) İşareti Olamaz."},
    {'$', "Database Adı içinde Dolar($) İşareti Olamaz."},
    {'%', "Database Adı içinde Yüzde(%) İşareti Olamaz."},
    {'&', "Database Adı içinde AND(&) İşareti Olamaz."},
    {'(', "Database Adı içinde Aç Parantez( ( ) İşareti Olamaz."},
    {')', "Database Adı içinde Kapa Parantez( ) ) İşareti Olamaz."},
}};
constexpr std::string_view adKurali =
    "\nDatabase Adı Harf ile Başlar ve Harf ve Numara Dışında Noktalama İşaretleri ve Boşluk Gibi "
    "Karakterler Kulanılamaz.\n"
    "Türkçe Karakterler Kullanılamaz (Ş,Ç,Ö,Ü,İ,ı) ";

bool tarihDogru(const std::string& metin) {
  return metin.size() == 10 && session::tarihMi(metin);
}

}  // namespace

std::vector<FirmaSatiri> Firmalari_Yukle(Oturum& oturum) {
  std::vector<FirmaSatiri> out;
  if (session::Sorgu_Ac(oturum, oturum.Kayitlar, "SELECT sysfrm_dbnm,sysfrm_kd FROM sysfrmlng") != 0)
    return out;
  for (; oturum.Kayitlar.state() == db::State::Open && !oturum.Kayitlar.eof(); oturum.Kayitlar.moveNext())
    out.push_back({oturum.Kayitlar.field(0).trimmed(), oturum.Kayitlar.field(1).trimmed()});
  oturum.Kayitlar.close();
  return out;
}

bool Firma_Kayit_Getir(Oturum& oturum, const std::string& ad, DevirTarafi& taraf) {
  session::Sorgu_Ac(oturum, oturum.Kayitlar,
                    "SELECT sysfrm_ID,sysfrm_nm,sysfrm_dbnm,sysfrm_kd,Mali_Yil_Baslangic,Mali_Yil_Bitis FROM "
                    "sysfrmlng WHERE "
                    "sysfrm_dbnm='" +
                        db::escape(ad) + "'");
  // The column's collation may hold other names for the same.
  const auto kendisi = [&] { return oturum.Kayitlar.field(2).trimmed() == session::Trim(ad); };
  const bool acik = oturum.Kayitlar.state() == db::State::Open;
  while (acik && !oturum.Kayitlar.eof() && !kendisi()) oturum.Kayitlar.moveNext();
  const bool var = acik && !oturum.Kayitlar.eof();
  taraf = {};
  if (var) {
    const auto alan = [&](int n) { return oturum.Kayitlar.field(n); };
    taraf = {alan(0).trimmed(), alan(1).trimmed(), alan(3).trimmed(),
             alan(2).trimmed(), noktali(alan(4)),  noktali(alan(5))};
  }
  oturum.Kayitlar.close();
  return var;
}

void Yeni_Firma_Bilgileri_Olustur(Oturum& oturum, std::array<DevirTarafi, 2>& taraf) {
  DevirTarafi kaynak;
  Firma_Kayit_Getir(oturum, taraf[0].Firma_Adi, kaynak);
  DevirTarafi& yeni = taraf[1];
  yeni.Firma_ID = "0";
  yeni.Firma_Unvani = kaynak.Firma_Unvani;
  yeni.Firma_Adi = "1" + kaynak.Firma_Adi;
  yeni.Firma_Kodu = session::Firma_Kod_Yeni(oturum);
  yeni.Bas_Tar = ertesiGun(taraf[0].Bit_Tar);
  yeni.Bit_Tar = yeni.Bas_Tar.empty() ? "" : "31.12." + yeni.Bas_Tar.substr(6, 4);
}

std::string Devir_kontrol(const std::array<DevirTarafi, 2>& taraf) {
  const DevirTarafi& hedef = taraf[1];
  if (Trim(taraf[0].Firma_Adi) == Trim(hedef.Firma_Adi)) return "Firmalar Kendi Üzerlerine Devredilemez";
  std::string tarihHatasi;
  if (!tarihDogru(hedef.Bas_Tar))
    tarihHatasi = "Devirin Yapılacağı Firmamnın Mali Başlangıç Tarihi Yanlış Girilmiş";
  if (!tarihDogru(hedef.Bit_Tar))
    tarihHatasi = "Devirin Yapılacağı Firmamnın Mali Bitiş Tarihi Yanlış Girilmiş";
  // The texts are compared, not the dates: 15.01.2006 is behind 01.12.2006.
  if (hedef.Bas_Tar > hedef.Bit_Tar) return "Baslangıç ve Bitiş Tarihini Düzeltiniz.";
  if (hedef.Firma_Kodu.empty()) return "Firma Kodunu boş geçemezsiniz.";
  if (hedef.Firma_Adi.empty()) return "Database Adını boş geçemezsiniz.";
  if (hedef.Firma_Unvani.empty()) return "Firma Ünvanını boş geçemezsiniz.";
  if (hedef.Firma_Adi.front() >= '0' && hedef.Firma_Adi.front() <= '9')
    return "Database Adı Numara ile Başlayamaz";
  for (const YasakKarakter& yasak : yasaklar)
    if (hedef.Firma_Adi.find(yasak.karakter) != std::string::npos)
      return std::string(yasak.metin) + std::string(adKurali);
  return tarihHatasi;
}

namespace {

struct Sayim {
  int ust;  // top row that carries the table
  std::string_view tablo, kolon;
  bool kart;  // cards are matched by the column; openings are found by their type
};
constexpr std::array<Sayim, 11> sayimlar = {{
    {ustKasa, "KASAKART", "Kasa_Kod", true},
    {ustCari, "CARIKART", "Cari_Kod", true},
    {ustStok, "STOKKART", "Stok_Kod", true},
    {ustBanka, "HESAPKART", "Hesap_No", true},
    {ustMuhasebe, "MUHKART", "MHesap_Kod", true},
    {ustCek, "CEKKART", "Portfoy_No", true},
    {ustSenet, "SENETKART", "Portfoy_No", true},
    {ustKasa, "KASAHAREKET", "Kasa Açılış Fişi", false},
    {ustBanka, "BANKAHAREKET", "Banka Açılış Fişi", false},
    {ustCari, "ACILIS", "Açılış Fişi", false},
    {ustStok, "STOKHAREKET", "Açılış Fişi", false},
}};

}  // namespace

std::string hedefUyarisi(Oturum& oturum, const DevirGirdisi& girdi) {
  const std::string kaynak = Trim(girdi.taraf[0].Firma_Adi), hedef = Trim(girdi.taraf[1].Firma_Adi);
  if (girdi.taraf[1].Firma_ID.empty() || girdi.taraf[1].Firma_ID == "0") return "";
  std::int64_t kart = 0, acilis = 0;
  for (const Sayim& s : sayimlar) {
    if (!girdi.secenekler.ust(s.ust)) continue;
    const std::string tablo(s.tablo), kolon(s.kolon);
    const std::string kosul = s.kart
                                  ? kolon + " IN (SELECT " + kolon + " FROM " + kaynak + ".dbo." + tablo + ")"
                                  : "Islem_Tipi='" + kolon + "'";
    session::Sorgu_Ac(oturum, oturum.Kayitlar,
                      "SELECT COUNT(*) FROM " + hedef + ".dbo." + tablo + " WHERE " + kosul);
    if (oturum.Kayitlar.state() == db::State::Open && !oturum.Kayitlar.eof())
      (s.kart ? kart : acilis) += oturum.Kayitlar.field(0).integer();
    oturum.Kayitlar.close();
  }
  if (kart == 0 && acilis == 0) return "";
  return "\"" + hedef + "\" firmasında veri var: " + std::to_string(kart) + " kartın üzerine yazılacak, " +
         std::to_string(acilis) + " açılış kaydı yenilenecek.\nDevir yapılsın mı?";
}

}  // namespace rollover
