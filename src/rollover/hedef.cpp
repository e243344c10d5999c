#include "rollover/hedef.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "catalog/create_database.h"
#include "catalog/katalog.h"
#include "company/base_schema.h"
#include "company/schema/schema.h"
#include "company/upgrade/guncelle.h"
#include "platform/folders.h"
#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rollover {

namespace {

using session::Oturum;

const char* const yarimIsareti = "DEVIR_YARIM";
const char* const adVar = "Bu İsimle Bir Firma veya Database Zaten Var.";

std::string dosyaVarMetni(const std::string& yol) {
  return "Bu Firma SQL SERVER Tarafından Tanınmıyor Ama Dosyası var.\nDosya için Lütfen\n" + yol +
         ".mdf Yoluna Bakınız.\nEğer Bu Firmayı Oluşturmak istiyorsanız.Aşağıdaki Adımları Uygulayınız.\n1- "
         "Bu Dosyayı "
         "Yukarıda Belirtilen Yoldan Başka Bir Yere Alınız.\n2- Firmayı Oluşturunuz.\n3- Muhtemelen Var Olan "
         "Dosya Bir Korven "
         "Firmasının Bilgilerini İçerdiği İçin.\n   Bu Bilgileri Geri alabilmek SQL SERVER'i Durdurduktan "
         "Sonra Buradn Aldığınız "
         "Dosyayı Üzerine Kopyalayınız.\nYADA Lütfen Proram Satıcınızı Arayınız.";
}

std::int64_t sayi(db::Connection& c, const std::string& sql) {
  const auto rows = c.query(sql);
  return rows && rows->count() > 0 ? rows->value(0, 0).integer() : 0;
}

// What a run that broke off has left under that name: gone again. False when the name belongs to someone.
bool kalintiyiKaldir(Oturum& o, const std::string& ad) {
  if (session::Firma_Bul(*o.Baglanti4, ad)) return false;
  static constexpr std::array<std::string_view, 4> sunucununki = {"MASTER", "TEMPDB", "MODEL", "MSDB"};
  const std::string buyuk = session::Buyuk_Harf(ad);
  if (std::find(sunucununki.begin(), sunucununki.end(), buyuk) != sunucununki.end() ||
      buyuk == "DEFİNATİON_DB")
    return false;
  const std::string nesneler = "SELECT COUNT(*) FROM " + ad + ".dbo.sysobjects WHERE ";
  const bool isaretli = sayi(*o.Baglanti4, nesneler + "name='" + yarimIsareti + "' AND type='U'") > 0;
  if (!isaretli) {
    // Broken off before its mark was set: it holds nothing.
    if (sayi(*o.Baglanti4, nesneler + "type IN ('U','V')") > 0) return false;
    if (!o.kutular->ask(
            "\"" + ad +
            "\" adında, firma listesinde olmayan ve içi boş bir veritabanı var; yarıda kalmış bir "
            "devirden kalmış olabilir.\nSilinip yeniden oluşturulsun mu?"))
      return false;
  }
  o.Baglanti4->execute("DROP DATABASE " + ad);
  return true;
}

std::string adiSina(Oturum& o, const std::string& ad) {
  session::Veritabani_Bagla4(o, o.SQL_Surum, o.SQL_Login, o.SQL_Sifre, "master", o.Server_Adi);
  if (sayi(*o.Baglanti4, "SELECT COUNT(*) FROM  sysdatabases where name=" + tirnakli(ad)) > 0 &&
      !kalintiyiKaldir(o, ad))
    return adVar;
  if (session::Firma_Bul(*o.Baglanti4, ad)) return adVar;
  std::error_code hata;
  if (std::filesystem::exists(platform::hostPath(catalog::dataFile(ad, o.Veri_Klasoru)), hata))
    return dosyaVarMetni(o.Veri_Klasoru + "\\" + ad);
  return "";
}

void semayiKur(Oturum& o, const std::string& ad) {
  session::Katalog_Bagla(o, ad);
  o.Baglanti->execute("CREATE TABLE " + std::string(yarimIsareti) + " (ID INT NULL)");
  o.Son_Hata.clear();
  const company::SemaYazimi yazim = company::Firma_Tablolari_Olustur(o);
  if (yazim == company::SemaYazimi::Vazgecildi) throw DevirIptal{};
  if (yazim != company::SemaYazimi::Tamam || !o.Son_Hata.empty())
    throw DevirKesildi("Firma tabloları oluşturulamadı: " + o.Son_Hata);
  const auto guncelleme = company::upgrade::Veritabani_Guncelle(o, ad);
  if (!guncelleme.tamamlandi) throw DevirKesildi("Firma güncellenemedi: " + guncelleme.hata);
}

}  // namespace

