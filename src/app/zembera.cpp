// The desktop program.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <QMessageBox>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "maintenance/bakim.h"
#include "maintenance/yedek_kaydi.h"
#include "platform/folders.h"
#include "session/giris.h"
#include "session/oturum.h"
#include "session/ui/pencereler.h"
#include "session/yerel_ortam.h"
#include "ui/boxes.h"
#include "ui/progress.h"
#include "ui/renkler.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"

namespace {

std::string sunucuHazirla(session::Oturum& oturum, const std::string& yonetici, const std::string& sifre) {
  const catalog::KurulumRaporu rapor = catalog::Sunucu_Hazirla(oturum, {yonetici, sifre, {}});
  return rapor.sonuc == catalog::KurulumSonucu::Hazirlandi ? std::string() : rapor.metin;
}

// What the session record carries on a desktop. Lives as long as the program.
struct Masaustu {
  explicit Masaustu(const std::filesystem::path& klasor)
      : platform(klasor), yedekler(klasor), surucu(db::makeConnectionFactory(klasor)) {
    oturum.surucu = surucu.get();
    oturum.kutular = &kutular;
    oturum.ilerleme = &ilerleme;
    oturum.saat = &saat;
    oturum.platform = &platform;
    oturum.yedekler = &yedekler;
  }
  ui::DesktopBoxes kutular;
  ui::QuietProgress ilerleme;
  session::YerelSaat saat;
  session::YerelPlatform platform;
  maintenance::YedekKayitlari yedekler;
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
  const int sonuc = QApplication::exec();
  // A connection that a server keeps waiting would hold the end up for its whole time-out; nothing of it is
  // written anywhere.
  if (ui::birakilanIsVar()) {
    std::fflush(nullptr);
    std::_Exit(sonuc);
  }
  return sonuc;
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
  std::string renkler = "masaustu";
  secenekler.add_option("--renkler", renkler, "Renk düzeni: masaustu, acik ya da koyu")
      ->check(CLI::IsMember({"masaustu", "acik", "koyu"}).description(""))
      ->type_name("DÜZEN");
  // Help and version need no screen.
  secenekler.allow_extras();
  CLI11_PARSE(secenekler, argc, argv);
  if (surum) {
    std::printf("Zembera %s\n", session::programSurumu.data());
    return 0;
  }
  // The toolkit takes its own options (-platform, -style ...); what is left over then is nobody's.
  QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  Uygulama uygulama(argc, argv);
  secenekler.allow_extras(false);
  CLI11_PARSE(secenekler, argc, argv);
  if (!dizin.empty() && !std::filesystem::is_directory(dizin)) {
    std::fprintf(stderr, "Klasör yok: %s\n", dizin.c_str());
    return 2;
  }
  QApplication::setApplicationName("Zembera");
  ui::renkDuzeniSec(renkler == "koyu"   ? ui::RenkDuzeni::Koyu
                    : renkler == "acik" ? ui::RenkDuzeni::Acik
                                        : ui::RenkDuzeni::Masaustu);
  ui::applyTheme(uygulama);
  return calistir(uygulama, dizin.empty() ? platform::programFolder() : std::filesystem::absolute(dizin));
}
