// The desktop program.
#include <QApplication>
#include <QMessageBox>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/masaustu_secenekleri.h"
#include "catalog/sunucu_hazirla.h"
#include "cli/yardim.h"
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

ui::RenkDuzeni duzen(const std::string& ad) {
  return ad == "koyu" ? ui::RenkDuzeni::Koyu : ad == "acik" ? ui::RenkDuzeni::Acik : ui::RenkDuzeni::Masaustu;
}

// Reads the command line; an exit code when the program is to end with it.
std::optional<int> oku(CLI::App& secenekler, int argc, char** argv, cli::Degerler& degerler) {
  try {
    secenekler.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::printf("%s", secenekler.help().c_str());
    return cli::tamam;
  } catch (const CLI::ParseError& hata) {
    std::fprintf(stderr, "%s\n", cli::turkceHata(secenekler, hata).c_str());
    return cli::yanlisKullanim;
  }
  degerler = cli::degerlerOku(secenekler, app::masaustuSecenekleri);
  std::string hata = cli::secimHatasi(degerler, app::masaustuSecenekleri);
  if (hata.empty() && degerler.var("dizin") && !std::filesystem::is_directory(degerler.metin("dizin")))
    hata = "Klasör yok: " + degerler.metin("dizin");
  if (hata.empty()) return std::nullopt;
  std::fprintf(stderr, "%s\n", hata.c_str());
  return cli::yanlisKullanim;
}

// Where there is no screen the toolkit would end the program with a dump; its page tells of another end.
void ekransiz(QtMsgType tur, const QMessageLogContext&, const QString& metin) {
  std::fprintf(stderr, "%s\n", qPrintable(metin));
  if (tur != QtFatalMsg) return;
  std::fputs("Ekran açılamadı. Komut satırı için: zembera-cli --help\n", stderr);
  std::_Exit(cli::reddedildi);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App secenekler(std::string(app::masaustuAciklamasi), "zembera");
  cli::turkceKonus(secenekler);
  for (const cli::Secenek& secenek : app::masaustuSecenekleri) cli::secenekEkle(secenekler, secenek);
  secenekler.footer(cli::cikisKodlariMetni(app::masaustuKodlari));
  cli::Degerler degerler;
  // Help and version need no screen.
  secenekler.allow_extras();
  if (const auto kod = oku(secenekler, argc, argv, degerler)) return *kod;
  if (degerler.var("surum")) {
    std::printf("Zembera %s\n", session::programSurumu.data());
    return cli::tamam;
  }
  // The toolkit takes its own options (-platform, -style ...); what is left over then is nobody's.
  QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  qInstallMessageHandler(ekransiz);
  Uygulama uygulama(argc, argv);
  qInstallMessageHandler(nullptr);
  secenekler.allow_extras(false);
  if (const auto kod = oku(secenekler, argc, argv, degerler)) return *kod;
  QApplication::setApplicationName("Zembera");
  // Wayland finds icon and menu entry by this name.
  QGuiApplication::setDesktopFileName("example.korvena.zembera");
  ui::renkDuzeniSec(duzen(degerler.metin("renkler")));
  ui::applyTheme(uygulama);
  return calistir(uygulama, degerler.var("dizin") ? std::filesystem::absolute(degerler.metin("dizin"))
                                                  : platform::programFolder());
}
