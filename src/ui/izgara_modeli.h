// The rows of an editable grid as a Qt model: checked writing, steps of undo, marks on changed rows.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>
#include <vector>

#include "session/izgara.h"

namespace ui {

class IzgaraModeli : public QAbstractTableModel {
  Q_OBJECT
 public:
  using Kolonlar = std::vector<session::IzgaraKolonu>;
  // Checks a text for a cell and may change it; the text of the refusal, empty when it is taken.
  using Denetim = std::function<std::string(int satir, int kolon, std::string& metin)>;
  // Whether the cell takes edits at all, beyond what its column says.
  using Duzenlenir = std::function<bool(int satir, int kolon)>;

  explicit IzgaraModeli(QObject* parent) : QAbstractTableModel(parent) {}

  void kolonlariKur(Kolonlar kolonlar);
  const Kolonlar& kolonlar() const { return kolonlar_; }
  int kolon(std::string_view anahtar) const { return session::kolonSirasi(kolonlar_, anahtar); }
  void listeKur(int kolon, std::vector<session::ListeSecenegi> liste);
  const std::vector<session::ListeSecenegi>& liste(int kolon) const { return listeler_[size(kolon)]; }

  // Fills the grid; what is in it now counts as saved, and there is nothing to undo.
  void doldur(const session::IzgaraSatirlari& satirlar);
  // What is in the grid now counts as saved, and there is nothing to undo.
  void kaydedildi();
  session::IzgaraSatirlari satirlar() const;
  const session::IzgaraSatiri& satir(int satir) const { return satirlar_[size(satir)].veri; }
  const std::string& hucre(int satir, int kolon) const { return this->satir(satir).hucreler[size(kolon)]; }
  int adet() const { return static_cast<int>(satirlar_.size()); }
  bool gizli(int satir) const { return this->satir(satir).gizli; }
  bool bos(int satir) const;  // no text in any cell; a tick that is off is none
  bool duzenlenirMi(int satir, int kolon) const;

  int kendiliginden = -1;  // column that the editor fills by itself: alone it makes no row

  Denetim denetim;
  Duzenlenir duzenlenir;
  // Called inside the step of an accepted edit: what an editor changes beside the cell itself.
  std::function<void(int satir, int kolon)> yazildi;

  // Through the checks; the text of the refusal, empty when it was written.
  std::string yaz(int satir, int kolon, std::string metin);
  // Past the checks.
  void koy(int satir, int kolon, std::string metin);
  void satirEkle(int nereye, session::IzgaraSatiri satir = {});
  void satirCikar(int satir);
  void gizle(int satir);
  void hepsiniDegistir(const session::IzgaraSatirlari& satirlar);  // one step of undo
  // A block of cells from a cell on, rows added below where `uzar` allows. All or nothing: a refusal names
  // its line of the block.
  std::string yapistir(int satir, int kolon, const std::vector<std::vector<std::string>>& blok, bool uzar);

  bool geriAlinir() const { return !geri_.empty(); }
  bool yinelenir() const { return !ileri_.empty(); }
  void geriAl();
  void yinele();
  bool degisti() const;
  bool satirDegisti(int satir) const;

  // All changes during its life are one step of undo.
  class Adim {
   public:
    explicit Adim(IzgaraModeli& model) : model_(model) { ++model_.derinlik_; }
    ~Adim() { model_.adimBitti(); }
    Adim(const Adim&) = delete;
    Adim& operator=(const Adim&) = delete;

   private:
    IzgaraModeli& model_;
  };

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 signals:
  void icerikDegisti();  // after each step, its undo and its repetition

 private:
  struct Satir {
    session::IzgaraSatiri veri;
    int asil = -1;  // row as it was filled in; -1 for a new one
  };
  // Rows from `ilk` on: `eski` stood there, now `yeni` rows do.
  struct Degisim {
    int ilk;
    std::vector<Satir> eski;
    int yeni;
  };
  static std::size_t size(int i) { return static_cast<std::size_t>(i); }
  void degistir(int ilk, int eskiAdet, std::vector<Satir> yeni);
  Degisim uygula(int ilk, int eskiAdet, std::vector<Satir> yeni);
  void tersineUygula(std::vector<std::vector<Degisim>>& kaynak, std::vector<std::vector<Degisim>>& hedef);
  void adimBitti();
  void adimiGeriAl();
  Satir bosSatir() const;
  std::string denetle(int satir, int kolon, std::string& metin);
  QString gorunen(int satir, int kolon) const;

  Kolonlar kolonlar_;
  std::vector<std::vector<session::ListeSecenegi>> listeler_;
  std::vector<Satir> satirlar_;
  session::IzgaraSatirlari asil_;
  std::vector<std::vector<Degisim>> geri_, ileri_;
  std::vector<Degisim> adim_;
  int derinlik_ = 0;
};

}  // namespace ui
