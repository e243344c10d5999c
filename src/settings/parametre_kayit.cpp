// The company's row between catalog and memory.
#include <algorithm>

#include "catalog/katalog.h"
#include "session/izgara.h"
#include "session/metin.h"
#include "session/statements.h"
#include "settings/parametre.h"
#include "settings/parametre_deger.h"

namespace settings {

namespace {

using session::Oturum;

std::string tirnakli(const std::string& metin) {
  return "'" + db::escape(metin) + "'";
}

// The column that the catalog's table lacks, empty when it has all.
std::string eksikKolon(const db::Recordset& kayitlar) {
  for (const Parametre& p : parametreler())
    if (kayitlar.fieldIndex(p.sutun) < 0) return std::string(p.sutun);
  return {};
}

FirmaKaydi satiriOku(const db::Recordset& kayitlar) {
  FirmaKaydi kayit;
  kayit.sysfrm_ID = kayitlar.field("sysfrm_ID").integer();
  kayit.sysfrm_dbnm = kayitlar.field("sysfrm_dbnm").trimmed();
  kayit.Mali_Yil_Baslangic = kayitlar.field("Mali_Yil_Baslangic");
  kayit.Mali_Yil_Bitis = kayitlar.field("Mali_Yil_Bitis");
  for (const Parametre& p : parametreler()) kayit.degerler.push_back(kayitlar.field(p.sutun));
  return kayit;
}

std::vector<FirmaKaydi> satirlar(Oturum& oturum, const std::string& sql) {
  std::vector<FirmaKaydi> sonuc;
  db::Recordset kayitlar;
  try {
    if (!oturum.Baglanti) throw db::SqlError(db::ErrorKind::LinkBroken, 0, "Sunucuya bağlı değil.");
    kayitlar.open(*oturum.Baglanti, sql);
    if (kayitlar.state() != db::State::Open) return sonuc;
    if (const std::string kolon = eksikKolon(kayitlar); !kolon.empty()) {
      oturum.Son_Hata = "Tanımlama veritabanı eski yapıda: sysfrmlng tablosunda “" + kolon +
                        "” kolonu yok. Veritabanlarını zembera-cli guncelle ile güncelleyiniz.";
      return sonuc;
    }
    for (; !kayitlar.eof(); kayitlar.moveNext()) sonuc.push_back(satiriOku(kayitlar));
  } catch (const db::SqlError& hata) {
    oturum.Son_Hata = hata.what();
    sonuc.clear();
  }
  return sonuc;
}

// True for the row as it was read. A long text is compared as far as a comparison goes.
std::string kosul(const Parametre& p, const db::Value& eski) {
  const std::string sutun(p.sutun);
  if (eski.isNull()) return sutun + " IS NULL";
  if (p.tur == ParametreTuru::UzunYazi || p.tur == ParametreTuru::Yazi)
    return "CONVERT(VARCHAR(8000)," + sutun +
           ")=" + db::literal(db::Value(session::ilkHarfler(eski.text(), 8000)));
  return sutun + "=" + db::literal(eski);
}

}  // namespace

std::vector<Firma> Firma_Listesi(Oturum& oturum) {
  std::vector<Firma> firmalar;
  try {
    if (oturum.Baglanti && oturum.Baglanti->state() == db::State::Open) oturum.Baglanti->close();
    oturum.Katalog_Adi = catalog::catalogDatabase;
    session::Katalog_Bagla(oturum, oturum.Katalog_Adi);
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    return firmalar;
  }
  db::Recordset& k = oturum.Kayitlar;
  session::Sorgu_Ac_Mesajli(oturum, k, "SELECT sysfrm_dbnm,sysfrm_kd FROM sysfrmlng");
  if (k.state() != db::State::Open) return firmalar;
  for (; !k.eof(); k.moveNext())
    firmalar.push_back({k.field("sysfrm_dbnm").trimmed(), k.field("sysfrm_kd").trimmed()});
  return firmalar;
}

std::optional<FirmaKaydi> Firma_Kaydi_Ac(Oturum& oturum, const std::string& ad) {
  oturum.Son_Hata.clear();
  auto bulunan = satirlar(oturum, "SELECT * FROM sysfrmlng where sysfrm_dbnm=" + tirnakli(session::Trim(ad)));
  // The column's collation may hold other names for the same.
  for (FirmaKaydi& kayit : bulunan)
    if (kayit.sysfrm_dbnm == session::Trim(ad)) return std::move(kayit);
  if (oturum.Son_Hata.empty()) oturum.Son_Hata = "\"" + ad + "\" adında bir firma tanımlı değil.";
  return std::nullopt;
}

std::vector<FirmaKaydi> Firma_Kayitlari(Oturum& oturum, const std::vector<std::string>& adlar) {
  oturum.Son_Hata.clear();
  std::string liste;
  for (const std::string& ad : adlar) liste += (liste.empty() ? "" : ",") + tirnakli(session::Trim(ad));
  std::vector<FirmaKaydi> bulunan =
      satirlar(oturum, "SELECT * FROM sysfrmlng WHERE sysfrm_dbnm IN (" + liste + ")");
  std::vector<FirmaKaydi> sonuc;
  for (const std::string& ad : adlar) {
    const auto at = std::ranges::find_if(
        bulunan, [&](const FirmaKaydi& k) { return k.sysfrm_dbnm == session::Trim(ad); });
    if (at == bulunan.end()) {
      if (oturum.Son_Hata.empty()) oturum.Son_Hata = "\"" + ad + "\" adında bir firma tanımlı değil.";
      return {};
    }
    sonuc.push_back(*at);
  }
  return sonuc;
}

std::vector<ParametreFarki> farklar(const std::vector<db::Value>& eski, const std::vector<db::Value>& yeni) {
  std::vector<ParametreFarki> sonuc;
  const auto tablo = parametreler();
  for (std::size_t i = 0; i < tablo.size(); ++i)
    if (!ayniDeger(tablo[i], eski[i], yeni[i])) sonuc.push_back({&tablo[i], eski[i], yeni[i]});
  return sonuc;
}

KayitSonucu Parametre_Kaydet(Oturum& oturum, FirmaKaydi& kayit, const std::vector<db::Value>& yeni,
                             bool uzerine) {
  const auto degisen = farklar(kayit.degerler, yeni);
  if (degisen.empty()) return {true, {}, {}};
  std::string atamalar, kosullar;
  for (const ParametreFarki& fark : degisen)
    atamalar +=
        (atamalar.empty() ? "" : ",") + std::string(fark.parametre->sutun) + "=" + db::literal(fark.yeni);
  const std::string deyim =
      "UPDATE sysfrmlng SET " + atamalar + " WHERE sysfrm_ID=" + std::to_string(kayit.sysfrm_ID);
  const auto tablo = parametreler();
  for (std::size_t i = 0; i < tablo.size(); ++i) kosullar += " AND " + kosul(tablo[i], kayit.degerler[i]);
  try {
    if (!uzerine && oturum.Baglanti->execute(deyim + kosullar) > 0) {
      kayit.degerler = yeni;
      return {true, {}, {}};
    }
    // No row was as it had been read.
    auto simdiki =
        satirlar(oturum, "SELECT * FROM sysfrmlng WHERE sysfrm_ID=" + std::to_string(kayit.sysfrm_ID));
    if (simdiki.empty()) return {false, "Firma kaydı bulunamadı: firma bu arada silinmiş olabilir.", {}};
    if (!uzerine) {
      auto aradaki = farklar(kayit.degerler, simdiki.front().degerler);
      if (!aradaki.empty()) return {false, {}, std::move(aradaki)};
    }
    oturum.Baglanti->execute(deyim);
    for (const ParametreFarki& fark : degisen)
      simdiki.front().degerler[static_cast<std::size_t>(fark.parametre - tablo.data())] = fark.yeni;
    kayit = std::move(simdiki.front());
    return {true, {}, {}};
  } catch (const db::SqlError& hata) {
    return {false, hata.what(), {}};
  }
}

std::vector<db::Value> kopyalanan(const FirmaKaydi& kaynak, const FirmaKaydi& hedef,
                                  const std::vector<const Parametre*>& secilen) {
  std::vector<db::Value> sonuc = hedef.degerler;
  const auto tablo = parametreler();
  for (std::size_t i = 0; i < tablo.size(); ++i) {
    const bool alinir = secilen.empty() ? tablo[i].tur != ParametreTuru::Ambar
                                        : std::ranges::find(secilen, &tablo[i]) != secilen.end();
    if (alinir) sonuc[i] = kaynak.degerler[i];
  }
  return sonuc;
}

bool Emanet_Ambari_Hareketli(Oturum& oturum, const std::string& ambarNo) {
  if (ambarNo.empty()) return false;
  db::Recordset kayitlar;
  return session::Sorgu_Ac2(oturum, kayitlar,
                            "SELECT * FROM STOKHAREKET WHERE (Islem_Tipi='Emanet Alım'OR Islem_Tipi='Emanet "
                            "Teslim') AND  Ambar_No=" +
                                ambarNo) == 0 &&
         kayitlar.state() == db::State::Open && !kayitlar.eof();
}

}  // namespace settings
