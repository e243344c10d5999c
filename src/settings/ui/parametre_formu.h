// The controls of a parameter screen, made from the table of parameters and read back by it.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "session/izgara.h"
#include "session/oturum.h"
#include "settings/parametre.h"

class QGroupBox;
class QWidget;

namespace settings_ui {

class DuzenIzgarasi;

class ParametreFormu : public QObject {
  Q_OBJECT
 public:
  ParametreFormu(session::Oturum& oturum, settings::ParametreEkrani ekran, QObject* parent);

  // The control of a parameter; made at the first call, named as users of the system know it.
  QWidget* kontrol(std::size_t sira);
  QWidget* kontrol(const char* ad) {
    return kontrol(static_cast<std::size_t>(settings::parametreSirasi(ad)));
  }
  // Something that stands beside a control; before its frame is made.
  void yaninaKoy(const char* ad, QWidget* parca);
  // Least widths of the columns for fields and for check boxes.
  struct Sutunlar {
    int alan = 420, tik = 315;
  };
  // A frame with its parameters: fields with their captions, then check boxes.
  QGroupBox* cerceve(settings::Cerceve cerceve, const QString& baslik, Sutunlar sutunlar);
  QGroupBox* cerceve(settings::Cerceve hangi, const QString& baslik) { return cerceve(hangi, baslik, {}); }
  // Shows or hides a field and its caption.
  void gorunur(const char* ad, bool gorunur);

  void goster(const settings::Gosterilen& degerler);
  void goster(std::size_t sira, const std::string& deger);
  settings::Gosterilen oku() const;
  std::string oku(std::size_t sira) const;
  void firmaListesi(const std::vector<settings::Firma>& firmalar);
  void ambarListesi(const std::vector<session::ListeSecenegi>& ambarlar);

  // Asked for a colour; the test brings its own.
  std::function<std::optional<unsigned>(unsigned, QWidget*)> renkSec;

 signals:
  void degisti(int sira);

 private:
  struct Alan {
    QWidget* kontrol = nullptr;
    std::function<std::string()> oku;
    std::function<void(const std::string&)> yaz;
  };
  QWidget* satirKur(const std::vector<std::size_t>& siralar);
  Alan yap(std::size_t sira);
  Alan tik(const settings::Parametre& p, std::size_t sira);
  Alan satir(const settings::Parametre& p, std::size_t sira);
  Alan liste(const settings::Parametre& p, std::size_t sira);
  Alan metinListesi(std::size_t sira);
  Alan secim(const settings::Parametre& p, std::size_t sira);
  Alan renk(std::size_t sira);
  Alan uzunYazi(std::size_t sira);

  session::Oturum& oturum_;
  settings::ParametreEkrani ekran_;
  std::vector<Alan> alanlar_;
  std::map<std::string, std::vector<QWidget*>> parcalar_;
  std::map<std::string, std::pair<DuzenIzgarasi*, QWidget*>> hucreler_;  // of a field: where it stands
  settings::Gosterilen gosterilen_;  // of parameters without a control here
};

}  // namespace settings_ui
