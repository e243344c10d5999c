// Many small statements in few round trips, all in one transaction.
#pragma once

#include <string>

#include "db/connection.h"

namespace settings {

class TopluYazici {
 public:
  explicit TopluYazici(db::Connection& baglanti) : baglanti_(baglanti) {}
  // A transaction that was not ended is taken back.
  ~TopluYazici();
  TopluYazici(const TopluYazici&) = delete;
  TopluYazici& operator=(const TopluYazici&) = delete;

  void ekle(const std::string& deyim);
  void bitir();

 private:
  void gonder();
  db::Connection& baglanti_;
  std::string yigin_;
  int sayi_ = 0;
  bool acik_ = false;
};

}  // namespace settings
