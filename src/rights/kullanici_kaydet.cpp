// Writing the user card.
#include <algorithm>
#include <set>

#include "rights/islem.h"
#include "rights/kullanici_karti.h"
#include "rights/varsayilan.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

using session::Oturum;
using session::Trim;

namespace {

constexpr std::string_view kaydedilemedi = "Kullanıcı kaydedilemedi; hiçbir şey değiştirilmedi.";
constexpr std::string_view kaydaAlindi = "Yaptığınız değişiklikler kayda alındı.";

struct PostaAlani {
  std::string_view kolon;
  std::string KullaniciKarti::*metin;
  std::string_view yazi;
};
constexpr PostaAlani postaAlanlari[] = {
    {"smtpserver", &KullaniciKarti::smtpserver, "Posta sunucusu"},
    {"smtpserverport", &KullaniciKarti::smtpserverport, "Posta kapısı"},
    {"sendusername", &KullaniciKarti::sendusername, "Posta kullanıcısı"},
    {"sendpassword", &KullaniciKarti::sendpassword, "Posta şifresi"},
};

std::string literal(const std::string& text) {
  return "'" + db::escape(text) + "'";
}

// Stored in capitals, as every comparison of names expects.
std::string ad(const KullaniciKarti& kart) {
  return session::Buyuk_Harf(Trim(kart.Kullanici_Adi));
}

// The first text that its column cannot hold; empty without one.
std::string alanHatasi(const KullaniciKarti& kart) {
  if (session::denetimKarakteriVar(ad(kart)))
    return "Kullanıcı adı içinde satır sonu ya da başka bir denetim karakteri olamaz.";
  std::string hata = sigmazHatasi("sysuslng", "sysus_nm", "Kullanıcı adı", ad(kart));
  for (const PostaAlani& posta : postaAlanlari)
    if (hata.empty()) hata = sigmazHatasi("sysuslng", posta.kolon, posta.yazi, Trim(kart.*posta.metin));
  return hata;
}

// False with the box shown when another user has the name.
bool adBos(Oturum& oturum, const std::string& ad) {
  oturum.Kayitlar.open(*oturum.Baglanti, "SELECT * FROM sysuslng WHERE sysus_nm=" + literal(ad));
  if (oturum.Kayitlar.eof()) return true;
  oturum.kutular->message("Aynı adlı bir kullanıcı bulunmaktadır.Lütfen Kullanıcı adını değiştiriniz...",
                          session::Icon::Stop);
  return false;
}

std::string idler(const KullaniciKarti& kart, bool secili) {
  std::vector<std::int64_t> ids;
  for (const FirmaSatiri& firma : kart.Firmatreelist)
    if (firma.secili == secili) ids.push_back(firma.id);
  return birlestir(ids, [](std::int64_t id) { return std::to_string(id); });
}

// The ticked companies that still stand in the catalog.
void firmalariVer(Oturum& oturum, const KullaniciKarti& kart, const std::string& id) {
  oturum.Baglanti->execute("INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) SELECT sysfrm_ID," + id +
                           " FROM sysfrmlng WHERE sysfrm_ID IN (" + idler(kart, true) + ")");
}

// Everything granted in each ticked company where the user has no row yet; rights given before survive.
void varsayilanlariYaz(Oturum& oturum, const KullaniciKarti& kart, const std::string& id) {
  std::set<std::int64_t> yetkili, verilen;
  const auto topla = [&](std::set<std::int64_t>& into, const std::string& sql) {
    oturum.Kayitlar.open(*oturum.Baglanti, sql);
    for (; !oturum.Kayitlar.eof(); oturum.Kayitlar.moveNext())
      into.insert(oturum.Kayitlar.field(0).integer());
  };
  topla(verilen, "SELECT sysfrm_ID FROM sysusfrmlng WHERE sysus_ID=" + id);
  topla(yetkili, "SELECT Firma_ID FROM Kullanici WHERE Kullanici_ID=" + id);
  std::string batch;
  for (const std::int64_t firma : verilen) {
    if (yetkili.contains(firma)) continue;
    batch +=
        (batch.empty() ? "" : "\n") + varsayilanSatir(VarsayilanTur::YeniKullanici, std::to_string(firma), id,
                                                      ad(kart), kart.Sifreli_sifre);
  }
  if (!batch.empty()) oturum.Baglanti->execute(batch);
}

void satiriYaz(Oturum& oturum, const KullaniciKarti& kart) {
  db::Recordset& row = oturum.Kayitlar;
  row.set("sysus_nm", ad(kart));
  row.set("sysus", Trim(kart.Sifreli_sifre));
  row.set("Yonetici", kart.Yonetici);
  row.set("sendusing", 1);
  row.set("smtpserver", Trim(kart.smtpserver));
  row.set("smtpserverport", Trim(kart.smtpserverport));
  row.set("smtpauthenticate", 1);
  row.set("sendusername", Trim(kart.sendusername));
  row.set("sendpassword", Trim(kart.sendpassword));
  row.update();
}

// User 1 keeps his companies; his rows of rights take name and password.
void yoneticiyiYaz(Oturum& oturum, const KullaniciKarti& kart, const std::string& id) {
  oturum.Baglanti->execute("UPDATE Kullanici SET  Kullanici_Ad=" + literal(ad(kart)) +
                           " , Kullanici_Sifre =" + literal(Trim(kart.Sifreli_sifre)) +
                           "  WHERE Kullanici_ID='" + id + "'");
}

void firmalariYaz(Oturum& oturum, const KullaniciKarti& kart, const std::string& id) {
  oturum.Baglanti->execute("DELETE FROM sysusfrmlng WHERE sysus_ID='" + id + "'");
  firmalariVer(oturum, kart, id);
  varsayilanlariYaz(oturum, kart, id);
  if (const std::string giden = idler(kart, false); !giden.empty())
    oturum.Baglanti->execute("DELETE FROM Kullanici WHERE Kullanici_ID=" + id + " AND Firma_ID IN (" + giden +
                             ")");
}

KullaniciSonucu degistir(Oturum& oturum, const KullaniciKarti& kart) {
  KullaniciSonucu sonuc;
  const std::string id = Trim(kart.ID);
  if (!katalogaBaglan(oturum)) return sonuc;
  sonuc.kaydedildi = tekIslem(oturum, kaydedilemedi, [&] {
    if (ad(kart) != session::Buyuk_Harf(Trim(kart.Eski_Ad)) && !adBos(oturum, ad(kart))) {
      sonuc.odak = KullaniciOdak::Kullanici_Adi;
      return false;
    }
    oturum.Kayitlar.open(*oturum.Baglanti, "Select * FROM sysuslng WHERE sysus_ID ='" + db::escape(id) + "'",
                         db::Cursor::Keyset, db::Lock::BatchOptimistic);
    if (oturum.Kayitlar.eof()) {
      oturum.kutular->message("Bu kullanıcı başka bir yerden silinmiş; kaydedilemedi.", session::Icon::Stop);
      return false;
    }
    satiriYaz(oturum, kart);
    if (id == "1" && oturum.Supervisor)
      yoneticiyiYaz(oturum, kart, id);
    else
      firmalariYaz(oturum, kart, id);
    return true;
  });
  if (sonuc.kaydedildi) oturum.kutular->message(std::string(kaydaAlindi), session::Icon::Information);
  return sonuc;
}

// Empty mail fields of a new user are stored as one blank.
std::string posta(const std::string& text) {
  const std::string kirpik = Trim(text);
  return literal(kirpik.empty() ? " " : kirpik);
}

KullaniciSonucu ekle(Oturum& oturum, const KullaniciKarti& kart) {
  KullaniciSonucu sonuc;
  if (!katalogaBaglan(oturum)) return sonuc;
  sonuc.kaydedildi = tekIslem(oturum, kaydedilemedi, [&] {
    const std::string ad = literal(oturum.Kullanici_Adi);
    if (!adBos(oturum, oturum.Kullanici_Adi)) {
      sonuc.odak = KullaniciOdak::Kullanici_Adi;
      return false;
    }
    oturum.Baglanti->execute(
        "INSERT INTO sysuslng(sysus_nm,sysus_lgn,sysus,Yonetici,sendusing,smtpserver,smtpserverport,"
        "smtpauthenticate,sendusername,sendpassword) VALUES (" +
        ad + "," + ad + "," + literal(kart.Sifreli_sifre) + "," + (kart.Yonetici ? "1" : "0") + ",1," +
        posta(kart.smtpserver) + "," + posta(kart.smtpserverport) + ",1," + posta(kart.sendusername) + "," +
        posta(kart.sendpassword) + ")");
    oturum.Kayitlar.open(*oturum.Baglanti, "Select sysus_ID FROM sysuslng WHERE sysus_nm =" + ad);
    const std::string id = std::to_string(oturum.Kayitlar.field("sysus_ID").integer());
    firmalariVer(oturum, kart, id);
    varsayilanlariYaz(oturum, kart, id);
    return true;
  });
  return sonuc;
}

}  // namespace

