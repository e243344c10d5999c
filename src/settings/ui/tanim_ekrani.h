// The editors of the reference tables: one screen that is told by data which grids it has.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "session/oturum.h"
#include "settings/tanim.h"
#include "ui/kart.h"

class QLabel;

namespace ui {
class ConsolePort;
class Izgara;
}  // namespace ui

namespace settings_ui {

class TanimEkrani : public ui::Kart {
  Q_OBJECT
 public:
  struct Gorunum {
    const char* resim;
    const char* baslik;
    std::vector<std::string_view> turler;  // one grid each
  };
  TanimEkrani(session::Oturum& oturum, ui::ConsolePort& konsol, const Gorunum& gorunum);
  void ac() override;

 protected:
  struct Bolum {
    const settings::TanimTuru* tur;
    ui::Izgara* izgara;
    session::IzgaraSatirlari okunan;                 // the table as it was read
    std::unique_ptr<settings::AnahtarSayaci> sayac;  // empty: to be counted anew
    int yazilanSatir = -1;
    std::map<int, bool> hareketli;  // warehouses with movements, by row number
  };
  Bolum& bolum() { return *bolumler_.front(); }
  ui::Izgara& izgara() { return *bolumler_.front()->izgara; }
  virtual void acildi() {}
  // Validates and saves all grids; true when everything is stored.
  bool kaydet();
  session::Oturum& oturum_;

 private:
  void izgaraKur(Bolum& b);
  void kurallar(Bolum& b);
  void doldur(Bolum& b);
  std::string denetle(Bolum& b, int satir, int kolon, const std::string& metin);
  void yazildi(Bolum& b, int satir, int kolon);
  bool duzenlenir(Bolum& b, int satir, int kolon);
  bool girilir(const Bolum& b, int satir) const;
  void satirSecildi(Bolum& b, int satir);
  void sonrakiKod(Bolum& b, int satir, int kolon);
  void sil(Bolum& b);
  void gizle(Bolum& b, int satir);
  void hataGoster(Bolum& b, const settings::Kontrol& kontrol);
  bool birakilir();
  // Shows what others changed meanwhile; true when the user wants both works in the grids.
  bool baskasininki(const settings::ListeKaydi& kayit);
  void kaydetBas();
  void cik();

  ui::ConsolePort& konsol_;
  std::vector<std::unique_ptr<Bolum>> bolumler_;
  QLabel* hata_;
  QPushButton* kaydet_;
  bool dolduruluyor_ = false;
};

// Isyeri_Tanimlari has its linked warehouses and salespeople beside the grid; they are stored at once.
class IsyeriEkrani : public TanimEkrani {
  Q_OBJECT
 public:
  IsyeriEkrani(session::Oturum& oturum, ui::ConsolePort& konsol);

 protected:
  void acildi() override;

 private:
  void bagListele(settings::Bag bag);
  void bagKaydet(settings::Bag bag);
  ui::Izgara& bagIzgarasi(settings::Bag bag) { return *baglar_[static_cast<std::size_t>(bag)]; }
  std::string seciliId();
  ui::Izgara* baglar_[2] = {};
  bool bagYazildi_[2] = {};
  QLabel* bagHata_;
};

}  // namespace settings_ui
