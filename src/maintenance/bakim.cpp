#include "maintenance/bakim.h"

#include <algorithm>
#include <cstdlib>

#include "maintenance/aktar.h"
#include "maintenance/denetim_klasoru.h"
#include "maintenance/kayit_metni.h"
#include "maintenance/servis_kontrol.h"
#include "platform/files.h"
#include "session/statements.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Oturum;

constexpr std::string_view bas = "bakim 1";

std::string dosyaHatasi(const fs::path& dosya, const std::error_code& hata) {
  return dosya.string() + ": " + hata.message();
}

bool var(const fs::path& yol) {
  std::error_code hata;
  return fs::exists(fs::symlink_status(yol, hata));
}

void sil(const fs::path& yol) {
  std::error_code hata;
  fs::remove_all(yol, hata);
}

}  // namespace

Bakim::Kilit Bakim::kilitle(Oturum& oturum) {
  Kilit kilit{platform::FileLock::tryLock(oturum.platform->programFolder() / "bakim.kilit"), nullptr};
  kilit.tutuldu = kilit.program != nullptr;
  const auto yerel = oturum.surucu->local(oturum.Server_Adi);
  if (!kilit.tutuldu || !yerel || !yerel->exists()) return kilit;
  kilit.sunucu = platform::FileLock::tryFolder(yerel->folder());
  kilit.tutuldu = kilit.sunucu != nullptr;
  return kilit;
}

Bakim::Bakim(Oturum& oturum, Kilit kilit)
    : oturum_(oturum), kilit_(std::move(kilit)), kayit_(oturum.platform->programFolder() / "bakim.kayit") {}

std::unique_ptr<Bakim> Bakim::basla(Oturum& oturum, const std::string& is, std::string& hata) {
  Kilit kilit = kilitle(oturum);
  if (!kilit.tutuldu) {
    hata = "Başka bir yedekleme, geri alma ya da aktarma sürüyor. Bitmesini bekleyiniz.";
    return nullptr;
  }
  {
    const std::unique_ptr<Bakim> yarim(new Bakim(oturum, {}));
    if (yarim->oku()) yarim->temizle();
    yarim->acik_ = false;
  }
  std::unique_ptr<Bakim> bakim(new Bakim(oturum, std::move(kilit)));
  bakim->is_ = is;
  hata = bakim->yaz();
  if (!hata.empty()) return nullptr;
  return bakim;
}

Bakim::~Bakim() {
  if (!acik_) return;
  if (ileri_) geriKoy();
  for (const fs::path& yol : gecici_) sil(yol);
  for (const Degisim& d : yer_.degisimler) sil(d.yeni);
  sil(kayit_);
}

bool Bakim::oku() {
  const auto metin = platform::readFile(kayit_);
  if (!metin) return false;
  const auto satirlar = parcala(*metin, '\n');
  if (satirlar.empty() || satirlar.front() != bas) return false;
  for (const std::string& satir : satirlar) {
    const auto alanlar = parcala(satir, '\t');
    if (alanlar[0] == "is" && alanlar.size() == 2) is_ = alanlar[1];
    if (alanlar[0] == "sil" && alanlar.size() == 2) gecici_.emplace_back(alanlar[1]);
    if (alanlar[0] == "koy" && alanlar.size() == 4)
      yer_.degisimler.push_back({alanlar[1], alanlar[2], alanlar[3]});
    if (alanlar[0] == "dene" && alanlar.size() == 2) yer_.dene.push_back(alanlar[1]);
    if (alanlar[0] == "klasor" && alanlar.size() == 2) yer_.klasor = alanlar[1];
    if (alanlar[0] == "ekle" && alanlar.size() == 2) yer_.ekle.push_back(alanlar[1]);
    if (alanlar[0] == "hazir" && alanlar.size() == 3)
      hazirlanan_.push_back({alanlar[1], std::strtoll(alanlar[2].c_str(), nullptr, 10)});
    if (alanlar[0] == "ileri") ileri_ = true;
  }
  return true;
}

std::string Bakim::yaz() const {
  std::string metin = std::string(bas) + "\nis\t" + is_ + "\n";
  for (const fs::path& yol : gecici_) metin += "sil\t" + yol.string() + "\n";
  for (const Degisim& d : yer_.degisimler)
    metin += "koy\t" + d.yeni.string() + "\t" + d.canli.string() + "\t" + d.eski.string() + "\n";
  if (!yer_.klasor.empty()) metin += "klasor\t" + yer_.klasor + "\n";
  for (const std::string& ad : yer_.ekle) metin += "ekle\t" + ad + "\n";
  for (const std::string& ad : yer_.dene) metin += "dene\t" + ad + "\n";
  for (const Hazirlanan& h : hazirlanan_) metin += "hazir\t" + h.ad + "\t" + std::to_string(h.sonKart) + "\n";
  if (ileri_) metin += "ileri\n";
  const std::error_code hata = platform::writeFileSafely(kayit_, metin);
  return hata ? dosyaHatasi(kayit_, hata) : std::string();
}

std::string Bakim::gecici(const fs::path& yol) {
  if (yol.string().find_first_of("\t\n") != std::string::npos)
    return "Klasör adında sekme ya da satır sonu olamaz: " + yol.string();
  gecici_.push_back(yol);
  return yaz();
}

