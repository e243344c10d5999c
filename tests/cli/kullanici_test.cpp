#include <gtest/gtest.h>

#include <fstream>

#include "db/drivers.h"
#include "platform/files.h"
#include "support/komut_satiri.h"

namespace {

class KullaniciKomutlari : public testing::Test {
 protected:
  support::KomutSatiri cli{db::makeConnectionFactory};
  // Made once for all tests of the program; each takes a copy.
  static const std::filesystem::path& hazir() {
    static support::KomutSatiri made{db::makeConnectionFactory};
    static const bool filled = [] {
      bool well = made.calistir({"kur", "--sunucu", "(yerel)"}, "gizli\nabc\n") == 0;
      for (const char* ad : {"MERKEZ", "SUBE"})
        well = made.calistir({"firma-olustur", "--ad", ad, "--kod", "00001", "--unvan", ad}) == 0 && well;
      const std::vector<std::string> ali = {"kullanici-ekle", "--ad",          "ali",  "--firma",
                                            "merkez, SUBE",   "--smtp-sunucu", "posta"};
      return made.calistir(ali, "kale7\n") == 0 && well;
    }();
    EXPECT_TRUE(filled) << made.err;
    return made.dizin;
  }
  void SetUp() override {
    std::filesystem::copy(hazir(), cli.dizin, std::filesystem::copy_options::recursive);
  }
  std::string goster(const std::string& bicim, const std::string& firma = "MERKEZ",
                     const std::string& ad = "ALİ") {
    EXPECT_EQ(cli.calistir({"yetki-goster", "--kullanici", ad, "--firma", firma, "--bicim", bicim}), 0)
        << cli.err;
    return cli.out;
  }
  int yaz(const std::string& json, const std::string& firma = "MERKEZ") {
    return cli.calistir({"yetki-yaz", "--kullanici", "ALİ", "--firma", firma, "-i", "-"}, json);
  }
  std::string sql(const std::string& text, const std::string& db = "Defination_DB") {
    EXPECT_EQ(cli.calistir({"sql", "--db", db, text}), 0) << cli.err;
    return cli.out;
  }
};

TEST_F(KullaniciKomutlari, UsersAreListedChangedAndDeleted) {
  EXPECT_EQ(cli.calistir({"kullanici-listele"}), 0);
  EXPECT_EQ(cli.out, "Ad\tNo\tYonetici\tFirmalar\nALİ\t2\t0\tMERKEZ,SUBE\nKORVENA\t1\t1\tMERKEZ,SUBE\n");

  EXPECT_EQ(cli.calistir({"kullanici-degistir", "--ad", "ali", "--yeni-ad", "o'neil", "--firma", "SUBE",
                          "--yonetici"}),
            0)
      << cli.err;
  EXPECT_EQ(cli.err, "Yaptığınız değişiklikler kayda alındı.\n");
  EXPECT_EQ(cli.calistir({"kullanici-degistir", "--ad", "O'NEİL", "--sifre"}, "şifre\n"), 1);
  EXPECT_EQ(cli.err, "Lütfen şifrenizde Türkçe karakter kullanmayınız.\n");
  EXPECT_EQ(cli.calistir({"kullanici-degistir", "--ad", "O'NEİL", "--sifre"}, "yeni\n"), 0);
  EXPECT_EQ(cli.calistir({"kullanici-listele", "--bicim", "tablo"}), 0);
  EXPECT_EQ(sql("SELECT sysus_nm,smtpserver,Yonetici FROM sysuslng WHERE sysus_ID=2"),
            "sysus_nm\tsmtpserver\tYonetici\nO'NEİL\tposta\t1\n");

  EXPECT_EQ(cli.calistir({"kullanici-sil", "--ad", "o'neil"}), 1);
  EXPECT_NE(cli.err.find("Bu kullanıcıyı tamamen silmek istediğinizden emin misiniz?"), std::string::npos);
  EXPECT_EQ(cli.calistir({"kullanici-sil", "--ad", "o'neil", "--evet"}), 0);
  EXPECT_EQ(cli.calistir({"kullanici-sil", "--ad", "KORVENA", "--evet"}), 1);
  EXPECT_EQ(cli.err, "Supervisor olan kullanıcıyı silemezsiniz!\n");
  EXPECT_EQ(cli.calistir({"kullanici-listele"}), 0);
  EXPECT_EQ(cli.out, "Ad\tNo\tYonetici\tFirmalar\nKORVENA\t1\t1\tMERKEZ,SUBE\n");
}

TEST_F(KullaniciKomutlari, RefusalsOfTheCardAreTold) {
  const struct {
    std::vector<std::string> arguments;
    const char *in, *text;
  } cases[] = {
      {{"kullanici-ekle", "--ad", "ALİ", "--firma", "MERKEZ"},
       "x\n",
       "Aynı adlı bir kullanıcı bulunmaktadır.Lütfen Kullanıcı adını değiştiriniz...\n"},
      {{"kullanici-ekle", "--ad", "B", "--firma", "YOK"}, "x\n", "Bu isimle bir firma yok: YOK\n"},
      {{"kullanici-ekle", "--ad", "B", "--firma", ","},
       "x\n",
       "Lütfen Bu Kullanıcı İçin Enaz Bir Firma Seçiniz\n"},
      {{"kullanici-ekle", "--ad", "B", "--firma", "MERKEZ"}, "", "Kullanıcının şifresi verilmedi.\n"},
      {{"kullanici-degistir", "--ad", "yok"}, "", "Bu isimle bir kullanıcı yok: YOK\n"},
      {{"yetki-goster", "--kullanici", "ALİ", "--firma", "YOK"},
       "",
       "ALİ kullanıcısının bu firmada yetki kaydı yok: YOK\n"},
      {{"yetki-kopyala", "--kullanici", "ALİ", "--kaynak", "MERKEZ", "--hedef", "SUBE", "--hedef-kullanici",
        "KORVENA"},
       "",
       "Supervisor olan kullanıcı için yetkilendirme yapamazsınız!\n"},
      {{"yetki-cizelge", "--firma", "YOK"},
       "",
       "Bu firma yok ya da bu firmada yetkisi olan kullanıcı yok: YOK\n"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(cli.calistir(c.arguments, c.in), 1) << c.text;
    EXPECT_EQ(cli.err, c.text);
  }
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{"yetki-goster", "--kullanici", "A", "--firma", "B", "--bicim", "xml"},
        {"yetki-karsilastir", "--kullanici", "A", "--firma", "B"},
        {"yetki-cizelge", "--firma", "A", "--bicim", "pdf"}})
    EXPECT_EQ(cli.calistir(wrong), 2) << cli.err;
}

