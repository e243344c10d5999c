#include "settings/toplu_yazici.h"

#include "db/error.h"

namespace settings {

namespace {
constexpr int enCokSatir = 50;   // new rows of a statement
constexpr int enCokDeyim = 100;  // statements and new rows of a round trip
constexpr std::size_t enCokBayt = 64'000;
}  // namespace

std::unique_ptr<db::Rows> TopluYazici::oku(const std::string& deyim) {
  const std::string bas = acik_ ? "" : "BEGIN TRANSACTION ";
  acik_ = true;
  return baglanti_.query(bas + deyim);
}

void TopluYazici::ekle(const std::string& deyim) {
  satirlariBitir();
  yiginaKoy(deyim, 1);
}

void TopluYazici::satirEkle(const std::string& baslik, const std::string& degerler) {
  if (baslik != baslik_ || satirSayisi_ >= enCokSatir) {
    satirlariBitir();
    baslik_ = baslik;
    satirlar_ = baslik + " SELECT ";
  } else {
    satirlar_ += " UNION ALL SELECT ";
  }
  satirlar_ += degerler;
  ++satirSayisi_;
}

void TopluYazici::satirlariBitir() {
  if (satirSayisi_ == 0) return;
  yiginaKoy(satirlar_, satirSayisi_);
  baslik_.clear();
  satirSayisi_ = 0;
}

void TopluYazici::yiginaKoy(const std::string& deyim, int satir) {
  // The first batch opens the transaction, so that a single statement takes no round trip more.
  if (!acik_) {
    yigin_ = "BEGIN TRANSACTION ";
    acik_ = true;
  }
  yigin_ += deyim;
  yigin_ += '\n';
  sayi_ += satir;
  if (sayi_ >= enCokDeyim || yigin_.size() >= enCokBayt) gonder();
}

void TopluYazici::gonder() {
  if (yigin_.empty()) return;
  const std::string yigin = std::move(yigin_);
  yigin_.clear();
  sayi_ = 0;
  baglanti_.execute(yigin);
}

void TopluYazici::bitir() {
  satirlariBitir();
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