std::string Firmayi_Olustur(Oturum& o, const DevirGirdisi& girdi) {
  const std::string ad = session::Trim(girdi.taraf[1].Firma_Adi);
  std::string hata = adiSina(o, ad);
  if (!hata.empty()) return hata;
  o.Baglanti4->execute(catalog::createDatabaseStatement(ad, o.Veri_Klasoru));
  try {
    semayiKur(o, ad);
  } catch (const DevirIptal&) {
    firmayiKaldir(o, ad);
    session::Katalog_Bagla(o, std::string(catalog::catalogDatabase));
    throw;
  } catch (const std::exception& e) {
    hata = e.what();
  }
  session::Katalog_Bagla(o, std::string(catalog::catalogDatabase));
  if (!hata.empty()) firmayiKaldir(o, ad);
  return hata;
}

void firmayiKaldir(Oturum& o, const std::string& ad) {
  o.Kayitlar.close();
  o.Kaynak_Baglanti.reset();
  o.Baglanti4.reset();
  try {
    session::Veritabani_Bagla4(o, o.SQL_Surum, o.SQL_Login, o.SQL_Sifre, "master", o.Server_Adi);
    o.Baglanti4->execute("DROP DATABASE " + ad);
  } catch (const db::SqlError&) {
    // The first failure is on its way; the next run takes the rest away by its mark.
  }
  o.Baglanti4.reset();
}

namespace {

// Copied from the source's row.
constexpr std::array<std::string_view, 80> kopyalanan = {
    "Adres",
    "sehir",
    "Ulke",
    "Tel1",
    "Tel2",
    "Fax",
    "Vergi_Dairesi",
    "Vergi_Numarasi",
    "AnaParaVirgul",
    "BirimFiyatVirGul",
    "DovizVirgul",
    "DovizBirimFiyatVirgul",
    "KurVirgul",
    "DovizVar",
    "RenkBedenVar",
    "PosVar",
    "BarkodVar",
    "HareketKilit",
    "OzelRenkli",
    "Renk_Ozel",
    "Renk_Doviz",
    "Renk_TL",
    "SatirISK_Dahil",
    "FaturaAltiISK_Dahil",
    "Masraflar_Dahil",
    "StokMinSeviye",
    "StokMinRenk",
    "StokMaxSeviye",
    "StokMaxRenk",
    "StokSFRSeviye",
    "StokSFRRenk",
    "StokSeviyeOzelKontrol",
    "KDV_Dahildir",
    "CariStokFiyatBagli",
    "FarkliFiyatBirlessin",
    "FarkliISKBirlessin",
    "TaksitliSatisModu",
    "PuanVar",
    "Ana_Birim",
    "Birim2",
    "Birim3",
    "AktifBirim",
    "DefKDV",
    "PesinIndirimi",
    "SecimdeGelecekMiktar",
    "IrsTakipSuresi",
    "KasaHareketListeTipi",
    "KasiyerStokListeTipi",
    "AlistaFiyatDegis",
    "SatistaFiyatDegis",
    "MuhasebelesecekFisler",
    "OnlineMuhasebe",
    "MuhBenzerSatirBirlestir",
    "TransferFirma",
    "AmbarBakiyesiGoster",
    "AmbarKarNoktasidir",
    "AmbarYetkiyeBagli",
    "IsyeriYetkiyeBagli",
    "MasraflarSatistaKardir",
    "KrediLimiti",
    "DipNotAlisveris",
    "DipNotTahsilat",
    "Dotmatrix",
    "MakbuzSol",
    "MakbuzUst",
    "MakbuzOr",
    "AlisverisNusha",
    "TahsilNusha",
    "TaksitSayisi",
    "VadeFarki",
    "VadeFarkiTipi",
    "HesapTakipTipi",
    "MuafGun",
    "Pesinat",
    "SatisVadeFarki",
    "SatisYapma",
    "IhtarSayisi",
    "TahsilatIhtarSayisi",
};

bool katalogKolonu(const std::vector<db::FieldInfo>& alanlar, std::string_view ad) {
  const std::string aranan = session::Buyuk_Harf(ad);
  return std::any_of(alanlar.begin(), alanlar.end(),
                     [&](const auto& f) { return session::Buyuk_Harf(f.name) == aranan; });
}

std::string gunSql(const db::DateTime& t) {
  db::DateTime gun = t;
  gun.hour = gun.minute = gun.second = gun.millisecond = 0;
  return db::literal(db::Value(gun));
}

}  // namespace

