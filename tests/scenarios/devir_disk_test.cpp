// The disk is full at some write of a rollover: the target is as before, the source keeps every byte, and
// with room again the same command succeeds.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "fault_vfs.h"
#include "support/komut_satiri.h"
#include "support/surucu.h"

namespace scenarios {
namespace {

// Registered before any database is opened.
struct IlkDisk {
  FaultyDisk disk;
};

class DevirDiskTest : public IlkDisk, public testing::Test {
 protected:
  support::KomutSatiri cli{support::surucuYap};

  void yap(const std::vector<std::string>& argumanlar, const std::string& girdi = "") {
    ASSERT_EQ(cli.calistir(argumanlar, girdi), 0) << cli.err;
  }
  void SetUp() override {
    yap({"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n");
    yap({"firma-olustur", "--ad", "A2012", "--kod", "00001", "--unvan", "A", "--baslangic", "01/01/2012",
         "--bitis", "31/12/2012"});
    yap({"guncelle", "--ad", "A2012"});
    yap({"sql", "--db", "A2012"},
        "INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez') INSERT INTO KASAHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Kasa_ID,BTutar,ATutar) SELECT '20120301','1','x',Kasa_ID,5,0 FROM KASAKART "
        "INSERT "
        "INTO STOKKART (Stok_Kod) VALUES ('S0') DECLARE @i INT SET @i=1 WHILE @i<60 BEGIN INSERT INTO "
        "STOKKART "
        "(Stok_Kod,Stok_Ad) VALUES ('S'+CONVERT(VARCHAR,@i),'Stok') INSERT INTO CARIKART (Cari_Kod) VALUES "
        "('C'+CONVERT(VARCHAR,@i)) SET @i=@i+1 END INSERT INTO STOKHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) SELECT "
        "'20120105','1','Alış','Mal',Stok_ID,Stok_Kod,1,3,0,2.5 FROM STOKKART");
    yap({"devir", "--kaynak", "A2012", "--yeni-ad", "A2013"});
    yap({"sql", "--db", "A2013"}, "UPDATE STOKKART SET Stok_Ad='Hedefte' DELETE FROM KASAHAREKET");
  }
  std::string icerik() {
    std::string sorgu =
        "SELECT name FROM master.dbo.sysdatabases ORDER BY name SELECT * FROM "
        "Defination_DB.dbo.sysfrmlng SELECT * FROM Defination_DB.dbo.sysusfrmlng SELECT name FROM "
        "sysobjects ORDER BY name SELECT name FROM sysindexes WHERE name LIKE 'DEVIR%'";
    for (const char* const tablo : {"STOKKART", "CARIKART", "KASAKART", "KASAHAREKET", "STOKHAREKET",
                                    "STOKHAREKETKART", "ODEMEHAREKET", "IP_KNTF1"})
      sorgu += std::string(" SELECT * FROM ") + tablo;
    yap({"sql", "--db", "A2013"}, sorgu);
    return cli.out;
  }
  std::string kaynak() const {
    std::string out;
    for (const char* const ad : {"A2012.mdf", "A2012_log.ldf"}) {
      std::ifstream dosya(cli.dizin / "veri" / ad, std::ios::binary);
      out.append(std::istreambuf_iterator<char>(dosya), {});
    }
    return out;
  }
};

TEST_F(DevirDiskTest, FullAtAnyWriteLeavesTheTargetAsItWas) {
  const std::vector<std::string> eskiye = {"devir", "--kaynak", "A2012", "--hedef", "A2013", "--evet"},
                                 yeniye = {"devir", "--kaynak", "A2012", "--yeni-ad", "B2013", "--evet"};
  const std::string once = icerik(), kaynakOnce = kaynak();
  int carpan = 0;
  for (const auto& devir : {eskiye, yeniye}) {
    // How many writes a trial takes: they fail one here, one there.
    auto deneme = devir;
    deneme.emplace_back("--dene");
    disk.arm({SQLITE_FULL, 1'000'000'000, true});
    yap(deneme);
    const int yazma = disk.passed();
    disk.disarm();
    ASSERT_GT(yazma, 5);
    for (int i = 0; i < 6; ++i) {
      const int n = yazma * i / 6;
      SCOPED_TRACE(devir[3] + " " + devir[4] + ", write " + std::to_string(n) + " of " +
                   std::to_string(yazma));
      disk.arm({SQLITE_FULL, n, true});
      const int kod = cli.calistir(devir);
      const std::string hata = cli.err;
      const bool carpti = disk.disarm();
      EXPECT_EQ(kaynak() == kaynakOnce, true);
      if (kod == 0) continue;  // the disk filled behind the last write that matters
      EXPECT_TRUE(carpti) << hata;
      EXPECT_EQ(kod, 1);
      EXPECT_NE(hata, "");
      ++carpan;
      if (devir == eskiye) {
        EXPECT_EQ(icerik(), once) << hata;
      }
    }
    yap(devir);  // with room again
  }
  EXPECT_GE(carpan, 6);
}

}  // namespace
}  // namespace scenarios
