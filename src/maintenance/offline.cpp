#include "maintenance/offline.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "catalog/katalog.h"
#include "session/metin.h"
#include "session/sayi.h"
#include "session/statements.h"
#include "session/tarih.h"

namespace maintenance {

namespace {

using session::Oturum;
using A = OfflineAyarlari;

constexpr std::array<OfflineAlani, 10> alanlar = {{
    {"Sube_Kodu", "Sube Kodu", &A::Sube_Kodu},
    {"Merkez_IP", "Merkez Bilgisayar IP Adresi", &A::Merkez_IP},
    {"Merkez_Adi", "Merkez Bilgisayar Adı", &A::Merkez_Adi},
    {"MerkezSa", "Merkez SQL Kullanıcı Adı", &A::MerkezSa},
    {"MerkezSaSifre", "Merkez SQL Kullanici Şifresi", &A::MerkezSaSifre, OfflineTuru::Sifre},
    {"MerkezFirma", "Merkez Bilgisayar Firması", &A::MerkezFirma},
    {"SonTransferFirma", "", &A::SonTransferFirma, OfflineTuru::Metin, false},
    {"SonAlimTarih", "Son Bilgi Alım Tarihi", &A::SonAlimTarih, OfflineTuru::Tarih},
    {"SonAlimSaat", "Son Bilgi Alım Saati", &A::SonAlimSaat, OfflineTuru::Saat},
    {"GonAralik", "Bilgi Gönderme Aralığı", &A::GonAralik, OfflineTuru::Sayi},
}};

constexpr std::string_view sql = "SELECT * FROM OFFLINEAYARLAR";
constexpr std::size_t tarihBoyu = 10, saatBoyu = 8;

std::string saatMetni(const db::DateTime& t) {
  std::array<char, 16> metin{};
  std::snprintf(metin.data(), metin.size(), "%02d:%02d:%02d", t.hour, t.minute, t.second);
  return metin.data();
}

bool saatOku(std::string_view metin, db::DateTime& saat) {
  if (metin.size() != saatBoyu || metin[2] != ':' || metin[5] != ':') return false;
  const auto sayi = [&](std::size_t yer, int ust, int& hedef) {
    const char* bas = metin.data() + yer;
    const auto [son, hata] = std::from_chars(bas, bas + 2, hedef);
    return hata == std::errc() && son == bas + 2 && hedef >= 0 && hedef <= ust;
  };
  return sayi(0, 23, saat.hour) && sayi(3, 59, saat.minute) && sayi(6, 59, saat.second);
}

std::string okunan(const OfflineAlani& alan, const db::Value& deger) {
  const auto* an = deger.as<db::DateTime>();
  const std::string metin = deger.trimmed();
  switch (alan.tur) {
    case OfflineTuru::Tarih:
      if (an) return session::tarihYaz(*an);
      return metin.empty() ? "01/01/1900" : metin;
    case OfflineTuru::Saat:
      if (an) return saatMetni(*an);
      if (metin.empty()) return "00:00:01";
      return metin.size() > saatBoyu ? metin.substr(metin.size() - saatBoyu) : metin;
    default:
      return metin;
  }
}

bool tarihSutunu(const db::FieldInfo& field) {
  return field.type == db::FieldType::DateTime || field.type == db::FieldType::SmallDateTime;
}

// A number or a date in a column of its kind, else the text.
db::Value yazilan(const OfflineAlani& alan, const std::string& metin, const db::FieldInfo& field) {
  db::DateTime an;
  switch (alan.tur) {
    case OfflineTuru::Tarih:
      if (tarihSutunu(field) && session::tarihOku(metin, an)) return an;
      return metin;
    case OfflineTuru::Saat: {
      const std::string saat = metin.size() > saatBoyu ? metin.substr(metin.size() - saatBoyu) : metin;
      if (tarihSutunu(field) && saatOku(saat, an)) return an;
      return saat;
    }
    case OfflineTuru::Sayi: {
      std::string sayi = session::Trim(metin);
      if (!session::sayiMi(sayi)) sayi = "0";
      std::erase(sayi, '.');
      if (const auto virgul = sayi.find(','); virgul != std::string::npos) sayi[virgul] = '.';
      return std::strtod(sayi.c_str(), nullptr);
    }
    default:
      return session::Trim(metin);
  }
}

}  // namespace

std::span<const OfflineAlani> offlineAlanlari() {
  return alanlar;
}

OfflineAcilis Offline_Ac(Oturum& oturum, OfflineAyarlari& ayarlar) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  try {
    oturum.Katalog_Adi = catalog::catalogDatabase;
    session::Katalog_Bagla(oturum, oturum.Katalog_Adi);
    kayitlar.open(*oturum.Baglanti, "SELECT * FROM sysobjects where name='OFFLINEAYARLAR'");
    if (kayitlar.eof()) {
      oturum.kutular->message(
          "Bilgisayarınıza Kurulmuş Olan Korvena Offline Çalışan bir Korvena Programı Değildir.\n"
          "Eğer İsteğiniz Buysa Lütfen Program Satıcınızla Görüşünüz.");
      return OfflineAcilis::SubeDegil;
    }
    kayitlar.open(*oturum.Baglanti, sql);
    for (const OfflineAlani& alan : alanlar) {
      const int sira = kayitlar.fieldIndex(alan.column);
      ayarlar.*alan.metin = okunan(alan, kayitlar.eof() || sira < 0 ? db::Value() : kayitlar.field(sira));
    }
    ayarlar.OtoGon =
        !kayitlar.eof() && kayitlar.fieldIndex("OtoGon") >= 0 && kayitlar.field("OtoGon").boolean();
    return OfflineAcilis::Acik;
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    return OfflineAcilis::Baglanamadi;
  }
}

std::string_view Offline_Kontrol(Oturum& oturum, const OfflineAyarlari& ayarlar) {
  oturum.Son_Hata.clear();
  db::DateTime an;
  if (ayarlar.SonAlimTarih.size() != tarihBoyu || !session::tarihMi(ayarlar.SonAlimTarih)) {
    oturum.Son_Hata =
        "Lütfen Son Bilgi Alım Tarihini gg/aa/yyyy Formatında Geçerli Bir Tarih Olarak Giriniz.";
    return "SonAlimTarih";
  }
  if (!saatOku(ayarlar.SonAlimSaat, an)) {
    oturum.Son_Hata = "Lütfen Son Bilgi Alım Saatini SS/dd/ss Formatında Geçerli Bir saat Olarak Giriniz.";
    return "SonAlimSaat";
  }
  return {};
}

bool Offline_Kaydet(Oturum& oturum, const OfflineAyarlari& ayarlar) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  try {
    session::Katalog_Bagla(oturum, std::string(catalog::catalogDatabase));
    kayitlar.open(*oturum.Baglanti, sql, db::Cursor::Keyset, db::Lock::BatchOptimistic);
    // The table marks a branch; its first settings make the row.
    if (kayitlar.eof()) kayitlar.addNew();
    for (const OfflineAlani& alan : alanlar) {
      const int sira = kayitlar.fieldIndex(alan.column);
      if (!alan.yazilir || sira < 0) continue;
      kayitlar.set(alan.column,
                   yazilan(alan, ayarlar.*alan.metin, kayitlar.fields()[static_cast<std::size_t>(sira)]));
    }
    kayitlar.set("OtoGon", ayarlar.OtoGon);
    kayitlar.updateBatch();
    return true;
  } catch (const db::SqlError& hata) {
    kayitlar.close();
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    return false;
  }
}

}  // namespace maintenance