void katalogaYaz(Baglam& b) {
  const DevirTarafi& hedef = b.g.taraf[1];
  const std::string tablo = Baglam::katalog("sysfrmlng"), bas = tarihSql(hedef.Bas_Tar),
                    bit = tarihSql(hedef.Bit_Tar);
  const auto alanlar = b.oku("SELECT * FROM " + tablo + " WHERE 1=0")->fields();
  std::string adlar =
      "sysfrm_nm,sysfrm_dbnm,sysfrm_kd,DBVRSYN,YR_DT,Mali_Yil_Baslangic,KilitBasTarih,Mali_Yil_Bitis,"
      "KilitBitTarih";
  std::string degerler = tirnakli(hedef.Firma_Unvani) + "," + tirnakli(hedef.Firma_Adi) + "," +
                         tirnakli(hedef.Firma_Kodu) + "," + tirnakli(b.o.Tanim_DB_Versiyon) + "," +
                         gunSql(b.o.saat->now()) + "," + bas + "," + bas + "," + bit + "," + bit;
  for (const std::string_view kolon : kopyalanan) {
    if (kolon.empty() || !katalogKolonu(alanlar, kolon)) continue;
    adlar += "," + std::string(kolon);
    degerler += ",s." + std::string(kolon);
  }
  // The block on collections is that on sales, as it has always been carried.
  adlar += ",TahsilatYapma";
  degerler += ",s.SatisYapma";
  b.yap("INSERT INTO " + tablo + " (" + adlar + ") SELECT " + degerler + " FROM " + tablo +
        " s WHERE s.sysfrm_ID=" + b.g.taraf[0].Firma_ID);
  const auto rows =
      b.oku("SELECT sysfrm_ID FROM " + tablo + " WHERE sysfrm_dbnm=" + tirnakli(hedef.Firma_Adi));
  if (rows->count() == 0) throw DevirKesildi("Yeni firma kataloğa yazılamadı.");
  b.hedefID = rows->value(0, 0).text();
  // The column's collation may hold names for one that are two databases.
  if (rows->count() > 1) b.hedefID = std::to_string(session::Firma_Bul(*b.o.Baglanti4, hedef.Firma_Adi)->id);
  // The database has been through the upgrade.
  b.yap("UPDATE " + tablo + " SET DBVRSYN=" + tirnakli(b.o.Firma_DB_Versiyon) +
        " WHERE sysfrm_ID=" + b.hedefID);
  b.yap("DROP TABLE " + std::string(yarimIsareti));
}

void Kullanici_Yetkilerini_Devret(Baglam& b) {
  const std::string baglanti = Baglam::katalog("sysusfrmlng"), tablo = Baglam::katalog("Kullanici"),
                    kaynak = b.g.taraf[0].Firma_ID;
  b.yap("INSERT INTO " + baglanti + " (sysfrm_ID,sysus_ID) SELECT " + b.hedefID + ",s.sysus_ID FROM " +
        baglanti + " s WHERE s.sysfrm_ID=" + kaynak);
  std::string adlar, degerler;
  const auto bos = b.oku("SELECT * FROM " + tablo + " WHERE 1=0");
  for (const db::FieldInfo& alan : bos->fields()) {
    if (alan.identity || alan.name == "ID") continue;
    const bool metin = alan.type == db::FieldType::Char || alan.type == db::FieldType::VarChar;
    const std::string kolon = "s.[" + alan.name + "]";
    adlar += (adlar.empty() ? "[" : ",[") + alan.name + "]";
    degerler += degerler.empty() ? "" : ",";
    if (alan.name == "Firma_ID")
      degerler += b.hedefID;
    else
      degerler += metin && alan.nullable ? "NULLIF(" + kolon + ",'')" : kolon;
  }
  // Of two rows of one user the last one stands.
  b.yap("INSERT INTO " + tablo + " (" + adlar + ") SELECT " + degerler + " FROM " + tablo +
        " s WHERE s.Firma_ID=" + kaynak + " AND s.ID=(SELECT MAX(x.ID) FROM " + tablo +
        " x WHERE x.Firma_ID=s.Firma_ID AND x.Kullanici_ID=s.Kullanici_ID) ORDER BY s.ID");
}

std::string eskiHedef(Baglam& b) {
  static constexpr std::array<std::string_view, 12> bakilan = {
      "STOKKART",   "CARIKART",        "KASAHAREKET",    "BANKAHAREKET", "STOKHAREKET", "ACILIS",
      "POSHAREKET", "PERSONELHAREKET", "SIPARISHAREKET", "CEKKART",      "SENETKART",   "BEDENSTANDARTLARI"};
  for (const std::string_view ad : bakilan) {
    const catalog::TableDef* tanim = company::schema::table(ad);
    const auto alanlar = b.hedefte(ad) ? b.oku("SELECT * FROM " + std::string(ad) + " WHERE 1=0")->fields()
                                       : std::vector<db::FieldInfo>{};
    for (const catalog::ColumnDef& kolon : tanim->columns) {
      if (kolon.dropped || katalogKolonu(alanlar, kolon.name)) continue;
      return "\"" + b.hedefAdi + "\" firmasının veritabanı eski bir yapıda (" + std::string(ad) + "." +
             kolon.name +
             " yok).\nÖnce firmayı güncelleyin (konsolda Güncelle ya da zembera-cli guncelle --ad " +
             b.hedefAdi + "), sonra devri yeniden başlatın.";
    }
  }
  return "";
}

}  // namespace rollover
