// Resident memory of the desktop program with the console open, on the embedded server, against an empty
// window of the same toolkit; each in a process of its own. Prints both and their ratio. The platform
// plugin is the one of the environment (QT_QPA_PLATFORM), offscreen without one.
#include <QApplication>
#include <QProcess>
#include <QWidget>
#include <cstdio>

#include "bench/bare.h"
#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "session/ui/zembera_menu.h"
#include "support/fakes.h"
#include "ui/theme.h"

namespace {

void settle() {
  for (int i = 0; i < 20; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
}

void tell() {
  settle();
  std::printf("%ld %ld\n", bench::statusKilobytes("VmRSS"), bench::statusKilobytes("RssAnon"));
}

int emptyWindow(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(1024, 700);
  window.show();
  tell();
  return 0;
}

// The server was prepared by another process: making it is no part of opening the console.
int console(int argc, char** argv) {
  QApplication application(argc, argv);
  ui::applyTheme(application);
  const auto factory = db::makeConnectionFactory(argv[2]);
  support::FakeSurroundings s;
  s.oturum.surucu = factory.get();
  s.oturum.Server_Adi = "(yerel)";
  s.oturum.SQL_Login = "sa";
  s.oturum.SQL_Sifre = "gizli";
  s.oturum.Supervisor = true;
  session::Katalog_Bagla(s.oturum, "Defination_DB");
  session_ui::ZemberaMenu menu(s.oturum);
  menu.show();
  tell();
  return 0;
}

int prepare(char** argv) {
  engine::Server::create(std::filesystem::path(argv[2]) / "veri", "sa", "gizli");
  const auto factory = db::makeConnectionFactory(argv[2]);
  support::FakeSurroundings s;
  s.oturum.surucu = factory.get();
  s.oturum.Server_Adi = "(yerel)";
  catalog::Sunucu_Hazirla(s.oturum, {"Olcum", "olcum", ""});
  return 0;
}

// Kilobytes as the child tells them: resident, of its own.
std::pair<long, long> measured(const QString& program, const QStringList& arguments) {
  QProcess child;
  child.start(program, arguments);
  child.waitForFinished(120000);
  const auto numbers = child.readAllStandardOutput().split(' ');
  if (numbers.size() != 2) throw std::runtime_error(child.readAllStandardError().toStdString());
  return {numbers[0].toLong(), numbers[1].trimmed().toLong()};
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const std::string part = argc > 1 ? argv[1] : "";
  if (part == "empty") return emptyWindow(argc, argv);
  if (part == "console") return console(argc, argv);
  if (part == "prepare") return prepare(argv);
  try {
    const bench::Folder folder;
    const QString self = QString::fromLocal8Bit(argv[0]), path = QString::fromStdString(folder.path.string());
    QProcess::execute(self, {"prepare", path});
    const auto bare = measured(self, {"empty"});
    const auto ours = measured(self, {"console", path});
    std::printf("console  %ld kB (%ld of its own)   empty window %ld kB (%ld of its own)   ratio %.2f\n",
                ours.first, ours.second, bare.first, bare.second,
                static_cast<double>(ours.first) / static_cast<double>(bare.first));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
