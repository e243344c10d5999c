// Which screens there are. Each room offers one function that adds its own, one line a screen:
//
//   void rights_ui::ekranlariTanit(ui::EkranKaydi& kayit) {
//     kayit.tanit<EkleFrm>("Ekle_Frm");
//     kayit.tanit<YetkiFrm>("Yetki_Frm");
//   }
//
// and stands as one line in src/session/ui/ekranlar.cpp. Names are those of session::ekranBilgisi
// and session::menuButonlari. Buttons and commands of a screen that nobody added are not shown.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace session {
struct Oturum;
}

namespace ui {

class ConsolePort;
class Kart;

class EkranKaydi {
 public:
  // Makes the screen on its first use; it is kept and opened anew each time.
  using Yapici = std::function<Kart*(session::Oturum&, ConsolePort&)>;

  void tanit(const std::string& ad, Yapici yapici) { yapicilar_[ad] = std::move(yapici); }
  template <class Ekran>
  void tanit(const std::string& ad) {
    tanit(ad,
          [](session::Oturum& oturum, ConsolePort& konsol) -> Kart* { return new Ekran(oturum, konsol); });
  }

  bool var(const std::string& ad) const { return yapicilar_.contains(ad); }
  Kart* yap(const std::string& ad, session::Oturum& oturum, ConsolePort& konsol) const {
    return yapicilar_.at(ad)(oturum, konsol);
  }

 private:
  std::map<std::string, Yapici> yapicilar_;
};

}  // namespace ui
