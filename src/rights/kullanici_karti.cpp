#include "rights/kullanici_karti.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/code_page.h"
#include "rights/islem.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

using session::Oturum;
using session::Trim;

namespace {

constexpr std::array<std::string_view, 12> turkceHarfler = {"Ç", "ç", "Ğ", "ğ", "İ", "ı",
                                                            "Ö", "ö", "Ş", "ş", "Ü", "ü"};

constexpr std::string_view okunamadi = "Kullanıcı bilgileri okunamadı.";

std::string alan(const db::Recordset& row, std::string_view name) {
  const db::Value value = row.field(name);
  return value.isNull() ? std::string() : value.trimmed();
}

void satiriYerlestir(const db::Recordset& row, KullaniciKarti& kart) {
  kart.Kullanici_Adi = kart.Eski_Ad = alan(row, "sysus_nm");
  kart.Sifreli_sifre = alan(row, "sysus");
  const auto sifre = session::Sifre_Coz(kart.Sifreli_sifre);
  if (!sifre) kart.Okunamayan_Sifre = kart.Sifreli_sifre;
  kart.Kullanici_Sifre = kart.Sifre_Onay = sifre.value_or("");
  kart.Eski_SQL_Sifre = session::Buyuk_Harf(kart.Kullanici_Sifre);
  kart.Yonetici = row.field("Yonetici").boolean();
  kart.smtpserver = alan(row, "smtpserver");
  kart.smtpserverport = alan(row, "smtpserverport");
  kart.sendusername = alan(row, "sendusername");
  kart.sendpassword = alan(row, "sendpassword");
}

// Why the password cannot be stored. The length first: the scrambling has no letters left for the places of a
// long one.
std::string sifreHatasi(const std::string& sifre, const std::optional<std::string>& sifreli) {
  if (platform::toUtf32(sifre).size() > static_cast<std::size_t>(kolonGenisligi("sysuslng", "sysus")))
    return sigmazHatasi("sysuslng", "sysus", "Şifre", std::string(sifre.size(), '0'));
  if (!sifreli) return "Şifrede bu şifrelemeye sığmayan karakter olamaz.";
  return sigmazHatasi("sysuslng", "sysus", "Şifre", *sifreli);
}

}  // namespace

bool Kullanici_Karti_Ac(Oturum& oturum, KullaniciKarti& kart) {
  kart = KullaniciKarti{};
  if (oturum.Yeni_Kayit) return Firma_Listesi(oturum, kart);
  if (!katalogaBaglan(oturum)) return false;
  kart.ID = std::to_string(oturum.Secili_ID);
  const bool okundu = hatayiGoster(oturum, okunamadi, [&] {
    oturum.Kayitlar.open(*oturum.Baglanti, "SELECT * FROM sysuslng WHERE sysus_ID=" + kart.ID);
    if (oturum.Kayitlar.eof()) {
      oturum.kutular->message("Bu kullanıcı bulunamadı; başka bir yerden silinmiş olabilir.",
                              session::Icon::Stop);
      return false;
    }
    satiriYerlestir(oturum.Kayitlar, kart);
    return true;
  });
  return okundu && Firma_Getir(oturum, kart, kart.ID);
}

bool Firma_Listesi(Oturum& oturum, KullaniciKarti& kart) {
  kart.Firmatreelist.clear();
  if (!katalogaBaglan(oturum)) return false;
  return hatayiGoster(oturum, "Firma listesi okunamadı.", [&] {
    db::Recordset& row = oturum.Kayitlar;
    row.open(*oturum.Baglanti, "SELECT sysfrm_ID,sysfrm_dbnm,sysfrm_kd FROM sysfrmlng");
    for (; !row.eof(); row.moveNext())
      kart.Firmatreelist.push_back({row.field("sysfrm_ID").integer(), row.field("sysfrm_dbnm").trimmed()});
    return true;
  });
}

