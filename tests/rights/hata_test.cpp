// Whatever statement of a save fails, everything stands as before, the reason is told and no password is.
#include "engine/language.h"
#include "rights/haklar.h"
#include "rights/kasiyer.h"
#include "rights/ortam.h"
#include "rights/yetki_metni.h"
#include "session/konsol.h"

namespace {

using Is = std::function<bool()>;

class HataTest : public rights::test::OrtamTest {
 protected:
  void SetUp() override {
    id = kullanici("ALİ", "gizlim", {1, 2});
    run("INSERT INTO MERKEZ.dbo.KASAKART(Kasa_Kod) VALUES('K1') INSERT INTO MERKEZ.dbo.STOKKART(Stok_Kod) "
        "VALUES('ELMA') INSERT INTO MERKEZ.dbo.AMBAR(Ambar_No) VALUES(2)");
    for (const Is& is : {yetki(), kasiyer()}) EXPECT_TRUE(is());
  }
  Is kart(bool yeni) {
    o().Yeni_Kayit = yeni;
    o().Inceleme = false;
    o().Secili_ID = id;
    rights::KullaniciKarti kart;
    EXPECT_TRUE(rights::Kullanici_Karti_Ac(o(), kart));
    kart.Kullanici_Adi = yeni ? "VELİ" : "AHMET";
    kart.Kullanici_Sifre = kart.Sifre_Onay = kart.sendpassword = "gizlim";
    kart.Firmatreelist[0].secili = yeni;
    kart.Firmatreelist[1].secili = true;
    return [this, kart]() mutable { return rights::Ekle_Tamam(o(), kart).kaydedildi; };
  }
  // The editor with the ticks of both grids turned.
  Is yetki() {
    rights::YetkiDuzeni duzen = acik("MERKEZ");
    duzen.treelist.degistir(0, !duzen.treelist.isaretli(0));
    for (rights::Yerler* yerler : {&duzen.YetkiAmbarGrd, &duzen.YetkiIsyeriGrd})
      for (std::size_t i = 0; i < yerler->size(); ++i) rights::secimiCevir(*yerler, i);
    rights::varsayilanYap(duzen.YetkiAmbarGrd, 1, true);
    duzen.Def_Kasa_Kod = "K1";
    return [this, duzen]() mutable { return rights::TamamBtn(o(), duzen); };
  }
  Is yetkiYaz() {
    rights::YetkiDuzeni duzen = acik("MERKEZ");
    rights::JsonKapsami kapsam;
    EXPECT_EQ(rights::yetkiJsonOku(
                  "{\"KK\":\"0101\",\"ambarlar\":[{\"no\":1,\"merkez\":1}],\"isyerleri\":[]}", duzen, kapsam),
              "");
    return [this, duzen, kapsam]() mutable { return rights::yetkiJsonYaz(o(), duzen, kapsam); };
  }
  Is yetkiKopyala() {
    return [this, kaynak = acik("MERKEZ"), hedef = acik("SUBE")] {
      return rights::yetkiKopyala(o(), kaynak, hedef);
    };
  }
  Is kasiyer() {
    rights::KasiyerDuzeni duzen;
    o().Secili_ID = id;
    EXPECT_TRUE(rights::Kasiyer_Yukle(o(), duzen) && duzen.okundu);
    duzen.FisGrd[0] = {duzen.FisGrd[0].Yetkisi.empty() ? "K1" : "", "", true};
    duzen.ayarlar[0] = !duzen.ayarlar[0].boolean();
    duzen.StokFlx = {{1, "", ""}, {1, "", ""}};
    return [this, duzen] { return rights::Kasiyer_Yetki_Kaydet(o(), duzen); };
  }
  Is sil() {
    return [this] {
      session::Dugum node;
      node.kind = session::dugum::K;
      node.id = id;
      s.boxes.answers = {true};
      return session::MNSil(o(), node).listeyiYenile;
    };
  }
  rights::YetkiDuzeni acik(const char* firma) {
    rights::YetkiDuzeni duzen;
    EXPECT_TRUE(rights::yetkiAc(o(), duzen, rows("SELECT sysus_nm FROM sysuslng WHERE sysus_ID=2"), firma));
    return duzen;
  }
  std::int64_t id = 0;
};

TEST_F(HataTest, AFailureAtAnyStatementLeavesEverythingAsItWas) {
  const struct {
    const char* ad;
    std::function<Is()> hazirla;
    const char* yazi;
    std::size_t enAz;  // statements of a save, the first of which begins the transaction
  } cases[] = {
      {"new user", [&] { return kart(true); }, "Kullanıcı kaydedilemedi", 11},
      {"editor", [&] { return yetki(); }, "Yetkiler kaydedilemedi", 9},
      {"file", [&] { return yetkiYaz(); }, "Yetkiler kaydedilemedi", 8},
      {"copy", [&] { return yetkiKopyala(); }, "Yetkiler kaydedilemedi", 8},
      {"till", [&] { return kasiyer(); }, "Kasiyer yetkileri kaydedilemedi", 11},
      {"changed user", [&] { return kart(false); }, "Kullanıcı kaydedilemedi", 11},
      {"deletion", [&] { return sil(); }, "-2147217900 : disk dolu", 6},
  };
  for (const auto& c : cases) {
    const std::string before = hersey();
    std::size_t fault = 1;
    for (;; ++fault) {
      const Is is = c.hazirla();
      s.boxes.shown.clear();
      surucu.izleme.sifirla();
      surucu.izleme.satirSatir = true;
      surucu.izleme.once = [&](std::size_t n) {
        if (n == fault) throw db::SqlError(db::ErrorKind::StatementRefused, 1101, "disk dolu");
      };
      if (is()) break;
      surucu.izleme.sifirla();
      ASSERT_EQ(hersey(), before) << c.ad << " " << fault;
      std::string told;
      for (const std::string& text : s.boxes.texts()) told += text + "\n";
      EXPECT_NE(told.find(c.yazi), std::string::npos) << c.ad << " " << fault << told;
      EXPECT_NE(told.find("disk dolu"), std::string::npos) << c.ad << " " << fault << told;
      EXPECT_EQ(told.find("gizlim"), std::string::npos) << c.ad << " " << fault;
      ASSERT_LT(fault, 60u) << c.ad;
    }
    EXPECT_GT(fault, c.enAz) << c.ad;
    EXPECT_NE(hersey(), before) << c.ad;
    for (const std::string& deyim : surucu.izleme.deyimler)
      EXPECT_EQ(engine::parseBatch(deyim).statements.size(), 1u) << deyim;
    surucu.izleme.sifirla();
  }
}

}  // namespace
