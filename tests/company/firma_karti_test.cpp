#include "company/firma_karti.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

#include "company/base_schema.h"
#include "company/kart_alanlari.h"
#include "company/schema/schema.h"
#include "support/fakes.h"
#include "support/temp_folder.h"

namespace {

using company::FirmaKarti;
using company::Kayit_Kontrol;

FirmaKarti gecerliKart() {
  FirmaKarti kart;
  kart.Firma_Adi = "ORNEK2012";
  kart.Firma_Kodu = "00001";
  kart.Firma_Unvani = "Örnek Ticaret";
  kart.Bas_Tar = "01/01/2012";
  kart.Bit_Tar = "31/12/2012";
  return kart;
}

struct KontrolDurumu {
  const char* name;
  std::string FirmaKarti::*alan;
  const char* deger;
  const char* baslangic;  // how Hata_Metni begins; "" for none
};

class KartKontrol : public testing::TestWithParam<KontrolDurumu> {};

TEST_P(KartKontrol, LeavesTheFirstFault) {
  FirmaKarti kart = gecerliKart();
  kart.Hata_Metni = "old";
  kart.*GetParam().alan = GetParam().deger;
  Kayit_Kontrol(kart);
  if (*GetParam().baslangic == '\0') {
    EXPECT_EQ(kart.Hata_Metni, "");
  } else {
    EXPECT_EQ(kart.Hata_Metni.rfind(GetParam().baslangic, 0), 0u) << kart.Hata_Metni;
  }
}

const char* const dateFault = "Firmamnın Mali Başlangıç Tarihi Girilmemiş Yada Yanlış Girilmiş";
constexpr auto adi = &FirmaKarti::Firma_Adi;
constexpr auto bas = &FirmaKarti::Bas_Tar;
constexpr auto bit = &FirmaKarti::Bit_Tar;

INSTANTIATE_TEST_SUITE_P(
    Kart, KartKontrol,
    testing::Values(
        KontrolDurumu{"Valid", adi, "ORNEK", ""}, KontrolDurumu{"NoStart", bas, "", dateFault},
        KontrolDurumu{"ShortStart", bas, "1/1/2012", dateFault},
        KontrolDurumu{"NoSuchDay", bas, "31/02/2012", dateFault},
        KontrolDurumu{"BeforeTheServersDates", bas, "31/12/1752", dateFault},
        KontrolDurumu{"FirstOfTheServersDates", bas, "01/01/1753", ""},
        KontrolDurumu{"NoEnd", bit, "  /  /    ",
                      "Firmamnın Mali Bitiş Tarihi Girilmemiş Yada Yanlış Girilmiş"},
        KontrolDurumu{"TextOrder", bit, "01/01/2011", "Baslangıç ve Bitiş Tarihini Düzeltiniz."},
        KontrolDurumu{"EarlierEndThatSortsLater", bit, "31/01/2001", ""},
        KontrolDurumu{"LaterEndThatSortsEarlier", bas, "15/01/2012", ""},
        KontrolDurumu{"NoCode", &FirmaKarti::Firma_Kodu, " ", "Firma Kodunu boş geçemezsiniz."},
        KontrolDurumu{"NoName", adi, "", "Database Adını boş geçemezsiniz."},
        KontrolDurumu{"NoTitle", &FirmaKarti::Firma_Unvani, "", "Firma Ünvanını boş geçemezsiniz."},
        KontrolDurumu{"Digit", adi, "9A", "Database Adı Numara ile Başlayamaz"},
        KontrolDurumu{"Blank", adi, "A B", "Database Adı içinde Boşluk Olamaz.\nDatabase Adı Harf ile"},
        KontrolDurumu{"Minus", adi, "A-B", "Database Adı içinde Eksi(+) İşareti Olamaz."},
        KontrolDurumu{"Slash", adi, "A/B", "Database Adı içinde Eksi(+) İşareti Olamaz."},
        KontrolDurumu{"Quote", adi, "A\"B", "Database Adı içinde ÇiftTırnak ( \") İşareti Olamaz."},
        KontrolDurumu{"FirstInOrder", adi, "A)B,C", "Database Adı içinde Virgül(,) Olamaz."},
        KontrolDurumu{"Semicolon", adi, "A;B", "Database Adı içinde Kullanılamayan Karakter Var.\nDatabase"},
        KontrolDurumu{"Bracket", adi, "A[B", "Database Adı içinde Kullanılamayan Karakter Var."},
        KontrolDurumu{"Tab", adi, "A\tB", "Database Adı içinde Kullanılamayan Karakter Var."},
        KontrolDurumu{"LeadingAt", adi, "@A", "Database Adı içinde Kullanılamayan Karakter Var."},
        KontrolDurumu{"Keyword", adi, "order",
                      "\"order\" SQL Server'ın ayrılmış bir sözcüğüdür; Database Adı"},
        KontrolDurumu{"BeginsLikeAKeyword", adi, "ORDERS", ""},
        KontrolDurumu{"LineEndInTitle", &FirmaKarti::Firma_Unvani, "A\nB",
                      "Firma Unvanı içinde satır sonu ya da"},
        KontrolDurumu{"Underscore", adi, "A_B", ""},
        KontrolDurumu{"ForeignLetter", adi, "AΩ", "Database Adı içinde Türkçe kod sayfasında (1254) olmayan"},
        KontrolDurumu{"ForeignTitle", &FirmaKarti::Firma_Unvani, "東京", "Firma Unvanı içinde Türkçe kod"},
        KontrolDurumu{"TurkishPasses", adi, "ŞİRKET", ""},
        KontrolDurumu{"WideText", &FirmaKarti::Sehir, "ÇĞİÖŞÜÇĞİÖŞÜÇĞİÖŞÜÇĞ", ""},
        KontrolDurumu{"TooWide", &FirmaKarti::Sehir, "ÇĞİÖŞÜÇĞİÖŞÜÇĞİÖŞÜÇĞİ", "Şehir en çok 20 karakter"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(KartKontrol, ForbiddenSignEndsWithBothHints) {
  FirmaKarti kart = gecerliKart();
  kart.Firma_Adi = "A'B";
  Kayit_Kontrol(kart);
  EXPECT_EQ(kart.Hata_Metni,
            "Database Adı içinde TekTırnak(') İşareti Olamaz.\n"
            "Database Adı Harf ile Başlar ve Harf ve Numara Dışında Noktalama İşaretleri ve Boşluk Gibi "
            "Karakterler Kulanılamaz.\nTürkçe Karakterler Kullanılamaz (Ş,Ç,Ö,Ü,İ,ı) ");
}

// A server that knows no company yet; the new row's id is 7.
struct KartSunucusu : support::FakeSurroundings {
  KartSunucusu() {
    std::vector<std::string> names;
    for (const auto& alan : company::kartAlanlari()) {
      names.emplace_back(alan.column);
    }
    for (const auto& [column, value] : company::yeniFirmaDegerleri()) {
      names.emplace_back(column);
    }
    for (const char* name : {"KilitBasTarih", "KilitBitTarih", "DBVRSYN", "YR_DT"}) {
      names.emplace_back(name);
    }
    server.rows("Select * from sysfrmlng", names, {});
    server.rows("SELECT sysfrm_ID FROM sysfrmlng", {"sysfrm_ID"}, {{7}});
    server.rows("SELECT * FROM sysuslng", {"sysus_nm", "sysus"}, {{"KORVENA        ", "ÃÆÉ"}});
    oturum.Yeni_Kayit = true;
    oturum.Tanim_DB_Versiyon = "2012.002";
    oturum.Veri_Klasoru = "/nowhere";
  }
  bool sent(std::string_view part) const { return first(part) != server.statements.size(); }
  std::size_t first(std::string_view part) const {
    return static_cast<std::size_t>(
        std::find_if(server.statements.begin(), server.statements.end(),
                     [&](const std::string& s) { return s.find(part) != std::string::npos; }) -
        server.statements.begin());
  }
};

TEST(FirmaKarti, NewCompanyGoesThroughItsStepsInOrder) {
  KartSunucusu s;
  FirmaKarti kart = gecerliKart();
  kart.Firma_Unvani = "Ali'nin Dükkanı";
  EXPECT_TRUE(company::Kaydet(s.oturum, kart));
  EXPECT_EQ(s.oturum.Son_Hata, "");
  EXPECT_TRUE(s.boxes.shown.empty());
  const char* const order[] = {"SELECT name FROM  sysdatabases where name='ORNEK2012'",
                               "CREATE DATABASE ORNEK2012 ON ( NAME = ORNEK2012,FILENAME = "
                               "'/nowhere\\ORNEK2012.mdf', SIZE = 10, MAXSIZE = UNLIMITED, FILEGROWTH = 10 ) "
                               " LOG ON ( NAME = 'ORNEK2012_log',  FILENAME = '/nowhere\\ORNEK2012_log.ldf', "
                               "SIZE = 5MB, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )",
                               "'Ali''nin Dükkanı'",
                               "INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (7,1)",
                               "INSERT INTO Kullanici ",
                               "CREATE TABLE AMBAR ",
                               "CREATE TABLE MUHASEBEMALITABLOHAREKET ",
                               "CREATE TRIGGER STOKUPDATE",
                               "CREATE TRIGGER MUHBAKIYEHESAPLASIL"};
  std::size_t before = 0;
  for (const char* part : order) {
    EXPECT_TRUE(s.sent(part)) << part;
    EXPECT_GE(s.first(part), before) << part;
    before = s.first(part);
  }
  EXPECT_EQ(s.oturum.Baglanti->parts().database, "master");
}

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
  const std::size_t open = insert.find('('), close = insert.find(") VALUES (");
  const auto kolonlar = parcala(std::string_view(insert).substr(open + 1, close - open - 1));
  const auto degerler = parcala(std::string_view(insert).substr(close + 10, insert.rfind(')') - close - 10));
  std::map<std::string, std::string> out;
  for (std::size_t i = 0; i < std::min(kolonlar.size(), degerler.size()); ++i) out[kolonlar[i]] = degerler[i];
  EXPECT_EQ(kolonlar.size(), degerler.size());
  return out;
}

TEST(FirmaKarti, RowOfANewCompanyIsWrittenWhole) {
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
  const std::pair<const char*, std::vector<const char*>> sayilar[] = {
      {"2", {"AnaParaVirgul", "BirimFiyatVirGul", "DovizVirgul", "DovizBirimFiyatVirgul"}},
      {"4", {"KurVirgul"}},
      {"18", {"DefKDV"}},
      {"15", {"IrsTakipSuresi"}},
      {"3", {"SatisYapma", "TahsilatYapma"}},
      {"16777215", {"StokMinRenk", "StokMaxRenk", "StokSFRRenk"}},
      {"1",
       {"PosVar", "SatirISK_Dahil", "FaturaAltiISK_Dahil", "Masraflar_Dahil", "SecimdeGelecekMiktar",
        "KasaHareketListeTipi", "KasiyerStokListeTipi", "MuhasebelesecekFisler", "MuhBenzerSatirBirlestir",
        "MasraflarSatistaKardir", "VadeFarkiTipi", "Yazarkasa"}},
      {"0",
       {"DovizVar",
        "RenkBedenVar",
        "BarkodVar",
        "EmanetVar",
        "OnceEmanetAl",
        "HareketKilit",
        "OzelRenkli",
        "Renk_Ozel",
        "Renk_Doviz",
        "Renk_TL",
        "StokMinSeviye",
        "StokMaxSeviye",
        "StokSFRSeviye",
        "StokSeviyeOzelKontrol",
        "KDV_Dahildir",
        "CariStokFiyatBagli",
        "FarkliISKBirlessin",
        "PuanVar",
        "PesinIndirimi",
        "AlistaFiyatDegis",
        "SatistaFiyatDegis",
        "OnlineMuhasebe",
        "AmbarKarNoktasidir",
        "AmbarBakiyesiGoster",
        "AmbarYetkiyeBagli",
        "IsyeriYetkiyeBagli",
        "MuafGun",
        "VadeFarki",
        "SatisVadeFarki",
        "KrediLimiti",
        "Pesinat",
        "TaksitSayisi",
        "IhtarSayisi",
        "TahsilatIhtarSayisi",
        "FarkliFiyatBirlessin",
        "TaksitliSatisModu"}}};
  for (const auto& [deger, kolonlar] : sayilar)
    for (const char* kolon : kolonlar) beklenen[kolon] = deger;
  ASSERT_TRUE(s.sent("INSERT INTO [sysfrmlng]"));
  const auto metin = [](const std::map<std::string, std::string>& row) {
    std::string out;
    for (const auto& [kolon, deger] : row) out += kolon + "=" + deger + "\n";
    return out;
  };
  EXPECT_EQ(metin(satir(s.server.statements[s.first("INSERT INTO [sysfrmlng]")])), metin(beklenen));
}

TEST(FirmaKarti, RefusedCreationStillRegistersAndLeavesOutTheSchema) {
  KartSunucusu s;
  s.server.fail("CREATE DATABASE", db::SqlError(db::ErrorKind::StatementRefused, 5170, "file exists"));
  FirmaKarti kart = gecerliKart();
  EXPECT_FALSE(company::Kaydet(s.oturum, kart)) << "what was typed must not be lost";
  EXPECT_EQ(s.oturum.Son_Hata, "-2147217900 : file exists");
  EXPECT_TRUE(s.sent("INSERT INTO sysusfrmlng"));
  EXPECT_FALSE(s.sent("CREATE TABLE"));
}

TEST(FirmaKarti, RowThatCannotBeWrittenTakesTheDatabaseBack) {
  KartSunucusu s;
  s.server.fail("INSERT INTO [sysfrmlng]", db::SqlError(db::ErrorKind::StatementRefused, 8152, "too long"));
  FirmaKarti kart = gecerliKart();
  EXPECT_FALSE(company::Kaydet(s.oturum, kart));
  EXPECT_TRUE(s.sent("DROP DATABASE ORNEK2012"));
  EXPECT_FALSE(s.sent("CREATE TABLE"));
  EXPECT_NE(s.oturum.Son_Hata.find("too long"), std::string::npos);
}

TEST(FirmaKarti, KnownNameIsLeftInSonHataAndClosesTheForm) {
  KartSunucusu s;
  s.server.rows("sysdatabases where name", {"name"}, {{"ORNEK2012"}});
  FirmaKarti kart = gecerliKart();
  EXPECT_TRUE(company::Kaydet(s.oturum, kart));
  EXPECT_EQ(s.oturum.Son_Hata, "Bu İsimle Bir Firma Zaten Var.");
  EXPECT_TRUE(s.boxes.shown.empty());
  EXPECT_FALSE(s.sent("CREATE DATABASE"));
}

TEST(FirmaKarti, AChartForATakenNameIsWrittenOnlyWhenTheCardsQuestionIsAnswered) {
  const struct {
    company::AdVarken adVarken;
    std::deque<bool> answers;
    std::size_t questions;
    bool written;
  } cases[] = {{company::AdVarken::Sor, {true}, 1, true},
               {company::AdVarken::Sor, {false}, 1, false},
               {company::AdVarken::Yazma, {true}, 0, false}};
  for (const auto& c : cases) {
    KartSunucusu s;
    s.platform.folder = ZEMBERA_DATA;
    s.server.rows("sysdatabases where name", {"name"}, {{"ORNEK2012"}});
    s.server.rows("SELECT RTRIM", {"sysfrm_ID", "ad"}, {});
    s.server.rows("COUNT(*)", {"n"}, {{5}});
    s.boxes.answers = c.answers;
    FirmaKarti kart = gecerliKart();
    kart.StandartHesapPlani = true;
    EXPECT_TRUE(company::Kaydet(s.oturum, kart, c.adVarken));
    EXPECT_EQ(std::ranges::count_if(s.boxes.shown, [](const auto& b) { return b.question; }), c.questions);
    EXPECT_EQ(s.sent("ORNEK2012.dbo.MUHKART"), c.written);
  }
}

TEST(FirmaKarti, AFailedSaveOfAnExistingCardKeepsItOpen) {
  for (const char* part : {"Select * from sysfrmlng", "UPDATE [sysfrmlng]"}) {
    KartSunucusu s;
    s.oturum.Yeni_Kayit = false;
    s.oturum.Secili_ID = 3;
    s.oturum.Eski_Firma_Adi = "ORNEK2012";
    std::vector<std::string> names;
    for (const auto& alan : company::kartAlanlari()) names.emplace_back(alan.column);
    s.server.rows("Select * from sysfrmlng WHERE", names, {std::vector<db::Value>(names.size())});
    s.server.fail(part, db::SqlError(db::ErrorKind::LinkBroken, 0, "gone"));
    FirmaKarti kart = gecerliKart();
    EXPECT_FALSE(company::Kaydet(s.oturum, kart)) << part;
    EXPECT_EQ(s.boxes.shown.size(), 1U) << part;
  }
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

TEST(FirmaKarti, FaultKeepsTheCardOpenAndSendsNothing) {
  KartSunucusu s;
  FirmaKarti kart = gecerliKart();
  kart.Firma_Kodu = "";
  EXPECT_FALSE(company::Kaydet(s.oturum, kart));
  ASSERT_EQ(s.boxes.shown.size(), 1u);
  EXPECT_EQ(s.boxes.shown[0].icon, session::Icon::Stop);
  EXPECT_TRUE(s.server.openings.empty());
  s.oturum.Inceleme = true;
  EXPECT_FALSE(company::Kaydet(s.oturum, kart));
  EXPECT_EQ(s.boxes.shown.size(), 1u);
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
}

TEST(FirmaTablolari, FillsTheMarksAndTellsItsProgress) {
  support::FakeSurroundings s;
  s.oturum.Baglanti = s.factory.make("");
  EXPECT_TRUE(company::Firma_Tablolari_Olustur(s.oturum));
  const auto& sent = s.server.statements;
  EXPECT_TRUE(std::none_of(sent.begin(), sent.end(), [](const std::string& t) {
    return t.find("<date>") != std::string::npos || t.find("<time>") != std::string::npos;
  }));
  EXPECT_NE(std::find(sent.begin(), sent.end(),
                      "UPDATE FIYATTANIM SET YR_Kullanici=1,YR_Tarih='03/14/2012',YR_Saat='15:09:26',"
                      "Deg_Kullanici=1,Deg_Tarih='03/14/2012',Deg_Saat='15:09:26'"),
            sent.end());
  EXPECT_EQ(s.progress.texts.size(), 127u + 80u + 23u + 1u);
  EXPECT_EQ(s.progress.steps.back().first, s.progress.steps.back().second);
}

TEST(FirmaTablolari, GoesOnBehindARefusedStatementButNotWithoutAServer) {
  support::FakeSurroundings s;
  s.oturum.Baglanti = s.factory.make("");
  s.server.fail("CREATE VIEW SATICIANALIZ", db::SqlError(db::ErrorKind::StatementRefused, 208, "no"));
  EXPECT_TRUE(company::Firma_Tablolari_Olustur(s.oturum));
  EXPECT_EQ(s.boxes.shown.size(), 2u);
  s.server.fail("CREATE TABLE STOKKART", db::SqlError(db::ErrorKind::LinkBroken, 0, "gone"));
  EXPECT_FALSE(company::Firma_Tablolari_Olustur(s.oturum));
  EXPECT_EQ(s.boxes.shown.size(), 4u);
}

}  // namespace
