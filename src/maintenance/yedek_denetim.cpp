#include "maintenance/yedek_denetim.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

#include "catalog/katalog.h"
#include "company/schema/schema.h"
#include "db/table_name.h"
#include "maintenance/denetim_klasoru.h"
#include "maintenance/yedek.h"
#include "maintenance/yedek_ortak.h"
#include "platform/folders.h"
#include "session/metin.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Icon;
using session::Oturum;
using Durum = DenetimSatiri::Durum;

constexpr std::size_t enCokAd = 8;  // names in a sentence

struct Vazgecildi {};

std::string sirala(const std::vector<std::string>& adlar) {
  std::string metin;
  for (std::size_t i = 0; i < std::min(adlar.size(), enCokAd); ++i) metin += (i == 0 ? "" : ", ") + adlar[i];
  if (adlar.size() > enCokAd) metin += " ve " + std::to_string(adlar.size() - enCokAd) + " tane daha";
  return metin;
}

// The numbers and texts of DBCC.
struct Bulgular : db::BatchSink {
  void onRows(std::unique_ptr<db::Rows>) override {}
  void onRowCount(std::int64_t) override {}
  void onMessage(const std::string& metin) override {
    if (metin.starts_with("Msg ")) satirlar.push_back(metin);
  }
  std::vector<std::string> satirlar;
};

class Denetci {
 public:
  Denetci(Oturum& o, fs::path klasor, std::string data, std::string log, YedekDenetimi& sonuc)
      : o_(o), klasor_(std::move(klasor)), data_(std::move(data)), log_(std::move(log)), sonuc_(sonuc) {}

  void calistir(db::LocalServer& sunucu) {
    o_.ilerleme->text("Yedek açılıyor");
    o_.ilerleme->pump();
    const DenetimKlasoru yer(o_.platform->programFolder());
    std::unique_ptr<db::DatabaseCopy> kopya;
    std::string neden;
    try {
      kopya = sunucu.openCopy(klasor_ / data_, klasor_ / log_, sonuc_.firma, yer.yol());
    } catch (const std::exception& hata) {
      neden = hata.what();
    }
    dosyalar(kopya.get());
    if (!kopya) return acilmadi(neden);
    sayfalar(kopya->connection());
    sema(kopya->connection());
    tablolar(*kopya);
  }
  // A copy that cannot be opened at all.
  void acilmadi(const std::string& neden) { ekle("Açılış", neden, Durum::Kusur); }

  void sakla() {
    const bool yeni = kanit_.firma.empty();
    if (yeni) {
      kanit_.sonradan = true;
      kanit_.firma = sonuc_.firma;
      kanit_.zaman = o_.saat->now();
      kanit_.data = data();
      kanit_.log = log();
    }
    if (kanit_.tablolar.empty() && sonuc_.saglam) kanit_.tablolar = sayilan_;
    kanit_.klasor = klasor_;
    kanit_.denetim = o_.saat->now();
    kanit_.saglam = sonuc_.saglam;
    // A damaged copy of a backup keeps the record of the whole one as it is.
    if (kanit_.data != data() || kanit_.log != log()) return;
    if (const std::string hata = kanitYaz(o_, kanit_); !hata.empty()) ekle("Kayıt", hata, Durum::Bilgi);
  }

 private:
  const DosyaOzeti& data() const { return ozetler_[0]; }
  const DosyaOzeti& log() const { return ozetler_[1]; }
  void ekle(std::string konu, std::string aciklama, Durum durum = Durum::Saglam) {
    sonuc_.satirlar.push_back({std::move(konu), std::move(aciklama), durum});
  }

