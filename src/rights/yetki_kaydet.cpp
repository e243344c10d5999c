// Writing what the rights editor shows.
#include <algorithm>

#include "rights/islem.h"
#include "rights/yetki_duzeni.h"
#include "rights/yetki_yaz.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

using session::Oturum;

namespace {

std::string literal(const std::string& text) {
  return "'" + db::escape(text) + "'";
}

// The grids of places as they are written; a warehouse is a number, a workplace a text.
struct YerTablosu {
  std::string_view kart, yetki, kod, isaret;
  bool sayi;
};
constexpr YerTablosu ambarTablosu{"AMBAR", "KULLANICIAMBAR", "Ambar_No", "Merkez_Ambar", true};
constexpr YerTablosu isyeriTablosu{"ISYERITANIM", "KULLANICIISYERI", "Isyeri_Kodu", "Def_Isyeri", false};

std::string kodlar(const Yerler& yerler, bool secili, bool sayi) {
  Yerler those;
  std::copy_if(yerler.begin(), yerler.end(), std::back_inserter(those),
               [secili](const YerYetkisi& y) { return y.Sec == secili; });
  return birlestir(those, [sayi](const YerYetkisi& y) { return sayi ? y.kod : literal(y.kod); });
}

// Two statements however many rows changed. Unticked rows go, and so does a row whose mark is not what is
// shown; then ticked rows that are not there come, with their mark. The others keep their numbers. A place
// that the company does not have is left out.
std::string yerBatchi(const YerTablosu& t, const std::string& firma, const std::string& kullanici,
                      const Yerler& yerler) {
  if (yerler.empty()) return "";
  const auto tablo = [&](std::string_view name) { return firma + ".dbo." + std::string(name); };
  const std::string kod(t.kod), isaret(t.isaret);
  const std::string giden = kodlar(yerler, false, t.sayi), kalan = kodlar(yerler, true, t.sayi);
  const auto marked =
      std::find_if(yerler.begin(), yerler.end(), [](const YerYetkisi& y) { return y.Sec && y.varsayilan; });
  const std::string isaretli = marked == yerler.end() ? "" : t.sayi ? marked->kod : literal(marked->kod);
  std::string eski = isaret + "=1";
  if (!isaretli.empty())
    eski = "(" + eski + " AND " + kod + "<>" + isaretli + ") OR (ISNULL(" + isaret + ",0)=0 AND " + kod +
           "=" + isaretli + ")";
  std::string batch = "DELETE FROM " + tablo(t.yetki) + " WHERE Kullanici_ID=" + kullanici + " AND (" +
                      (giden.empty() ? "" : kod + " IN (" + giden + ") OR ") + eski + ")";
  if (!kalan.empty())
    batch += "\nINSERT INTO " + tablo(t.yetki) + "(Kullanici_ID," + kod + "," + isaret + ") SELECT " +
             kullanici + ",A." + kod + "," +
             (isaretli.empty() ? "0" : "CASE WHEN A." + kod + "=" + isaretli + " THEN 1 ELSE 0 END") +
             " FROM " + tablo(t.kart) + " A WHERE A." + kod + " IN (" + kalan +
             ") AND NOT EXISTS (SELECT K.Yetki_ID FROM " + tablo(t.yetki) +
             " K WHERE K.Kullanici_ID=" + kullanici + " AND K." + kod + "=A." + kod + ")";
  return batch;
}

constexpr std::string_view kayitSilinmis =
    "Bu kullanıcının bu firmadaki yetki kaydı başka bir yerden silinmiş; kaydedilemedi.";
constexpr int metinSigmaz = 8152;  // the server's number for a text longer than its column

void yerleriYaz(Oturum& oturum, const YerTablosu& t, const std::string& firma, const std::string& kullanici,
                const Yerler& yerler) {
  const std::string batch = yerBatchi(t, firma, kullanici, yerler);
  if (batch.empty()) return;
  try {
    oturum.Baglanti->execute(batch);
  } catch (const db::SqlError& hata) {
    if (hata.serverNumber() != metinSigmaz) throw;
    throw db::SqlError(hata.kind(), hata.serverNumber(),
                       std::string(t.yetki) +
                           " tablosu işyeri kodlarının hepsini tutamıyor: seçilenlerden biri kolondan uzun.");
  }
}

// The number behind the chosen cash box in that company; NULL without one.
db::Value kasaNumarasi(Oturum& oturum, const std::string& firma, const std::string& kod) {
  if (kod.empty()) return {};
  oturum.Kayitlar.open(*oturum.Baglanti, "SELECT Kasa_ID,Kasa_Kod FROM " + firma +
                                             ".dbo.KASAKART WHERE  Kasa_Kod=" + literal(kod));
  return oturum.Kayitlar.eof() ? db::Value() : oturum.Kayitlar.field("Kasa_ID");
}

// What a save of the editor writes: all but the two columns that the till's screen owns.
void yazilacaklar(const YetkiSatiri& satir, KolonDegerleri& degerler) {
  for (std::size_t i = 0; i < kolonlar().size(); ++i) {
    const Kolon& kolon = kolonlar()[i];
    if (kolon.ad == "Kullanici_Fiyat" || kolon.ad == "FiyatDegistirsin") continue;
    if (!satir.degerler[i].isNull() || kolon.bosOlur) degerler.emplace_back(kolon.ad, satir.degerler[i]);
  }
}

// The marked row gives the default; without one the default goes only when a mark has been taken away.
void varsayilaniKoy(db::Value& deger, const Yerler& yerler, bool isaretVardi) {
  for (const YerYetkisi& yer : yerler) {
    if (!yer.Sec || !yer.varsayilan) continue;
    deger = yer.kod;
    return;
  }
  if (isaretVardi) deger = db::Value();
}

}  // namespace