KullaniciSonucu Kullanici_Kaydet(Oturum& oturum, KullaniciKarti& kart) {
  if (Trim(kart.Kullanici_Adi).empty()) {
    oturum.kutular->message("Kullanıcı Adı Boş Olamaz...", session::Icon::Stop);
    return {false, KullaniciOdak::Kullanici_Adi};
  }
  if (const std::string hata = alanHatasi(kart); !hata.empty()) {
    oturum.kutular->message(hata, session::Icon::Stop);
    return {false, KullaniciOdak::Kullanici_Adi};
  }
  return oturum.Yeni_Kayit ? ekle(oturum, kart) : degistir(oturum, kart);
}

bool Kullanici_Yetki_Kopyala(Oturum& oturum, const KullaniciKarti& kart, std::int64_t firmaId,
                             std::int64_t kullaniciId) {
  if (session::Komut_Calistir(oturum, oturum.Kayitlar,
                              "SELECT * FROM Kullanici WHERE Kullanici_ID=" + std::to_string(kullaniciId) +
                                  " AND Firma_ID=" + std::to_string(firmaId)) != 0)
    return false;
  return hatayiGoster(oturum, kaydedilemedi, [&] {
    db::Recordset& row = oturum.Kayitlar;
    if (row.eof()) return false;
    row.set("Firma_ID", firmaId);
    row.set("Kullanici_ID", kullaniciId);
    row.set("Kullanici_Ad", ad(kart));
    row.set("Kullanici_Sifre", Trim(kart.Sifreli_sifre));
    row.update();
    return true;
  });
}

}  // namespace rights
