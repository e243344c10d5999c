#include "rights/yetki_duzeni.h"

#include <algorithm>

#include "rights/islem.h"
#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

using session::Oturum;

namespace {

// Opens the statement; false with the boxes shown when it failed.
bool ac(Oturum& oturum, db::Recordset& kayitlar, const std::string& sql) {
  session::Sorgu_Ac_Mesajli(oturum, kayitlar, sql);
  return kayitlar.state() == db::State::Open;
}

bool kullaniciyiOku(Oturum& oturum, YetkiDuzeni& duzen) {
  db::Recordset& row = oturum.Kayitlar;
  if (!ac(oturum, row, "SELECT sysus_nm,sysus FROM sysuslng WHERE sysus_ID=" + duzen.Kullanici_ID))
    return false;
  if (row.eof()) {
    oturum.kutular->message("Bu kullanıcı bulunamadı; başka bir yerden silinmiş olabilir.",
                            session::Icon::Stop);
    return false;
  }
  duzen.Kullanici_Ad = row.field("sysus_nm").trimmed();
  duzen.Kullanici_Sifre = row.field("sysus").trimmed();
  return true;
}

// The grids of places differ in their names alone.
struct YerTablosu {
  const char *kart, *yetki, *kod, *ad, *isaret, *sira;
};
constexpr YerTablosu ambarTablosu{"AMBAR", "KULLANICIAMBAR", "Ambar_No", "Ambar_Ad", "Merkez_Ambar", ""};
constexpr YerTablosu isyeriTablosu{"ISYERITANIM", "KULLANICIISYERI", "Isyeri_kodu",
                                   "Isyeri_Adi",  "Def_Isyeri",      " ORDER BY Isyeri_ID"};

std::string yerSorgusu(const YerTablosu& t, const YetkiDuzeni& duzen) {
  const std::string db = duzen.firma + ".dbo.";
  const std::string kod = t.kod, isaret = t.isaret;
  return "SELECT A.*,ISNULL(K.Yetki_ID,0) as Secildi,ISNULL(K." + isaret + ",0) as K" + isaret + " FROM " +
         db + t.kart + " A LEFT JOIN " + db + t.yetki + " K ON (A." + kod + "=K." + kod +
         " AND K.Kullanici_ID=" + duzen.Kullanici_ID + ")" + t.sira;
}

// Other programs write the tables, too: a place with two rows of rights is shown once.
bool yerleriYukle(Oturum& oturum, const YetkiDuzeni& duzen, const YerTablosu& t, Yerler& yerler,
                  bool& isaretVardi) {
  yerler.clear();
  isaretVardi = false;
  db::Recordset& row = oturum.Kayitlar;
  if (!ac(oturum, row, yerSorgusu(t, duzen))) return false;
  for (; !row.eof(); row.moveNext()) {
    YerYetkisi yer{row.field(t.kod).trimmed(), row.field(t.ad).trimmed(), row.field("Secildi").integer() != 0,
                   row.field("K" + std::string(t.isaret)).boolean()};
    yer.varsayilan = yer.varsayilan && !isaretVardi;
    isaretVardi = isaretVardi || yer.varsayilan;
    const auto same = std::find_if(yerler.begin(), yerler.end(),
                                   [&](const YerYetkisi& each) { return each.kod == yer.kod; });
    if (same == yerler.end())
      yerler.push_back(std::move(yer));
    else
      same->varsayilan = same->varsayilan || yer.varsayilan;
  }
  return true;
}

bool listeleriYukle(Oturum& oturum, YetkiDuzeni& duzen) {
  duzen.kasalar.clear();
  duzen.cariler.clear();
  db::Recordset& row = oturum.Kayitlar;
  if (!ac(oturum, row, "SELECT Kasa_ID,Kasa_Kod FROM " + duzen.firma + ".dbo.KASAKART ORDER BY Kasa_Kod"))
    return false;
  for (; !row.eof(); row.moveNext())
    duzen.kasalar.push_back({row.field("Kasa_ID").integer(), row.field("Kasa_Kod").trimmed()});
  if (!ac(oturum, row,
          "SELECT Cari_ID,RTRIM(Cari_Kod) as Alan1  FROM " + duzen.firma +
              ".dbo.CARIKART ORDER BY RTRIM(Cari_Kod)"))
    return false;
  for (; !row.eof(); row.moveNext()) duzen.cariler.push_back(row.field("Alan1").trimmed());
  return true;
}

}  // namespace

