#include "maintenance/yedek_kaydi.h"

#include "maintenance/yedek.h"
#include "ortam.h"
#include "platform/files.h"

namespace maintenance::test {
namespace {

constexpr db::DateTime an{2012, 3, 14, 15, 9, 26};

TEST(YedekKaydi, ABackupIsRememberedWithItsServerDayAndPlace) {
  Ortam o;
  o.firma("MAGAZA", "x");
  YedekKayitlari kayitlar(o.klasor);
  EXPECT_EQ(kayitlar.sonYedek("(yerel)", "MAGAZA"), std::nullopt);
  EXPECT_FALSE(Yedekle(o.s.oturum, "MAGAZA", o.klasor / "yok").tamam);
  EXPECT_EQ(kayitlar.sonYedek("(yerel)", "MAGAZA"), std::nullopt) << "nothing was backed up";
  ASSERT_TRUE(Yedekle(o.s.oturum, "MAGAZA", o.klasor).tamam);
  EXPECT_EQ(kayitlar.sonYedek("(YEREL)", "magaza"), an);
  EXPECT_EQ(kayitlar.sonYedek("ANASUNUCU", "MAGAZA"), std::nullopt) << "another server's company";
  EXPECT_EQ(*platform::readFile(o.klasor / "yedek.kayit"),
            "(yerel)\tMAGAZA\t2012-03-14 15:09:26\t" + (o.klasor / "MAGAZA_2012_03_14").string() + "\n");

  o.s.clock.time.day = 15;
  ASSERT_TRUE(Yedekle(o.s.oturum, "MAGAZA", o.klasor).tamam);
  ASSERT_EQ(kayitlar.sonYedekler("(yerel)").size(), 1U);
  EXPECT_EQ(kayitlar.sonYedekler("(yerel)")[0].yer, (o.klasor / "MAGAZA_2012_03_15").string());
}

TEST(YedekKaydi, OneSpoiltLineHidesNoOther) {
  const support::TempFolder gecici;
  ASSERT_FALSE(platform::writeFileSafely(
      gecici.path / "yedek.kayit", "bozuk\nS\tA\tdün\t/y\nS\tB\t2012-03-14 15:09:26\t/y\nS\tC\t2012-03-14"));
  YedekKayitlari kayitlar(gecici.path);
  EXPECT_EQ(kayitlar.sonYedek("S", "A"), std::nullopt);
  EXPECT_EQ(kayitlar.sonYedek("S", "B"), an);
  EXPECT_EQ(kayitlar.yaz({"S", "A", an, "/z"}), "");
  EXPECT_EQ(*platform::readFile(gecici.path / "yedek.kayit"),
            "S\tB\t2012-03-14 15:09:26\t/y\nS\tA\t2012-03-14 15:09:26\t/z\n");
}

TEST(YedekKaydi, ARecordThatCannotBeWrittenIsToldAndTheBackupStands) {
  Ortam o;
  o.firma("MAGAZA", "x");
  fs::create_directory(o.klasor / "yedek.kayit");
  o.s.boxes.shown.clear();
  EXPECT_TRUE(Yedekle(o.s.oturum, "MAGAZA", o.klasor).tamam);
  ASSERT_EQ(o.s.boxes.shown.size(), 2U);
  EXPECT_TRUE(o.s.boxes.shown[0].text.starts_with("Yedek alındı, ama yedek tarihi yazılamadı.\n"));
}

}  // namespace
}  // namespace maintenance::test