  // Everything that the data file holds is checked while its bytes pass by for the hash.
  void dosyalar(db::DatabaseCopy* kopya) {
    o_.ilerleme->text("Yedek okunuyor ve denetleniyor");
    std::unique_ptr<db::CopyReading> okuma;
    try {
      if (kopya) okuma = kopya->read();
    } catch (const db::SqlError&) {
      // What is wrong is told page by page.
    }
    const platform::TakeBytes al = [&](const char* bayt, std::size_t sayi) { okuma->take(bayt, sayi); };
    const bool kendisi = kopya && fs::equivalent(kopya->file(), klasor_ / data_);
    const fs::path yollar[] = {klasor_ / data_, klasor_ / log_, kopya ? kopya->file() : fs::path()};
    const int okunacak = !kopya || kendisi ? 2 : 3;  // the third: what has taken the log in
    std::uintmax_t onceki = 0, toplam = 0;
    std::string yok;
    for (int i = 0; i < okunacak; ++i) toplam += fs::file_size(yollar[i]);
    for (int i = 0; i < okunacak; ++i) {
      const bool denetlenen = kendisi ? i == 0 : i == 2;
      const auto hata = ozetle(o_, yollar[i], onceki, toplam, i < 2 ? ozetler_[i].ozet : yok,
                               okuma && denetlenen ? al : platform::TakeBytes());
      if (hata == std::errc::operation_canceled) throw Vazgecildi{};
      if (hata) return ekle("Dosyalar", yollar[i].string() + " okunamadı: " + hata.message(), Durum::Kusur);
      onceki += fs::file_size(yollar[i]);
      if (i < 2) ozetler_[i].boyut = fs::file_size(yollar[i]);
    }
    if (okuma) bulgu_ = okuma->finish();
    karsilastir();
  }
  bool butun() const { return bulgu_.told && bulgu_.doubt.empty(); }
  void karsilastir() {
    if (const std::string baskasi = baskasininYedegi(o_, sonuc_.firma, data().ozet); !baskasi.empty())
      ekle("Dosyalar", baskasi, Durum::Kusur);
    auto bulunan = kanitBul(o_, sonuc_.firma, data().ozet);
    const bool butun = bulunan.has_value();
    if (!bulunan) bulunan = klasorunKaniti(o_, klasor_);
    if (!bulunan)
      return ekle("Dosyalar",
                  "Bu yedeğin alındığı andaki özeti burada kayıtlı değil; yalnız kendi içinde denetlendi.",
                  Durum::Bilgi);
    kanit_ = *bulunan;
    if (kanit_.denetim && kanit_.saglam) sonuc_.onceki = kanit_.denetim;
    if (!butun || kanit_.data != data())
      ekle("Dosyalar", data_ + " yedek alındığı andaki dosya değil.", Durum::Kusur);
    else if (kanit_.log != log())
      ekle("Dosyalar", log_ + " yedek alındığı andaki dosya değil.", Durum::Kusur);
    else if (kanit_.sonradan)
      ekle("Dosyalar",
           "Alındığı andaki özeti burada kayıtlı değil; iki dosya da ilk denetlendiği " +
               anYaz(kanit_.zaman) + " tarihindeki gibi.",
           Durum::Bilgi);
    else
      ekle("Dosyalar", "İki dosya da " + anYaz(kanit_.zaman) + " tarihinde alındığı gibi.");
    ayniBayt_ = butun && kanit_.data == data() && kanit_.log == log();
  }

  void sayfalar(db::Connection& baglanti) {
    if (butun()) return ekle("Sayfalar ve dizinler", "Hepsi okundu, hasar yok.");
    o_.ilerleme->text("Sayfalar ve dizinler tek tek denetleniyor");
    o_.ilerleme->pump();
    Bulgular bulgular;
    std::string hata;
    try {
      baglanti.run("DBCC CHECKDB ('" + db::escape(sonuc_.firma) + "') WITH NO_INFOMSGS", bulgular);
    } catch (const db::SqlError& e) {
      hata = e.what();
    }
    if (bulgular.satirlar.empty() && !hata.empty()) bulgular.satirlar.push_back(hata);
    if (bulgular.satirlar.empty() && !bulgu_.doubt.empty()) bulgular.satirlar.push_back(bulgu_.doubt);
    for (const std::string& satir : bulgular.satirlar) ekle("Sayfalar ve dizinler", satir, Durum::Kusur);
    if (bulgular.satirlar.empty()) ekle("Sayfalar ve dizinler", "Hepsi okundu, hasar yok.");
  }

  // What every company has had from its creation must be there; what an upgrade adds may be missing.
  void sema(db::Connection& baglanti) {
    if (db::sameName(sonuc_.firma, catalog::catalogDatabase)) return;
    std::map<std::string, std::vector<std::string>> kolonlar;
    const auto rows = baglanti.query(
        "SELECT o.name,c.name AS kolon FROM sysobjects o,syscolumns c WHERE c.id=o.id AND o.type='U'");
    for (std::int64_t i = 0; rows && i < rows->count(); ++i)
      kolonlar[session::Buyuk_Harf(rows->value(i, 0).trimmed())].push_back(
          session::Buyuk_Harf(rows->value(i, 1).trimmed()));
    std::vector<std::string> eksik;
    std::int64_t eskiTablo = 0, eskiKolon = 0;
    std::map<std::string, std::vector<std::string>> bilinmeyen = kolonlar;
    for (const auto& tablo : company::schema::tables()) {
      const auto at = kolonlar.find(session::Buyuk_Harf(tablo.name));
      bilinmeyen.erase(session::Buyuk_Harf(tablo.name));
      const bool ilk = tablo.stage == catalog::Stage::Base;
      if (at == kolonlar.end()) {
        if (ilk) eksik.push_back(tablo.name);
        eskiTablo += ilk ? 0 : 1;
        continue;
      }
      for (const auto& kolon : tablo.columns) {
        const auto& var = at->second;
        if (kolon.dropped || std::ranges::find(var, session::Buyuk_Harf(kolon.name)) != var.end()) continue;
        const bool hep = ilk && kolon.stage == catalog::Stage::Base;
        if (hep) eksik.push_back(tablo.name + "." + kolon.name);
        eskiKolon += hep ? 0 : 1;
      }
    }
    std::vector<std::string> yeniler;
    for (const auto& [ad, kolon] : bilinmeyen) yeniler.push_back(ad);
    if (!yeniler.empty())
      ekle("Şema", "Bu programın bilmediği tablolar var, daha yeni bir sürümden olabilir: " + sirala(yeniler),
           Durum::Bilgi);
    if (!eksik.empty())
      ekle("Şema", "Bir firmada bulunması gerekenler eksik: " + sirala(eksik), Durum::Kusur);
    else if (eskiTablo + eskiKolon != 0)
      ekle("Şema",
           "Önceki sürümden: yeni " + std::to_string(eskiTablo) + " tablo ve " + std::to_string(eskiKolon) +
               " kolon yok. Geri alınan firma güncellenmek ister.",
           Durum::Bilgi);
    else
      ekle("Şema", "Bir firmada bulunması gereken her tablo ve kolon var.");
  }

