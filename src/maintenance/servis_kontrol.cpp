#include "maintenance/servis_kontrol.h"

#include <thread>

namespace maintenance {

namespace {

using session::Oturum;
using Service = session::Platform::Service;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds pulse{20};

void waitUntil(Oturum& oturum, Clock::time_point end) {
  while (Clock::now() < end) {
    oturum.ilerleme->pump();
    std::this_thread::sleep_for(pulse);
  }
}

// A session of this program would keep the service from stopping, or be cut off without knowing.
void baglantilariKapat(Oturum& oturum) {
  oturum.Kayitlar.close();
  for (auto* baglanti : {&oturum.Baglanti, &oturum.Baglanti2, &oturum.Baglanti3, &oturum.Baglanti4,
                         &oturum.Devir_Baglanti, &oturum.Kaynak_Baglanti}) {
    if (*baglanti && (*baglanti)->state() == db::State::Open) (*baglanti)->close();
  }
}

std::string yerelServis(db::LocalServer& server, bool baslat) {
  try {
    baslat ? server.start() : server.stop();
    return {};
  } catch (const db::SqlError& hata) {
    return std::string(baslat ? "Yerel sunucu başlatılamadı: " : "Yerel sunucu durdurulamadı: ") +
           hata.what();
  }
}

std::string sistemServisi(Oturum& oturum, bool baslat) {
  const Service istenen = baslat ? Service::Running : Service::Stopped;
  const std::string is = baslat ? "başlatılamadı" : "durdurulamadı";
  const auto son = Clock::now() + servisSuresi;
  bool soruldu = false;
  while (true) {
    const Service hal = oturum.platform->service(oturum.Server_Adi);
    if (hal == istenen) return {};
    if (hal == Service::Elsewhere) return "SQL Server servisi bu makineden yönetilemiyor.";
    if (hal != Service::Changing && !soruldu) {
      const std::string hata = oturum.platform->serviceRequest(oturum.Server_Adi, baslat);
      if (!hata.empty()) return "SQL Server servisi " + is + ": " + hata;
      soruldu = true;
    }
    if (Clock::now() >= son)
      return "SQL Server servisi " + std::to_string(servisSuresi.count()) + " saniye içinde " + is + ".";
    waitUntil(oturum, Clock::now() + std::chrono::milliseconds(200));
  }
}

std::string servis(Oturum& oturum, bool baslat) {
  if (!baslat) baglantilariKapat(oturum);
  if (const auto server = oturum.surucu->local(oturum.Server_Adi)) return yerelServis(*server, baslat);
  return sistemServisi(oturum, baslat);
}

}  // namespace

SunucuYeri sunucuYeri(const Oturum& oturum) {
  if (oturum.surucu->local(oturum.Server_Adi)) return SunucuYeri::Yerel;
  return oturum.platform->service(oturum.Server_Adi) == Service::Elsewhere ? SunucuYeri::Uzak
                                                                           : SunucuYeri::BuMakine;
}

std::string Servis_Durdur(Oturum& oturum) {
  return servis(oturum, false);
}
std::string Servis_Baslat(Oturum& oturum) {
  return servis(oturum, true);
}

void Bekle(Oturum& oturum, double saniye) {
  waitUntil(oturum, Clock::now() +
                        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(saniye)));
}

ServisMolasi::~ServisMolasi() {
  if (durdu_) Servis_Baslat(oturum_);
}

std::string ServisMolasi::durdur() {
  an_ = Clock::now();
  durdu_ = true;
  return Servis_Durdur(oturum_);
}

std::string ServisMolasi::baslat() {
  if (!durdu_) return {};
  const std::string hata = Servis_Baslat(oturum_);
  durdu_ = !hata.empty();
  saniye_ = std::chrono::duration<double>(Clock::now() - an_).count();
  return hata;
}

}  // namespace maintenance
