#include "session/ui/bilgi_okuyucu.h"

#include <condition_variable>
#include <mutex>

#include "ui/uzun_is.h"

namespace session_ui {

constexpr int bekleme = 200;  // milliseconds; who walks through the tree waits for nothing

struct BilgiOkuyucu::Ortak {
  std::mutex kilit;
  std::condition_variable degisti;
  BilgiOkuyucu* sahip;
  int istek = 0, calisan = 0;
};

BilgiOkuyucu::BilgiOkuyucu(QObject* parent) : QObject(parent), ortak_(std::make_shared<Ortak>()) {
  ortak_->sahip = this;
  bekleme_.setSingleShot(true);
  bekleme_.setInterval(bekleme);
  connect(&bekleme_, &QTimer::timeout, this, &BilgiOkuyucu::basla);
}

BilgiOkuyucu::~BilgiOkuyucu() {
  birak();
  const std::lock_guard tut(ortak_->kilit);
  ortak_->sahip = nullptr;
}

void BilgiOkuyucu::iste(const session::OturumDegerleri& oturum, const session::Dugum& firma) {
  const std::lock_guard tut(ortak_->kilit);
  ++ortak_->istek;
  oturum_ = oturum;
  firma_ = firma;
  bekleme_.start();
}

void BilgiOkuyucu::birak() {
  bekleme_.stop();
  std::unique_lock tut(ortak_->kilit);
  ++ortak_->istek;
  if (ortak_->calisan > 0 && oturum_.surucu && oturum_.surucu->local(oturum_.Server_Adi))
    ortak_->degisti.wait(tut, [this] { return ortak_->calisan == 0; });
}

void BilgiOkuyucu::basla() {
  if (ui::isSuruyor()) {
    bekleme_.start();
    return;
  }
  std::unique_lock tut(ortak_->kilit);
  ++ortak_->calisan;
  ui::arkadaCalistir([ortak = ortak_, istek = ortak_->istek, oturum = oturum_, firma = firma_] {
    OkunanBilgi bilgi{session::Firma_Bilgisi_Oku(oturum, firma), {}};
    if (bilgi.veritabaniVar) bilgi.eksik = company::upgrade::Sema_Eksigi_Oku(oturum, firma.text);
    const std::lock_guard icerde(ortak->kilit);
    --ortak->calisan;
    ortak->degisti.notify_all();
    if (!ortak->sahip || istek != ortak->istek) return;
    QMetaObject::invokeMethod(
        ortak->sahip,
        [sahip = ortak->sahip, istek, id = firma.id, bilgi] {
          if (istek == sahip->ortak_->istek) emit sahip->okundu(id, bilgi);
        },
        Qt::QueuedConnection);
  });
}

}  // namespace session_ui
