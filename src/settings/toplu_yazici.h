// Many small statements in few round trips, all in one transaction.
#pragma once

#include <memory>
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

  // Rows that nobody else writes until the transaction ends; before the first statement only.
  std::unique_ptr<db::Rows> oku(const std::string& deyim);
  void ekle(const std::string& deyim);
  // A new row: "INSERT INTO T(A,B)" and "1,'x'". Rows of one heading that follow one another share a
  // statement.
  void satirEkle(const std::string& baslik, const std::string& degerler);
  void bitir();

 private:
  void gonder();
  void yiginaKoy(const std::string& deyim, int satir);
  void satirlariBitir();
  db::Connection& baglanti_;
  std::string yigin_;
  int sayi_ = 0;
  std::string baslik_, satirlar_;  // of the statement that still takes rows
  int satirSayisi_ = 0;
  bool acik_ = false;
};

}  // namespace settings
