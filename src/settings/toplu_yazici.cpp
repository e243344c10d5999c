#include "settings/toplu_yazici.h"

#include "db/error.h"

namespace settings {

namespace {
constexpr int enCokDeyim = 100;  // statements of a round trip
constexpr std::size_t enCokBayt = 64'000;
}  // namespace

void TopluYazici::ekle(const std::string& deyim) {
  // The first batch opens the transaction, so that a single statement takes no round trip more.
  if (!acik_) {
    yigin_ = "BEGIN TRANSACTION ";
    acik_ = true;
  }
  yigin_ += deyim;
  yigin_ += '\n';
  if (++sayi_ >= enCokDeyim || yigin_.size() >= enCokBayt) gonder();
}

void TopluYazici::gonder() {
  if (yigin_.empty()) return;
  const std::string yigin = std::move(yigin_);
  yigin_.clear();
  sayi_ = 0;
  baglanti_.execute(yigin);
}

void TopluYazici::bitir() {
  if (!acik_) return;
  gonder();
  // By itself: a batch goes on behind a statement that was refused.
  baglanti_.execute("COMMIT TRANSACTION");
  acik_ = false;
}

TopluYazici::~TopluYazici() {
  if (!acik_) return;
  try {
    baglanti_.execute("IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
  } catch (const db::SqlError&) {  // the link is gone, and the transaction with it
  }
}

}  // namespace settings
