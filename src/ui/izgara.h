// The editable grid of every screen. Keys: typing, a double click or F2 (where the screen has no use for it)
// edit a cell; Enter and Tab go on, Shift+Tab goes back, Escape gives the old text back; Enter behind the
// last cell adds a row; Space toggles a tick; Ctrl+C, Ctrl+X, Ctrl+V exchange blocks with spreadsheets;
// Ctrl+Z and Ctrl+Y undo and repeat. Column widths are kept under the grid's name.
#pragma once

#include <QTableView>
#include <functional>
#include <string>

#include "session/oturum.h"
#include "ui/izgara_modeli.h"

class QLineEdit;
class QTimer;

namespace ui {

class Izgara : public QTableView {
  Q_OBJECT
 public:
  // `ad`, as "Isyeri_Tanimlari.FisGrd", is the name under which widths are kept; the part behind the point
  // is the object's name.
  Izgara(session::Oturum& oturum, const QString& ad, IzgaraModeli::Kolonlar kolonlar,
         QWidget* parent = nullptr);

  IzgaraModeli& veri() { return *model_; }
  const IzgaraModeli& veri() const { return *model_; }

  void doldur(const session::IzgaraSatirlari& satirlar);
  void listeKur(std::string_view kolon, std::vector<session::ListeSecenegi> liste);
  void kolonGoster(std::string_view kolon, bool goster);
  int satir() const { return currentIndex().row(); }
  void git(int satir, int kolon);
  void git(int satir, std::string_view kolon) { git(satir, model_->kolon(kolon)); }
  // Goes to the cell and opens its editor.
  void duzenle(int satir, std::string_view kolon);
  // Takes the editor's text into the grid; false when it is refused (its box has been shown).
  bool duzenlemeyiBitir();
  // True when nothing unsaved is left or the user lets it go.
  bool birakilir();

  bool satirEklenir = true;       // Enter and paste add rows at the end
  std::string satirEkleyen;       // column whose Enter adds the row; empty: the last that takes edits
  bool deleteSatirSiler = false;  // Delete emits silIstendi instead of clearing the cells
  // Whether the row may become the current one; where it may not, the key goes to this column of the old row
  // (empty: stays where it was).
  std::function<bool(int satir)> girilir;
  std::string_view geriKolonu;
  // What a row added by the keys starts with.
  std::function<session::IzgaraSatiri(int satir)> yeniSatir;

 signals:
  void satirSecildi(int satir);
  void silIstendi();
  void ctrlEnter(int satir, int kolon);
  void hucreyeGirildi(int satir, int kolon);
  // Up on the first row, Down on the last one (a Qt key).
  void kenardanCikildi(int tus);
  // A cell's text is being typed in this field.
  void yaziliyor(int kolon, QLineEdit* alan);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void currentChanged(const QModelIndex& now, const QModelIndex& before) override;

 private:
  friend class IzgaraDelege;
  bool tusIsle(QKeyEvent* event);
  // On to the next cell that takes edits (or back); `ekle` adds a row at the end.
  void ilerle(bool geri, bool ekle);
  bool sonGorunurSatir(int satir) const;
  int sonGorunurKolon() const;
  void degistirTik(const QModelIndex& index);
  void kopyala();
  void yapistir();
  void temizle();
  void hataGoster(const std::string& hata);
  // Checks and stores what stands in the editor; false when it is refused.
  bool editordenYaz(QWidget* editor, const QModelIndex& index);
  void gizliSatirlar(int ilk, int son);
  void odakGoster(bool odakta);
  void genislikleriOku();
  void genislikleriYaz();

  session::Oturum& oturum_;
  QString ad_;
  IzgaraModeli* model_;
  QTimer* genislikSaati_;
  QWidget* editor_ = nullptr;  // the open one
  bool denetimde_ = false;     // a box of a check is up
  bool geriGidiyor_ = false;   // a row that may not be entered is being left
};

}  // namespace ui