bool Yetki_Yukle(Oturum& oturum, YetkiDuzeni& duzen) {
  duzen = YetkiDuzeni{};
  duzen.Kullanici_ID = std::to_string(oturum.Secili_ID);
  if (!katalogaBaglan(oturum) || !kullaniciyiOku(oturum, duzen) || !Firma_ekle(oturum, duzen)) return false;
  if (duzen.Firma_Combo.empty()) {
    oturum.kutular->message(std::string(yetkiFirmaYok));
    return false;
  }
  Firma_Sec(oturum, duzen, duzen.Firma_Combo.front());
  return true;
}

bool Firma_ekle(Oturum& oturum, YetkiDuzeni& duzen) {
  duzen.Firma_Combo.clear();
  db::Recordset& row = oturum.Kayitlar;
  if (!ac(oturum, row,
          "SELECT * FROM Kullanici,sysfrmlng WHERE sysfrmlng.sysfrm_ID=Kullanici.Firma_ID AND "
          "Kullanici_ID='" +
              duzen.Kullanici_ID + "'"))
    return false;
  for (; !row.eof(); row.moveNext()) {
    const std::string ad = row.field("sysfrm_dbnm").trimmed();
    if (std::find(duzen.Firma_Combo.begin(), duzen.Firma_Combo.end(), ad) == duzen.Firma_Combo.end())
      duzen.Firma_Combo.push_back(ad);
  }
  return true;
}

bool Firma_Sec(Oturum& oturum, YetkiDuzeni& duzen, const std::string& firma) {
  duzen.firma = firma;
  if (!Firma_ID_Al(oturum, duzen)) return duzen.okundu = false;
  return duzen.Kopyala ? duzen.okundu : Yetki_Getir(oturum, duzen);
}

bool Firma_ID_Al(Oturum& oturum, YetkiDuzeni& duzen) {
  duzen.Firma_ID.clear();
  db::Recordset& row = oturum.Kayitlar;
  if (!ac(oturum, row, "SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + db::escape(duzen.firma) + "'"))
    return false;
  if (!row.eof()) duzen.Firma_ID = std::to_string(session::Firma_Kimligi(oturum, row, duzen.firma));
  return !row.eof();
}

bool Yetki_Getir(Oturum& oturum, YetkiDuzeni& duzen) {
  duzen.okundu = false;
  duzen.satir = YetkiSatiri{};
  duzen.YetkiAmbarGrd.clear();
  duzen.YetkiIsyeriGrd.clear();
  duzen.kasalar.clear();
  duzen.cariler.clear();
  db::Recordset kayitlar;
  if (ac(oturum, kayitlar,
         "SELECT * FROM Kullanici WHERE Firma_ID='" + duzen.Firma_ID + "' AND Kullanici_ID='" +
             duzen.Kullanici_ID + "'") &&
      !kayitlar.eof()) {
    duzen.satir = yetkiSatiriOku(kayitlar);
    duzen.okundu = true;
  }
  agacaYaz(duzen.satir, duzen.treelist);
  const bool yerler = duzen.okundu && listeleriYukle(oturum, duzen) && Ambarlari_Yukle(oturum, duzen) &&
                      Isyerleri_Yukle(oturum, duzen);
  Genel_Yetki_Bul(oturum, duzen);
  return duzen.okundu = yerler;
}

// The grids and boxes read their columns where they show them; what is left are codes behind numbers.
void Genel_Yetki_Bul(Oturum&, YetkiDuzeni& duzen) {
  const std::int64_t kasa = duzen.satir["Def_Kasa_ID"].integer();
  duzen.Def_Kasa_Kod.clear();
  for (const KasaSecenegi& secenek : duzen.kasalar)
    if (kasa != 0 && secenek.id == kasa) duzen.Def_Kasa_Kod = secenek.kod;
  duzen.Def_Cari_Kod = duzen.satir["Def_Cari_Kod"].trimmed();
}

bool Ambarlari_Yukle(Oturum& oturum, YetkiDuzeni& duzen) {
  return yerleriYukle(oturum, duzen, ambarTablosu, duzen.YetkiAmbarGrd, duzen.merkezVardi);
}

bool Isyerleri_Yukle(Oturum& oturum, YetkiDuzeni& duzen) {
  return yerleriYukle(oturum, duzen, isyeriTablosu, duzen.YetkiIsyeriGrd, duzen.isyeriVardi);
}

void secimiCevir(Yerler& yerler, std::size_t satir) {
  YerYetkisi& yer = yerler[satir];
  yer.Sec = !yer.Sec;
  if (!yer.Sec) yer.varsayilan = false;
}

void varsayilanYap(Yerler& yerler, std::size_t satir, bool durum) {
  if (durum)
    for (YerYetkisi& each : yerler) each.varsayilan = false;
  yerler[satir].varsayilan = durum;
  yerler[satir].Sec = yerler[satir].Sec || durum;
}

}  // namespace rights