bool Firma_Getir(Oturum& oturum, KullaniciKarti& kart, const std::string& sysusId) {
  if (!Firma_Listesi(oturum, kart)) return false;
  return hatayiGoster(oturum, "Firma listesi okunamadı.", [&] {
    db::Recordset& row = oturum.Kayitlar;
    row.open(*oturum.Baglanti,
             "SELECT * FROM sysusfrmlng,sysfrmlng WHERE sysfrmlng.sysfrm_ID=sysusfrmlng.sysfrm_ID AND "
             "sysus_ID='" +
                 db::escape(sysusId) + "'");
    for (; !row.eof(); row.moveNext()) {
      const std::int64_t id = row.field("sysfrm_ID").integer();
      for (FirmaSatiri& firma : kart.Firmatreelist) firma.secili = firma.secili || firma.id == id;
    }
    return true;
  });
}

std::vector<KullaniciOzeti> kullaniciOzetleri(Oturum& oturum) {
  std::vector<KullaniciOzeti> all;
  if (!katalogaBaglan(oturum)) return all;
  hatayiGoster(oturum, okunamadi, [&] {
    db::Recordset& row = oturum.Kayitlar;
    row.open(*oturum.Baglanti, "SELECT sysus_ID,sysus_nm,Yonetici FROM sysuslng ORDER BY sysus_nm");
    for (; !row.eof(); row.moveNext())
      all.push_back({row.field("sysus_ID").integer(),
                     row.field("sysus_nm").trimmed(),
                     row.field("Yonetici").boolean(),
                     {}});
    row.open(*oturum.Baglanti,
             "SELECT U.sysus_ID,F.sysfrm_dbnm FROM sysusfrmlng U INNER JOIN sysfrmlng F ON "
             "F.sysfrm_ID=U.sysfrm_ID ORDER BY "
             "F.sysfrm_dbnm");
    for (; !row.eof(); row.moveNext())
      for (KullaniciOzeti& user : all)
        if (user.id == row.field("sysus_ID").integer())
          user.firmalar.push_back(row.field("sysfrm_dbnm").trimmed());
    return true;
  });
  return all;
}

void Sifre_Kontrol(Oturum& oturum, const std::string& text) {
  oturum.Son_Hata.clear();
  if (std::any_of(turkceHarfler.begin(), turkceHarfler.end(),
                  [&](std::string_view harf) { return text.find(harf) != std::string::npos; }))
    oturum.Son_Hata = "Lütfen şifrenizde Türkçe karakter kullanmayınız.";
}

KullaniciSonucu Ekle_Tamam(Oturum& oturum, KullaniciKarti& kart) {
  if (oturum.Inceleme) return {};
  if (std::none_of(kart.Firmatreelist.begin(), kart.Firmatreelist.end(),
                   [](const FirmaSatiri& f) { return f.secili; })) {
    oturum.kutular->message("Lütfen Bu Kullanıcı İçin Enaz Bir Firma Seçiniz", session::Icon::Stop);
    return {};
  }
  Sifre_Kontrol(oturum, Trim(kart.Kullanici_Sifre));
  if (!oturum.Son_Hata.empty()) {
    oturum.kutular->message(oturum.Son_Hata);
    return {false, KullaniciOdak::Kullanici_Sifre};
  }
  oturum.Kullanici_Adi = session::Buyuk_Harf(Trim(kart.Kullanici_Adi));
  const std::string sifre = Trim(kart.Kullanici_Sifre);
  const bool eskisiKalir = sifre.empty() && !kart.Okunamayan_Sifre.empty();
  const auto sifreli = session::Sifrele(sifre);
  if (const std::string hata = sifreHatasi(sifre, sifreli); !hata.empty()) {
    oturum.kutular->message(hata, session::Icon::Stop);
    return {false, KullaniciOdak::Kullanici_Sifre};
  }
  kart.Sifreli_sifre = eskisiKalir ? kart.Okunamayan_Sifre : *sifreli;
  return Sifre_Onayla(oturum, kart);
}

KullaniciSonucu Sifre_Onayla(Oturum& oturum, KullaniciKarti& kart) {
  if (Trim(kart.Sifre_Onay) == Trim(kart.Kullanici_Sifre)) return Kullanici_Kaydet(oturum, kart);
  oturum.kutular->message("Şifreniz tutarlı değil!");
  return {};
}

}  // namespace rights
