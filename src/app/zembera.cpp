// The desktop program.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <QMessageBox>
#include <memory>

#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "platform/folders.h"
#include "maintenance/bakim.h"
#include "session/giris.h"
#include "session/oturum.h"
#include "session/ui/pencereler.h"
#include "session/yerel_ortam.h"
#include "ui/boxes.h"
#include "ui/progress.h"
#include "ui/theme.h"

namespace {

constexpr const char* programVersion = "2012.002";

std::string sunucuHazirla(session::Oturum& oturum, const std::string& yonetici, const std::string& sifre) {
  const catalog::KurulumRaporu rapor = catalog::Sunucu_Hazirla(oturum, {yonetici, sifre, {}});
  return rapor.sonuc == catalog::KurulumSonucu::Hazirlandi ? std::string() : rapor.metin;
}

// What the session record carries on a desktop. Lives as long as the program.
struct Masaustu {
  explicit Masaustu(const std::filesystem::path& klasor)
      : platform(klasor), surucu(db::makeConnectionFactory(klasor)) {
    oturum.surucu = surucu.get();
    oturum.kutular = &kutular;
    oturum.ilerleme = &ilerleme;
    oturum.saat = &saat;
    oturum.platform = &platform;
  }
  ui::DesktopBoxes kutular;
  ui::QuietProgress ilerleme;
  session::YerelSaat saat;
  session::YerelPlatform platform;
  std::unique_ptr<db::ConnectionFactory> surucu;
  session::Oturum oturum;
};

// A failure that no procedure took: it ends the operation, not the program.
class Uygulama : public QApplication {
 public:
  using QApplication::QApplication;
  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const std::exception& hata) {
      ui::DesktopBoxes().message(hata.what(), session::Icon::Stop);
      return true;
    }
  }
};

int calistir(QApplication& uygulama, const std::filesystem::path& klasor) {
  Masaustu masaustu(klasor);
  session::Oturum& oturum = masaustu.oturum;
  if (session::Giris_Yukle(oturum) == session::BolgeselSonuc::ProgramBitsin) return 0;
  if (const std::string bitirilen = maintenance::Bakimi_Tamamla(oturum); !bitirilen.empty())
    oturum.kutular->message(bitirilen, session::Icon::Information);

  session_ui::Pencereler pencereler(oturum, sunucuHazirla);
  QObject::connect(&pencereler, &session_ui::Pencereler::cikis, &uygulama, &QApplication::quit);
  return QApplication::exec();
}

void turkceKonus(CLI::App& secenekler) {
  const auto yazici = std::make_shared<CLI::Formatter>();
  yazici->label("Usage", "Kullanım");
  yazici->label("OPTIONS", "SEÇENEKLER");
  secenekler.formatter(yazici);
  secenekler.option_defaults()->group("Seçenekler");
  secenekler.set_help_flag("-h,--help", "Bu yardımı gösterir ve çıkar")->group("Seçenekler");
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App secenekler("Korvena Zembera yönetim konsolu", "zembera");
  turkceKonus(secenekler);
  std::string dizin;
  bool surum = false;
  secenekler.add_option("--dizin", dizin, "Program klasörü (sys.inf burada durur)")->type_name("KLASÖR");
  secenekler.add_flag("--surum", surum, "Sürümü yazar ve çıkar");
  // Qt's own options (-platform, -style ...) are left to it.
  secenekler.allow_extras();
  CLI11_PARSE(secenekler, argc, argv);
  if (surum) {
    std::printf("Zembera %s\n", programVersion);
    return 0;
  }
  QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  Uygulama uygulama(argc, argv);
  QApplication::setApplicationName("Zembera");
  ui::applyTheme(uygulama);
  return calistir(uygulama, dizin.empty() ? platform::programFolder() : std::filesystem::absolute(dizin));
}
