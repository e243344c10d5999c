// What can be in the way of a backup, a restore or a relocation: each with its text and what stands
// afterwards.
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "maintenance/aktar.h"
#include "maintenance/bakim.h"
#include "maintenance/yedek.h"
#include "maintenance/yedek_denetim.h"
#include "ortam.h"
#include "platform/files.h"

namespace maintenance::test {
namespace {

// The rights of a user who owns the files and nothing else, also where the tests run as root.
class Sahip {
 public:
  Sahip() {
    ::syscall(SYS_capget, &bas_, once_);
    __user_cap_data_struct simdi[2] = {once_[0], once_[1]};
    simdi[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
    ::syscall(SYS_capset, &bas_, simdi);
  }
  ~Sahip() { ::syscall(SYS_capset, &bas_, once_); }
  Sahip(const Sahip&) = delete;
  Sahip& operator=(const Sahip&) = delete;

 private:
  __user_cap_header_struct bas_{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct once_[2] = {};
};

class KotuGirdi : public testing::Test {
 protected:
  KotuGirdi() : hedef(o.klasor / "yedek ğüş İı") {
    fs::create_directory(hedef);
    o.firma("MAGAZA", "eski");
    o.firma("KOMSU", "komşu");
    temizle();
    once = icerik(o.veri);
  }
  void temizle() {
    o.s.boxes.shown.clear();
    o.s.progress.texts.clear();
  }
  // Refused with that text, before or after the service was down; nothing of it is left.
  void reddedilir(const fs::path& yer, const std::string& metin, bool durur) {
    temizle();
    bool durdu = false;
    const auto eski = o.s.progress.onPump;
    o.s.progress.onPump = [&] {
      durdu = durdu || !o.calisiyor();
      if (eski) eski();
    };
    const YedekSonucu sonuc = Yedekle(o.s.oturum, "MAGAZA", yer);
    o.s.progress.onPump = {};
    EXPECT_FALSE(sonuc.tamam);
    EXPECT_EQ(o.s.boxes.texts(), Adlar{sonuc.hata});
    EXPECT_EQ(sonuc.hata.substr(0, metin.size()), metin);
    EXPECT_EQ(durdu, durur);
    butun("eski");
    if (fs::exists(hedef)) {
      EXPECT_EQ(icerik(hedef), Adlar{});
    }
  }
  void butun(const std::string& magaza) {
    EXPECT_TRUE(o.calisiyor());
    EXPECT_EQ(icerik(o.veri), once);
    EXPECT_FALSE(fs::exists(o.klasor / "bakim.kayit"));
    EXPECT_EQ(o.deger("MAGAZA"), magaza);
    EXPECT_EQ(o.deger("KOMSU"), "komşu");
  }
  fs::path yedekle(const std::string& ad) {
    const YedekSonucu sonuc = Yedekle(o.s.oturum, ad, hedef);
    EXPECT_TRUE(sonuc.tamam) << sonuc.hata;
    return sonuc.klasor;
  }
  bool geriAl(const fs::path& klasor) {
    temizle();
    o.s.boxes.answers = {true};
    return Geri_Al(o.s.oturum, klasor);
  }
  // Once, when that text is on the screen.
  void metinde(const std::string& metin, std::function<void()> is) {
    o.s.progress.onPump = [this, metin, is = std::move(is), oldu = false]() mutable {
      if (!oldu && !o.s.progress.texts.empty() && o.s.progress.texts.back() == metin) {
        oldu = true;
        is();
      }
    };
  }

  Ortam o;
  fs::path hedef;
  Adlar once;
};

TEST_F(KotuGirdi, ATargetThatCannotTakeTheBackup) {
  reddedilir(o.klasor / "yok", "Klasör bulunamadı: ", false);
  // No room: seen before anybody is cut off.
  reddedilir("/proc", "Diskte yeterli yer yok: /proc\nGereken ", false);
  {
    const Sahip sahip;
    ::chmod(hedef.c_str(), 0500);
    reddedilir(hedef, "Klasör oluşturulamadı (" + (hedef / "MAGAZA_2012_03_14.").string(), true);
    ::chmod(hedef.c_str(), 0700);
  }
  // Somebody takes the folder away while the files are being copied into it.
  metinde("LOG Dosyası Yedekleniyor", [&] { fs::remove_all(hedef); });
  reddedilir(hedef, "Log dosyası yazılamadı (" + (hedef / "MAGAZA_2012_03_14.").string(), true);
}

TEST_F(KotuGirdi, ATargetOnAnotherFileSystemOrBehindALinkTakesIt) {
  struct stat burasi {
  }, orasi{};
  fs::path yer = "/dev/shm";
  ::stat(hedef.c_str(), &burasi);
  if (::stat(yer.c_str(), &orasi) != 0 || orasi.st_dev == burasi.st_dev)
    GTEST_SKIP() << "one file system only";
  std::string ad = (yer / "zembera-XXXXXX").string();
  ASSERT_TRUE(::mkdtemp(ad.data()));
  fs::create_directory_symlink(ad, hedef / "bağ");
  const YedekSonucu sonuc = Yedekle(o.s.oturum, "MAGAZA", hedef / "bağ");
  EXPECT_TRUE(sonuc.tamam) << sonuc.hata;
  o.yaz("MAGAZA", "yeni");
  EXPECT_TRUE(geriAl(fs::path(ad) / "MAGAZA_2012_03_14")) << o.s.boxes.last();
  butun("eski");
  fs::remove_all(ad);
}

TEST_F(KotuGirdi, ALinkInThePlaceOfTheNewFolderIsNotFollowed) {
  const fs::path baska = o.klasor / "başkasının";
  fs::create_directory(baska);
  fs::create_directory_symlink(baska, hedef / "MAGAZA_2012_03_14");
  EXPECT_EQ(yedekle("MAGAZA"), hedef / "MAGAZA_2012_03_14_1");
  EXPECT_EQ(icerik(baska), Adlar{});
}

// The data folder lies on another disk, behind a link: the files change there and the link stays.
TEST_F(KotuGirdi, ALinkInThePlaceOfTheDataFolderStays) {
  o.birak();
  fs::rename(o.veri, o.klasor / "öteki disk");
  fs::create_directory_symlink(o.klasor / "öteki disk", o.veri);
  o.bagla();
  const fs::path klasor = yedekle("MAGAZA");
  o.yaz("MAGAZA", "yeni");
  EXPECT_TRUE(geriAl(klasor)) << o.s.boxes.last();
  butun("eski");
  EXPECT_TRUE(fs::is_symlink(o.veri));
}

TEST_F(KotuGirdi, ACopyThatIsNotTheCompanysOwnIsRefused) {
  const fs::path klasor = yedekle("MAGAZA"), komsu = yedekle("KOMSU"), bozuk = hedef / "bozuk";
  o.yaz("MAGAZA", "yeni");
  struct Durum {
    const char* ad;
    std::function<void()> boz;
    std::string metin;
  };
  const Durum durumlar[] = {
      {"flipped byte",
       [&] {
         std::string bayt = *platform::readFile(klasor / "MAGAZA.mdf");
         bayt[bayt.size() - 3000] ^= 4;
         std::ofstream(bozuk / "MAGAZA.mdf", std::ios::binary | std::ios::trunc) << bayt;
       },
       "Bu yedek kullanılamaz: "},
      {"another company under this name",
       [&] {
         fs::copy_file(komsu / "KOMSU.mdf", bozuk / "MAGAZA.mdf", fs::copy_options::overwrite_existing);
         fs::copy_file(komsu / "KOMSU_LOG.ldf", bozuk / "MAGAZA_LOG.ldf",
                       fs::copy_options::overwrite_existing);
       },
       "Bu yedek kullanılamaz: Bu dosyalar \"KOMSU\" firmasının 14/03/2012 15:09 tarihli yedeği."},
  };
  for (const Durum& durum : durumlar) {
    SCOPED_TRACE(durum.ad);
    fs::remove_all(bozuk);
    fs::copy(klasor, bozuk);
    durum.boz();
    EXPECT_FALSE(Yedek_Denetle(o.s.oturum, bozuk).saglam);
    EXPECT_FALSE(geriAl(bozuk));
    EXPECT_EQ(o.s.boxes.last().substr(0, durum.metin.size()), durum.metin);
    butun("yeni");
  }
}

// Two copies of one company: the data file is whole by itself, whichever of their empty logs lies beside it.
TEST_F(KotuGirdi, TheLogOfAnotherCopyAddsNothing) {
  const fs::path ilk = yedekle("MAGAZA");
  o.yaz("MAGAZA", "ikinci");
  const fs::path ikinci = yedekle("MAGAZA");
  o.yaz("MAGAZA", "yeni");
  fs::copy_file(ilk / "MAGAZA_LOG.ldf", ikinci / "MAGAZA_LOG.ldf", fs::copy_options::overwrite_existing);
  EXPECT_TRUE(geriAl(ikinci)) << o.s.boxes.last();
  butun("ikinci");
}

// Who works in the company loses what he has not committed, and the copy has none of it.
TEST_F(KotuGirdi, ADatabaseInUse) {
  auto baska = o.surucu->make("(yerel)");
  const auto yarim = [&] {
    if (baska->state() == db::State::Open) baska->close();
    baska->open({"(yerel)", "sa", "gizli", "MAGAZA", false});
    baska->execute("BEGIN TRAN UPDATE T SET A='yarım'");
  };
  const auto biter = [&] {
    try {
      baska->execute("COMMIT");
      return std::string("tamam");
    } catch (const db::SqlError& hata) {
      return std::string(hata.what());
    }
  };
  yarim();
  const fs::path klasor = yedekle("MAGAZA");
  EXPECT_NE(biter(), "tamam");
  butun("eski");
  yarim();
  EXPECT_TRUE(geriAl(klasor)) << o.s.boxes.last();
  EXPECT_NE(biter(), "tamam");
  butun("eski");
}

TEST_F(KotuGirdi, TwoAtOnceOnOneServerFromTwoProgramFolders) {
  const std::string suruyor = "Başka bir yedekleme, geri alma ya da aktarma sürüyor. Bitmesini bekleyiniz.";
  support::FakeSurroundings oteki;
  const fs::path program = o.klasor / "öteki program";
  fs::create_directory(program);
  oteki.platform.folder = program;
  const auto surucu = db::makeConnectionFactory(program);
  oteki.oturum.surucu = surucu.get();
  oteki.oturum.Server_Adi = "(yerel):" + o.veri.string();
  metinde("Data Dosyası Yedekleniyor", [&] {
    for (const bool canli : {false, true})
      EXPECT_EQ((canli ? Canli_Yedekle : Yedekle)(oteki.oturum, "MAGAZA", hedef).hata, suruyor);
  });
  yedekle("MAGAZA");
  o.s.progress.onPump = {};
  EXPECT_EQ(oteki.boxes.texts(), (Adlar{suruyor, suruyor}));
  EXPECT_EQ(icerik(hedef), Adlar{"MAGAZA_2012_03_14"});
  butun("eski");
}

// A backup of another machine into the same folder, under way.
TEST_F(KotuGirdi, AnothersUnfinishedFolderIsLetBe) {
  const fs::path onun = hedef / "MAGAZA_2012_03_14.yarim";
  fs::create_directory(onun);
  std::ofstream(onun / "MAGAZA.mdf") << "x";
  EXPECT_EQ(yedekle("MAGAZA"), hedef / "MAGAZA_2012_03_14");
  EXPECT_EQ(icerik(onun), Adlar{"MAGAZA.mdf"});
}

TEST_F(KotuGirdi, TheServersOwnDatabaseIsNotMoved) {
  const fs::path kaynak = o.klasor / "kaynak";
  fs::create_directory(kaynak);
  for (const char* const ad : {"master.mdf", "master_log.ldf"}) fs::copy_file(o.veri / ad, kaynak / ad);
  temizle();
  EXPECT_FALSE(Aktar(o.s.oturum, kaynak, o.veri.string(), {{"master", true}}, false));
  EXPECT_EQ(o.s.boxes.texts(),
            Adlar{"\"master\" sunucunun kendi veritabanıdır, taşınmaz. İşaretini kaldırınız."});
  butun("eski");
}

}  // namespace
}  // namespace maintenance::test