  void tablolar(db::DatabaseCopy& kopya) {
    o_.ilerleme->text("Tablolar sayılıyor ve toplanıyor");
    o_.ilerleme->pump();
    sayilan_ = butun() ? bulgu_.tables : kopya.tables();
    sonuc_.tablo = static_cast<std::int64_t>(sayilan_.size());
    for (const auto& t : sayilan_) sonuc_.satir += t.rows;
    sonuc_.tablolar = sayilan_;
    std::uint64_t toplam = 0;
    for (const auto& t : sayilan_) toplam += t.sum;
    const std::string sayi = std::to_string(sonuc_.tablo) + " tablo, " + std::to_string(sonuc_.satir) +
                             " satır, toplamı " + toplamYaz(toplam);
    if (kanit_.tablolar.empty())
      return ekle("Tablolar", ayniBayt_ && !kanit_.sonradan
                                  ? sayi + ": duran sunucunun dosyalarıyla aynı baytlarda sayıldı."
                                  : sayi + ": yalnız yedekte sayıldı.");
    std::map<std::string, db::TableDigest> simdi;
    for (const auto& t : sayilan_) simdi[t.name] = t;
    bool ayni = true;
    for (const auto& once : kanit_.tablolar) {
      const auto at = simdi.find(once.name);
      if (at != simdi.end() && at->second == once) continue;
      ayni = false;
      ekle("Tablolar",
           once.name + ": yedek alınırken " + std::to_string(once.rows) + " satırdı, yedekte " +
               (at == simdi.end()              ? "yok."
                : at->second.rows != once.rows ? std::to_string(at->second.rows) + " satır var."
                                               : "aynı sayıda satır var, değerleri başka."),
           Durum::Kusur);
    }
    if (ayni)
      ekle("Tablolar",
           sayi + (kanit_.sonradan ? ": ilk denetlendiği andaki gibi." : ": yedek alındığı andaki gibi."));
  }

  Oturum& o_;
  fs::path klasor_;
  std::string data_, log_;
  YedekDenetimi& sonuc_;
  DosyaOzeti ozetler_[2];
  YedekKaniti kanit_;
  db::CopyFindings bulgu_;
  std::vector<db::TableDigest> sayilan_;
  bool ayniBayt_ = false;
};

}  // namespace

YedekDenetimi Yedek_Denetle(Oturum& oturum, const fs::path& klasor) {
  YedekDenetimi sonuc;
  const auto soyle = [&](const std::string& metin) {
    oturum.kutular->message(metin, Icon::Warning);
    return sonuc;
  };
  std::string data, log;
  sonuc.firma = yedekFirmasi(klasorDosyalari(klasor), data, log);
  if (sonuc.firma.empty()) return soyle("Bu Klasör Geri Alınabilecek Bir Firma Bilgisi İçermiyor.");
  const auto sunucu = oturum.surucu->local(oturum.Server_Adi);
  if (!sunucu) return soyle("Yalnız yerel sunucunun yedekleri burada açılıp denetlenebilir.");
  Denetci denetci(oturum, klasor, data, log, sonuc);
  try {
    denetci.calistir(*sunucu);
  } catch (const Vazgecildi&) {
    sonuc.vazgecildi = true;
    oturum.ilerleme->text("");
    return sonuc;
  } catch (const std::exception& e) {
    denetci.acilmadi(e.what());
  }
  sonuc.calisti = true;
  sonuc.saglam = std::ranges::none_of(sonuc.satirlar, [](const auto& s) { return s.durum == Durum::Kusur; });
  denetci.sakla();
  oturum.ilerleme->text("");
  return sonuc;
}

std::string toplamYaz(std::uint64_t toplam) {
  std::array<char, 24> metin{};
  std::snprintf(metin.data(), metin.size(), "%016llx", static_cast<unsigned long long>(toplam));
  return metin.data();
}

std::string_view durumYazisi(Durum durum) {
  constexpr std::string_view yazilar[] = {"Sağlam", "Bilgi", "Kusurlu"};
  return yazilar[static_cast<std::size_t>(durum)];
}

}  // namespace maintenance