TEST_F(KullaniciKomutlari, RightsGoOutAndComeBackWhole) {
  const std::string before = goster("json");
  EXPECT_EQ(yaz(before), 0) << cli.err;
  EXPECT_EQ(cli.err, "Firma İçin Yetkilendirme Tamamlandı.\n");
  EXPECT_EQ(goster("json"), before);

  EXPECT_EQ(yaz("{\n \"KHE\": \"10000000000000\", \"kasa\": 0, \"KntGun\": 5,\n \"ambarlar\": [{\"no\": 1, "
                "\"merkez\": 1}]}"),
            0)
      << cli.err;
  std::string wanted = before;
  const std::pair<std::string, std::string> changes[] = {
      {"\"KHE\": \"11111111111111\"", "\"KHE\": \"10000000000000\""},
      {"\"KASA\": 1", "\"KASA\": 0"},
      {"\"KntGun\": null", "\"KntGun\": 5"},
      {"\"Def_Ambar_No\": null", "\"Def_Ambar_No\": 1"},
      {"\"ambarlar\": []", "\"ambarlar\": [\n    {\"no\": 1, \"merkez\": 1}\n  ]"}};
  for (const auto& [from, to] : changes) {
    ASSERT_NE(wanted.find(from), std::string::npos) << from;
    wanted.replace(wanted.find(from), from.size(), to);
  }
  EXPECT_EQ(goster("json"), wanted);
  EXPECT_TRUE(goster("agac").starts_with("[ ] Kasa\n  [x] Kasa Kartı\n    [x] Ekle\n")) << cli.out;
  EXPECT_NE(cli.out.find("\n[x] Genel Kullanım › Korvena Ana Program\n"), std::string::npos) << cli.out;
  EXPECT_NE(cli.out.find("\n[x] Ambar 1 Merkez (merkez)\n[ ] İşyeri 1 MERKEZ\n"), std::string::npos)
      << cli.out;
  EXPECT_TRUE(goster("tsv").starts_with(
      "Yetki\tKolon\tYer\tDeger\nKasa\tKASA\t1\t0\nKasa › Kasa Kartı › Ekle\tKK\t1\t1\n"))
      << cli.out;
}