std::string Bakim::hazirlanacak(const std::string& veritabani, std::int64_t sonKart) {
  hazirlanan_.push_back({veritabani, sonKart});
  return yaz();
}

std::string Bakim::degis(Yerlestirme is) {
  yer_ = std::move(is);
  for (Degisim& d : yer_.degisimler)
    if (!var(d.canli)) d.eski.clear();
  ileri_ = true;
  const std::string hata = yaz();
  ileri_ = hata.empty();
  return hata;
}

// Each step can be taken again: where `yeni` is gone it stands in its place already.
std::string Bakim::yerineKoy() {
  for (const Degisim& d : yer_.degisimler) {
    if (!var(d.yeni)) continue;
    if (!d.eski.empty() && var(d.canli) && !var(d.eski))
      if (const std::error_code hata = platform::renameDurably(d.canli, d.eski))
        return dosyaHatasi(d.canli, hata);
    if (const std::error_code hata = platform::renameDurably(d.yeni, d.canli))
      return dosyaHatasi(d.canli, hata);
  }
  return {};
}

std::string Bakim::ekleVeDene() {
  std::string hata;
  try {
    for (const std::string& ad : yer_.ekle)
      if (!Veritabani_Ekle(oturum_, yer_.klasor, ad + ".mdf", ad + "_log.ldf", ad))
        return "\"" + ad + "\" sunucuya eklenemedi.";
    if (!yer_.klasor.empty()) Veri_Klasorunu_Yaz(oturum_, yer_.klasor);
  } catch (const db::SqlError& neden) {
    return neden.what();
  }
  for (const std::string& ad : yer_.dene)
    if (!veritabaniAcilir(oturum_, ad, hata)) return "\"" + ad + "\" açılamadı: " + hata;
  return {};
}

std::string Bakim::geriKoy() {
  std::string sonuc;
  for (const Degisim& d : yer_.degisimler) {
    if (d.eski.empty() && !var(d.yeni)) sil(d.canli);
    if (d.eski.empty() || !var(d.eski)) continue;
    if (const std::error_code hata = platform::renameDurably(d.eski, d.canli))
      sonuc = dosyaHatasi(d.canli, hata);
  }
  if (sonuc.empty()) ileri_ = false;
  return sonuc;
}

void Bakim::ekleneniBirak() {
  for (const std::string& ad : yer_.ekle) {
    try {
      session::Katalog_Bagla(oturum_, "master");
      oturum_.Baglanti->execute("DROP DATABASE " + ad);
    } catch (const db::SqlError&) {
      // Not attached yet, or its files cannot be read: they go with geriKoy().
    }
  }
}

void Bakim::hazirligiGeriAl() {
  for (const Hazirlanan& h : hazirlanan_) Firma_Hazirligini_Geri_Al(oturum_, h.ad, h.sonKart);
  hazirlanan_.clear();
}

void Bakim::bitir() {
  // From here on the old files are waste: what is left of them after a kill goes at the next start.
  for (const Degisim& d : yer_.degisimler)
    if (!d.eski.empty()) gecici_.push_back(d.eski);
  yer_ = {};
  hazirlanan_.clear();
  ileri_ = false;
  acik_ = false;
  if (!yaz().empty()) {
    // A record that still says "ileri" would put the old ones back.
    sil(kayit_);
  }
  for (const fs::path& yol : gecici_) sil(yol);
  sil(kayit_);
}

// Forwards, with the service up at the end; false when it did not work out.
bool Bakim::tamamla() {
  Servis_Durdur(oturum_);
  return yerineKoy().empty() && Servis_Baslat(oturum_).empty() && ekleVeDene().empty();
}

// Ends a run that was killed. The lock is held by the caller. The record goes last: a second kill finds it.
void Bakim::temizle() {
  if (ileri_) {
    if (tamamla()) return bitir();
    Servis_Baslat(oturum_);
    ekleneniBirak();
    Servis_Durdur(oturum_);
    geriKoy();
  }
  for (const fs::path& yol : gecici_) sil(yol);
  for (const Degisim& d : yer_.degisimler) sil(d.yeni);
  Servis_Baslat(oturum_);
  hazirligiGeriAl();
  sil(kayit_);
}

std::string Bakimi_Tamamla(Oturum& oturum) {
  const fs::path klasor = oturum.platform->programFolder();
  denetimArtiklariniSil(klasor);
  for (const fs::path& yer : {klasor, klasor / "yedek_kanit"}) platform::removeUnfinishedWrites(yer);
  if (!var(klasor / "bakim.kayit")) return {};
  const Bakim::Kilit kilit = Bakim::kilitle(oturum);
  if (!kilit.tutuldu) return {};  // it goes on in another process
  Bakim yarim(oturum, {});
  const bool okundu = yarim.oku();
  if (okundu) yarim.temizle();
  yarim.acik_ = false;
  return okundu ? "Yarıda kalan işlem (" + yarim.is_ + ") sonlandırıldı; sunucu çalışıyor." : std::string();
}

bool veritabaniAcilir(Oturum& oturum, const std::string& ad, std::string& hata) {
  try {
    session::Katalog_Bagla(oturum, ad);
    oturum.Baglanti->query("SELECT COUNT(*) FROM sysobjects");
    oturum.Baglanti->close();
    return true;
  } catch (const db::SqlError& neden) {
    hata = neden.what();
    return false;
  }
}

}  // namespace maintenance
