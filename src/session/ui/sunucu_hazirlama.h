// Offered when the server answers but has no catalog: names the supervisor and prepares the server.
#pragma once

#include <QDialog>

#include "session/ui/giris_frm.h"

class QGridLayout;
class QLabel;
class QLineEdit;

namespace session_ui {

// Said beside the fields, before it is broken.
inline constexpr const char* yoneticiKurali =
    "Ad en çok 15 harf olabilir ve büyük harfle saklanır. Şifre en çok 15 karakter olabilir, içinde Türkçe "
    "harf (ç, ğ, ı, İ, ö, ş, ü) olamaz.";

inline constexpr const char* sifrelerFarkli = "İki şifre birbirinden farklı.";

// A field with its name and its caption as one row.
QLineEdit* alanEkle(QGridLayout* grid, int line, const char* name, const QString& caption, bool password);
// Name and password, typed twice, of the supervisor who is to be made, with the rule below them.
struct YoneticiAlanlari {
  QLineEdit *ad, *sifre, *tekrar;
};
YoneticiAlanlari yoneticiAlanlari(QGridLayout* grid);

class SunucuHazirlama : public QDialog {
  Q_OBJECT
 public:
  SunucuHazirlama(session::Oturum& oturum, const SunucuHazirlayici& hazirla, QWidget* parent);
  QString yonetici() const;
  QString sifre() const;

 private:
  void hazirla();
  session::Oturum& oturum_;
  const SunucuHazirlayici& hazirlayici_;
  QLineEdit *yonetici_, *sifre_, *tekrar_;
  QLabel* hata_;
  QPushButton* hazirlaBtn_;
};

}  // namespace session_ui