TEST_F(KullaniciKomutlari, AWrongFileIsRefusedWithItsLineBeforeAnythingIsWritten) {
  const std::string before = goster("json");
  const std::pair<const char*, const char*> cases[] = {
      {"{\n\"KASA\": 0,\n\"KASAX\": 1}", "satır 3: bilinmeyen yetki: KASAX"},
      {"{\"KASA\": 0,\n\"KHE\": \"101\"}", "satır 2: KHE 14 karakter olmalı, 3 verilmiş"},
      {"{\"KASA\": 0, \"KK\": \"1021\"}", "satır 1: KK yalnız 0 ve 1 içeren bir metin olmalı"},
      {"{\"KASA\": 2}", "satır 1: KASA 0 ya da 1 olabilir"},
      {"{\"KRVN\": null}", "satır 1: KRVN boş (null) olamaz"},
      {"{\"KASA\": 0,\n\n\"ambarlar\": [{\"no\": 99}]}", "satır 3: bu firmada böyle bir ambar yok: 99"},
      {"{\"KASA\": 0,\n\"KASA\": 1}", "satır 2: \"KASA\" iki kez verilmiş"},
      {"{\"KASA\": 0", "satır 1: '}' bekleniyordu"},
      {"", "satır 1: '{' bekleniyordu"},
      {"{\"Cari_Tipi\": \"012345678901234567890123456\"}", "satır 1: Cari_Tipi en çok 26 karakter olabilir."},
  };
  for (const auto& [json, text] : cases) {
    EXPECT_EQ(yaz(json), 1) << json;
    EXPECT_EQ(cli.err, "-: " + std::string(text) + "\nHiçbir şey yazılmadı.\n") << json;
  }
  EXPECT_EQ(goster("json"), before);
}

TEST_F(KullaniciKomutlari, RightsAreCopiedComparedAndLaidOut) {
  ASSERT_EQ(yaz("{\"BK\": \"0000\", \"MFN\": \"100000\", \"ambarlar\": [{\"no\": 1}]}"), 0) << cli.err;
  EXPECT_EQ(
      cli.calistir({"yetki-karsilastir", "--kullanici", "ALİ", "--firma", "MERKEZ", "--diger-firma", "SUBE"}),
      1);
  EXPECT_EQ(cli.out,
            "Yetki\tALİ/MERKEZ\tALİ/SUBE\nBanka › Banka Kartı › Ekle\tyok\tvar\nBanka › Banka Kartı › "
            "Değiştir\tyok\tvar\n"
            "Banka › Banka Kartı › İncele\tyok\tvar\nBanka › Banka Kartı › Sil\tyok\tvar\n"
            "Muhasebe › Fiş Numaralama İşlemleri › Açılış Fişlerini Numaralandır\tvar\tyok\n");
  EXPECT_EQ(cli.calistir({"yetki-kopyala", "--kullanici", "ALİ", "--kaynak", "MERKEZ", "--hedef", "SUBE"}), 0)
      << cli.err;
  EXPECT_EQ(
      cli.calistir({"yetki-karsilastir", "--kullanici", "ALİ", "--firma", "MERKEZ", "--diger-firma", "SUBE"}),
      0);
  EXPECT_EQ(sql("SELECT Ambar_No FROM KULLANICIAMBAR", "SUBE"), "Ambar_No\n1\n");

  EXPECT_EQ(cli.calistir({"yetki-cizelge", "--firma", "sube", "--farkli", "--dal", "banka"}), 0) << cli.err;
  EXPECT_EQ(cli.out,
            "\xEF\xBB\xBFYetki;Kolon;Yer;ALİ;KORVENA\r\nBanka › Banka Kartı › Ekle;BK;1;0;1\r\nBanka › Banka "
            "Kartı › Değiştir;BK;2;0;1\r\n"
            "Banka › Banka Kartı › İncele;BK;3;0;1\r\nBanka › Banka Kartı › Sil;BK;4;0;1\r\n");
  const std::string page = (cli.dizin / "sayfa.html").string();
  EXPECT_EQ(
      cli.calistir({"yetki-cizelge", "--firma", "SUBE", "--bicim", "html", "--ara", "çek iade", "-o", page}),
      0)
      << cli.err;
  const std::string html = platform::readFile(page).value_or("");
  EXPECT_NE(html.find("<td>Çek Senet › Çek Senet Hareketleri › Müşteriye Çek İade › Ekle</td><td "
                      "class=\"v\">✓</td><td class=\"v\">✓</td>"),
            std::string::npos);
  EXPECT_EQ(html.find("Banka Kartı"), std::string::npos);
  EXPECT_EQ(html.find("http"), std::string::npos);
}

