// The company card: the rows that it writes, its bars, how it opens; the schema that it runs.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "company/base_schema.h"
#include "company/kart_sunucusu.h"
#include "company/schema/schema.h"
#include "support/temp_folder.h"

namespace {

using namespace kart_testi;
using company::FirmaKarti;

// Columns of an INSERT statement with their values as SQL.
std::map<std::string, std::string> satir(const std::string& insert) {
  const auto parcala = [](std::string_view text) {
    std::vector<std::string> out(1);
    bool quoted = false;
    for (const char c : text) {
      quoted ^= c == '\'';
      if (c == ',' && !quoted)
        out.emplace_back();
      else if (c != '[' && c != ']')
        out.back() += c;
    }
    return out;
  };
  const std::size_t open = insert.find('('), close = insert.find(')', open),
                    values = insert.find('(', close) + 1;
  const auto kolonlar = parcala(std::string_view(insert).substr(open + 1, close - open - 1));
  const auto degerler = parcala(std::string_view(insert).substr(values, insert.rfind(')') - values));
  std::map<std::string, std::string> out;
  for (std::size_t i = 0; i < std::min(kolonlar.size(), degerler.size()); ++i) out[kolonlar[i]] = degerler[i];
  EXPECT_EQ(kolonlar.size(), degerler.size());
  return out;
}

std::vector<std::string> sozcukler(const std::string& text) {
  std::istringstream in(text);
  return {std::istream_iterator<std::string>(in), {}};
}

TEST(FirmaKarti, RowsOfANewCompanyAreWrittenWhole) {
  KartSunucusu s;
  FirmaKarti kart = gecerliKart();
  kart.Sehir = " İZMİR ";
  EXPECT_TRUE(company::Kaydet(s.oturum, kart));
  const std::string bas = db::literal(db::DateTime{2012, 1, 1}),
                    bit = db::literal(db::DateTime{2012, 12, 31});
  std::map<std::string, std::string> beklenen = {
      {"sysfrm_nm", "'Örnek Ticaret'"},
      {"sysfrm_dbnm", "'ORNEK2012'"},
      {"sysfrm_kd", "'00001'"},
      {"Mali_Yil_Baslangic", bas},
      {"KilitBasTarih", bas},
      {"Mali_Yil_Bitis", bit},
      {"KilitBitTarih", bit},
      {"sehir", "'İZMİR'"},
      {"DBVRSYN", "'2012.002'"},
      {"YR_DT", db::literal(db::DateTime{2012, 3, 14})},
      {"HesapTakipTipi", "'Aylık'"},
      {"TransferFirma", "''"},
      {"DipNotTahsilat", "'ÖDEMENİZ İÇİN TEŞEKKÜR EDERİZ'"},
      {"DipNotAlisVeris", "'MAĞAZAMIZI TERCİH ETTİĞİNİZ İÇİN TEŞEKKÜR EDERİZ'"}};
  const std::pair<const char*, const char*> sayilar[] = {
      {"2", "AnaParaVirgul BirimFiyatVirGul DovizVirgul DovizBirimFiyatVirgul"},
      {"4", "KurVirgul"},
      {"18", "DefKDV"},
      {"15", "IrsTakipSuresi"},
      {"3", "SatisYapma TahsilatYapma"},
      {"16777215", "StokMinRenk StokMaxRenk StokSFRRenk"},
      {"1",
       "PosVar SatirISK_Dahil FaturaAltiISK_Dahil Masraflar_Dahil SecimdeGelecekMiktar KasaHareketListeTipi "
       "KasiyerStokListeTipi MuhasebelesecekFisler MuhBenzerSatirBirlestir MasraflarSatistaKardir "
       "VadeFarkiTipi Yazarkasa"},
      {"0",
       "DovizVar RenkBedenVar BarkodVar EmanetVar OnceEmanetAl HareketKilit OzelRenkli Renk_Ozel Renk_Doviz "
       "Renk_TL StokMinSeviye StokMaxSeviye StokSFRSeviye StokSeviyeOzelKontrol KDV_Dahildir "
       "CariStokFiyatBagli FarkliISKBirlessin PuanVar PesinIndirimi AlistaFiyatDegis SatistaFiyatDegis "
       "OnlineMuhasebe AmbarKarNoktasidir AmbarBakiyesiGoster AmbarYetkiyeBagli IsyeriYetkiyeBagli MuafGun "
       "VadeFarki SatisVadeFarki KrediLimiti Pesinat TaksitSayisi IhtarSayisi TahsilatIhtarSayisi "
       "FarkliFiyatBirlessin TaksitliSatisModu"}};
  for (const auto& [deger, kolonlar] : sayilar)
    for (const std::string& kolon : sozcukler(kolonlar)) beklenen[kolon] = deger;
  ASSERT_TRUE(s.sent("INSERT INTO [sysfrmlng]"));
  const auto metin = [](const std::map<std::string, std::string>& row) {
    std::string out;
    for (const auto& [kolon, deger] : row) out += kolon + "=" + deger + "\n";
    return out;
  };
  EXPECT_EQ(metin(satir(s.server.statements[s.first("INSERT INTO [sysfrmlng]")])), metin(beklenen));
  // Each right is a text of ones, as long as its column.
  std::map<std::string, std::string> haklar = {{"Firma_ID", "'7'"},           {"Kullanici_ID", "'1'"},
                                               {"Kullanici_Ad", "'KORVENA'"}, {"Kullanici_Sifre", "'ÃÆÉ'"},
                                               {"Kullanici_Fiyat", "0"},      {"KS_Degistirsin", "1"},
                                               {"CR_Degistirsin", "1"}};
  const std::pair<int, const char*> genislikler[] = {
      {1,
       "KASA KB KR CARI CARB CARR STOK STB STR FATURA FR BORDRO CEKL SENETL BORR URETIMEMIR URETIMRECETE UR "
       "DI DT DR BANKA BB BR SIPARIS SIPR SATR FKG Def_Isyeri_Kod"},
      {2, "SIPHE SIPHD SIPHI SIPHS"},
      {4, "KK CAROS STK STP URK UEK BK"},
      {5, "CARHE CARHD CARHI CARHS CARK"},
      {6, "BHE BHD BHI BHS FP"},
      {7, "FHE FHD FHI FHS"},
      {14, "KHE KHD KHI KHS"},
      {16, "STHE STHD STHI STHS"},
      {23, "BORHE BORHD BORHI BORHS"}};
  for (const auto& [genislik, kolonlar] : genislikler)
    for (const std::string& kolon : sozcukler(kolonlar))
      haklar[kolon] = "'" + std::string(static_cast<std::size_t>(genislik), '1') + "'";
  EXPECT_EQ(metin(satir(s.server.statements[s.first("INSERT INTO Kullanici")])), metin(haklar));
}

TEST(FirmaKarti, TheWholeBarTellsSchemaAndChart) {
  KartSunucusu s;
  s.platform.folder = ZEMBERA_DATA;
  FirmaKarti kart = gecerliKart();
  kart.StandartHesapPlani = true;
  std::vector<std::int64_t> shares;
  company::Kaydet(s.oturum, kart);
  for (const auto& [value, maximum] : s.progress.wholes) shares.push_back(value * 1000 / maximum);
  EXPECT_TRUE(std::ranges::is_sorted(shares));
  ASSERT_GT(shares.size(), 230U);
  EXPECT_LT(shares[229], 700) << "the schema alone is not the whole";
  s.progress.wholes.clear();
  kart.StandartHesapPlani = false;
  company::Kaydet(s.oturum, kart);
  EXPECT_EQ(s.progress.wholes.back().first, s.progress.wholes.back().second);
}

TEST(FirmaKarti, FileInTheDataFolderStopsTheCreation) {
  KartSunucusu s;
  const support::TempFolder temporary;
  const auto& folder = temporary.path;
  std::ofstream(folder / "ORNEK2012.mdf") << "x";
  s.oturum.Veri_Klasoru = folder.string();
  FirmaKarti kart = gecerliKart();
  EXPECT_TRUE(company::Kaydet(s.oturum, kart));
  EXPECT_EQ(
      s.oturum.Son_Hata,
      "Bu Firma SQL SERVER Tarafından Tanınmıyor Ama Dosyası var.\n"
      "Dosya için Lütfen" +
          folder.string() +
          "\\ORNEK2012.mdf Yoluna Bakınız.\n"
          "Eğer Bu Firmayı Oluşturmak istiyorsanız.Aşağıdaki Adımları Uygulayınız.\n"
          "1- Bu Dosyayı Yukarıda Belirtilen Yoldan Başka Bir Yere Alınız.\n"
          "2- Firmayı Oluşturunuz.\n"
          "3- Muhtemelen Var Olan Dosya Bir Korven Firmasının Bilgilerini İçerdiği İçin.\n"
          "   Bu Bilgileri Geri alabilmek SQL SERVER'i Durdurduktan Sonra Buradn Aldığınız Dosyayı Üzerine "
          "Kopyalayınız.\n\nYADA Lütfen Proram Satıcınızı Arayınız.");
  EXPECT_FALSE(s.sent("CREATE DATABASE"));
}

TEST(FirmaKarti, OpensForEachUse) {
  KartSunucusu s;
  FirmaKarti kart;
  auto durum = company::Firma_Karti_Ac(s.oturum, kart);
  EXPECT_EQ(kart.Bas_Tar, "01/01/2012");
  EXPECT_EQ(kart.Bit_Tar, "31/12/2012");
  EXPECT_FALSE(durum.Firma_Adi_Salt);
  EXPECT_FALSE(durum.Frame2_Gorunur);

  s.server.rows("SELECT * FROM sysfrmlng WHERE sysfrm_ID=3",
                {"sysfrm_nm", "sysfrm_dbnm", "sysfrm_kd", "Mali_Yil_Baslangic", "Mali_Yil_Bitis", "Adres",
                 "Sehir", "Ulke", "Tel1", "Tel2", "Fax", "Vergi_Dairesi", "Vergi_Numarasi"},
                {{"Örnek", "ORNEK ", "00003 ", db::DateTime{2012, 2, 1}, db::Value(), "Yol 1  ", db::Value(),
                  "", "", "", "", "", ""}});
  s.server.rows("FROM ORNEK.dbo.MUHKART", {"MHesap_Kod"}, {{"100"}});
  s.oturum.Yeni_Kayit = false;
  s.oturum.Inceleme = true;
  s.oturum.Secili_ID = 3;
  durum = company::Firma_Karti_Ac(s.oturum, kart);
  EXPECT_EQ(kart.Firma_Kodu, "00003");
  EXPECT_EQ(kart.Bas_Tar, "01/02/2012");
  EXPECT_EQ(kart.Bit_Tar, "");
  EXPECT_EQ(kart.Adres, "Yol 1");
  EXPECT_EQ(s.oturum.Eski_Firma_Adi, "ORNEK");
  EXPECT_FALSE(durum.StandartHesapPlani_Acik);
  EXPECT_FALSE(durum.Kayit_Acik);
  EXPECT_EQ(durum.DurumPanel, "  Escape (Çıkış)");
  EXPECT_TRUE(durum.Firma_Adi_Salt && durum.Frame2_Gorunur);
  EXPECT_EQ(durum.Uyari, "");
  EXPECT_EQ(s.server.statements,
            (std::vector<std::string>{"SELECT * FROM sysfrmlng WHERE sysfrm_ID=3", "SELECT DB_ID('ORNEK')",
                                      "SELECT TOP 1 * FROM ORNEK.dbo.MUHKART"}));
  s.server.rows("SELECT DB_ID", {"id"}, {{db::Value()}});
  durum = company::Firma_Karti_Ac(s.oturum, kart);
  EXPECT_EQ(durum.Uyari, "\"ORNEK\" veritabanı sunucuda yok.");
  EXPECT_FALSE(durum.StandartHesapPlani_Acik);
  EXPECT_EQ(company::kartAlani("Adres").text, &FirmaKarti::Adres);
}

TEST(FirmaTablolari, FillsTheMarksAndTellsItsProgress) {
  support::FakeSurroundings s;
  s.oturum.Baglanti = s.factory.make("");
  EXPECT_EQ(company::Firma_Tablolari_Olustur(s.oturum), company::SemaYazimi::Tamam);
  const auto& sent = s.server.statements;
  EXPECT_TRUE(std::none_of(sent.begin(), sent.end(), [](const std::string& t) {
    return t.find("<date>") != std::string::npos || t.find("<time>") != std::string::npos;
  }));
  EXPECT_NE(std::find(sent.begin(), sent.end(),
                      "UPDATE FIYATTANIM SET YR_Kullanici=1,YR_Tarih='03/14/2012',YR_Saat='15:09:26',"
                      "Deg_Kullanici=1,Deg_Tarih='03/14/2012',Deg_Saat='15:09:26'"),
            sent.end());
  EXPECT_EQ(s.progress.texts.size(), 127u + 80u + 23u + 1u);
  std::size_t at = 0;  // each table with its rows and indexes at once behind it
  for (const std::string& name : company::schema::tableOrder(company::schema::Stage::Base)) {
    const auto& table = *company::schema::table(name);
    EXPECT_TRUE(sent.at(at).starts_with("CREATE TABLE " + name + " (")) << name;
    at += 1 + table.firstRows.size();
    for (const std::string& index : table.indexes) EXPECT_EQ(sent.at(at++), index);
  }
  EXPECT_EQ(sent.size() - at, 80u + 23u);
  EXPECT_EQ(s.progress.steps.back().first, s.progress.steps.back().second);
}

TEST(FirmaTablolari, GoesOnBehindARefusedStatementButNotWithoutAServer) {
  support::FakeSurroundings s;
  s.oturum.Baglanti = s.factory.make("");
  s.server.fail("CREATE VIEW SATICIANALIZ", db::SqlError(db::ErrorKind::StatementRefused, 208, "no"));
  EXPECT_EQ(company::Firma_Tablolari_Olustur(s.oturum), company::SemaYazimi::Tamam);
  EXPECT_EQ(s.boxes.shown.size(), 2u);
  s.server.fail("CREATE TABLE STOKKART", db::SqlError(db::ErrorKind::LinkBroken, 0, "gone"));
  EXPECT_EQ(company::Firma_Tablolari_Olustur(s.oturum), company::SemaYazimi::Kesildi);
  EXPECT_EQ(s.boxes.shown.size(), 4u);
}

}  // namespace