void yerYetkileriniYaz(Oturum& oturum, const std::string& firma, const std::string& kullanici,
                       const Yerler* ambarlar, const Yerler* isyerleri) {
  if (ambarlar) yerleriYaz(oturum, ambarTablosu, firma, kullanici, *ambarlar);
  if (isyerleri) yerleriYaz(oturum, isyeriTablosu, firma, kullanici, *isyerleri);
}

bool satiriAc(Oturum& oturum, db::Recordset& kayitlar, const std::string& firmaId,
              const std::string& kullanici) {
  kayitlar.open(
      *oturum.Baglanti,
      "SELECT * FROM Kullanici WHERE Firma_ID='" + firmaId + "' AND Kullanici_ID='" + kullanici + "'",
      db::Cursor::Keyset, db::Lock::BatchOptimistic);
  if (kayitlar.eof()) oturum.kutular->message(std::string(kayitSilinmis), session::Icon::Stop);
  return !kayitlar.eof();
}

bool satiriYaz(Oturum& oturum, const db::Recordset& kayitlar, const KolonDegerleri& degerler) {
  std::string set;
  for (const auto& [kolon, deger] : degerler)
    if (kayitlar.fieldIndex(kolon) >= 0)
      set += (set.empty() ? "" : ",") + std::string(kolon) + "=" + db::literal(deger);
  if (set.empty()) return true;
  if (oturum.Baglanti->execute("UPDATE Kullanici SET " + set + " WHERE ID=" + kayitlar.field("ID").text()) >
      0)
    return true;
  oturum.kutular->message(std::string(kayitSilinmis), session::Icon::Stop);
  return false;
}

bool TamamBtn(Oturum& oturum, YetkiDuzeni& duzen) {
  if (duzen.Firma_ID.empty()) {
    oturum.kutular->message("Yetkilendirme Yapacağınız Firmayı Seçmelisiniz.", session::Icon::None,
                            "Tuvra Zembera");
    return false;
  }
  if (!duzen.okundu) {
    oturum.kutular->message(
        "Bu firmanın yetkileri okunamadı; kaydedilirse verilmiş yetkiler silinir. Hiçbir "
        "şey yazılmadı.",
        session::Icon::Stop);
    return false;
  }
  agactanOku(duzen.treelist, duzen.satir);
  return Yetki_Kaydet(oturum, duzen);
}

bool Yetki_Kaydet(Oturum& oturum, YetkiDuzeni& duzen) {
  if (duzen.Firma_Combo.empty()) {
    oturum.kutular->message("Bu Kullanıcı Hiçbir firmayı Kulanamaz Duruma Getirilmiş. Yetki Tanımlanamaz");
    return false;
  }
  if (!katalogaBaglan(oturum)) return false;
  const bool yazildi = tekIslem(oturum, "Yetkiler kaydedilemedi; hiçbir şey değiştirilmedi.", [&] {
    db::Recordset kayitlar;
    if (!satiriAc(oturum, kayitlar, duzen.Firma_ID, duzen.Kullanici_ID)) return false;
    YetkiSatiri satir = duzen.satir;
    satir["Def_Ambar_No"] = kayitlar.field("Def_Ambar_No");
    satir["DEF_Isyeri_Kod"] = kayitlar.field("DEF_Isyeri_Kod");
    varsayilaniKoy(satir["Def_Ambar_No"], duzen.YetkiAmbarGrd, duzen.merkezVardi);
    varsayilaniKoy(satir["DEF_Isyeri_Kod"], duzen.YetkiIsyeriGrd, duzen.isyeriVardi);
    satir["Def_Kasa_ID"] = kasaNumarasi(oturum, duzen.firma, duzen.Def_Kasa_Kod);
    satir["Def_Cari_Kod"] = duzen.Def_Cari_Kod.empty() ? db::Value() : db::Value(duzen.Def_Cari_Kod);
    KolonDegerleri degerler{{"Firma_ID", duzen.Firma_ID},
                            {"Kullanici_ID", duzen.Kullanici_ID},
                            {"Kullanici_Ad", duzen.Kullanici_Ad},
                            {"Kullanici_Sifre", duzen.Kullanici_Sifre}};
    yazilacaklar(satir, degerler);
    if (!satiriYaz(oturum, kayitlar, degerler)) return false;
    yerYetkileriniYaz(oturum, duzen.firma, duzen.Kullanici_ID, &duzen.YetkiAmbarGrd, &duzen.YetkiIsyeriGrd);
    duzen.satir = satir;
    return true;
  });
  if (yazildi) oturum.kutular->message("Firma İçin Yetkilendirme Tamamlandı.");
  return yazildi;
}

}  // namespace rights