TEST_F(KullaniciKomutlari, TillSettingsGoOutAndComeBackWhole) {
  sql("INSERT INTO STOKKART(Stok_Kod,Stok_Ad) VALUES('ELMA','Elma') INSERT INTO KASAKART(Kasa_Kod) "
      "VALUES('K1') INSERT INTO TARTIBARKOD(Bayrak_Kodu) VALUES('27')",
      "MERKEZ");
  const auto json = [&] {
    EXPECT_EQ(cli.calistir({"kasiyer-goster", "--kullanici", "ALİ", "--firma", "MERKEZ", "--bicim", "json"}),
              0)
        << cli.err;
    return cli.out;
  };
  const auto write = [&](const std::string& text) {
    return cli.calistir({"kasiyer-yaz", "--kullanici", "ALİ", "--firma", "MERKEZ", "-i", "-"}, text);
  };
  const std::string before = json();
  EXPECT_EQ(write("{\"Def_Kasa_ID\": \"K1\", \"KS_Degistirsin\": 1, \"FisNo\": 1, \"RaporYazici\": "
                  "\"yazıcı\",\n\"Teraziler\": \"27\", "
                  "\"kisayollar\": [{\"sira\": 2, \"stok\": \"elma\"}]}"),
            0)
      << cli.err;
  EXPECT_EQ(cli.err, "Yetkilendirme İşlemi Başarı İle Tamamlandı.\n");
  std::string wanted = before;
  const std::pair<std::string, std::string> changes[] = {
      {"\"Def_Kasa_ID\": \"\"", "\"Def_Kasa_ID\": \"K1\""},
      {"\"KS_Degistirsin\": 0", "\"KS_Degistirsin\": 1"},
      {"\"FisNo\": 0", "\"FisNo\": 1"},
      {"\"RaporYazici\": \"\"", "\"RaporYazici\": \"yazıcı\""},
      {"\"Teraziler\": \"\"", "\"Teraziler\": \"27\""},
      {"\"kisayollar\": []", "\"kisayollar\": [\n    {\"sira\": 2, \"stok\": \"ELMA\"}\n  ]"}};
  for (const auto& [from, to] : changes) {
    ASSERT_NE(wanted.find(from), std::string::npos) << from;
    wanted.replace(wanted.find(from), from.size(), to);
  }
  EXPECT_EQ(json(), wanted);
  EXPECT_EQ(cli.calistir({"kasiyer-goster", "--kullanici", "ALİ", "--firma", "MERKEZ"}), 0);
  for (const char* line :
       {"Ayar\tKolon\tDeger\nKasa Kodu\tDef_Kasa_ID\tK1\nKasa Kodu\tKS_Degistirsin\tDeğiştirebilir\n",
        "\nFiş No\tFisNo\t1\n", "\nTeraziler\tTeraziler\t27\nKısayol 2\tkisayollar\tELMA\n"})
    EXPECT_NE(cli.out.find(line), std::string::npos) << line << cli.out;
  EXPECT_EQ(write(wanted), 0) << cli.err;
  EXPECT_EQ(json(), wanted);

  const std::pair<const char*, const char*> wrong[] = {
      {"{\"FisNo\": 1,\n\"Yok\": 1}", "satır 2: bilinmeyen kasiyer ayarı: Yok"},
      {"{\"FisNo\": 2}", "satır 1: FisNo 0 ya da 1 olabilir"},
      {"{\"TerPort\": \"12345678901\"}", "satır 1: TerPort en çok 10 karakter olabilir."},
      {"{\"Teraziler\": \"99\"}", "satır 1: bu firmada böyle bir terazi yok: 99"},
      {"{\"kisayollar\": [{\"sira\": 61, \"stok\": \"ELMA\"}]}",
       "satır 1: kısayolun sırası 1 ile 60 arasında ve tek olmalı, stoğu verilmeli"},
      {"{\"kisayollar\": [\n{\"sira\": 1, \"stok\": \"YOK\"}]}",
       "satır 2: bu firmada böyle bir stok yok: YOK"},
  };
  for (const auto& [text, fault] : wrong) {
    EXPECT_EQ(write(text), 1) << text;
    EXPECT_EQ(cli.err, "-: " + std::string(fault) + "\nHiçbir şey yazılmadı.\n");
  }
  EXPECT_EQ(write("{\"Def_Kasa_ID\": \"K9\", \"FisNo\": 0}"), 1);
  EXPECT_EQ(cli.err, "Kasa Kodu bulunamadı: K9\n");
  EXPECT_EQ(json(), wanted);
}

}  // namespace
