// Resident memory of the desktop program after the login, with the console open on a list of companies of the
// embedded server, against an empty window of the same size that has nothing but the toolkit in its process.
// Prints VmRSS, which counts also what processes share (programs, libraries, fonts), and how much of it is
// the process's own (RssAnon); of some runs each, since an address chosen otherwise brings in other pages of
// a library. The platform plugin is the one of the environment (QT_QPA_PLATFORM), offscreen without one.
#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <cstdio>

#include "bench/bare.h"
#include "bench/memory.h"
#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "session/ui/pencereler.h"
#include "support/fakes.h"
#include "ui/theme.h"

namespace {

constexpr int rounds = 5, companies = 20;
constexpr const char *supervisor = "Olcum", *password = "olcum";

struct Session {
  explicit Session(const char* folder) : factory(db::makeConnectionFactory(folder)) {
    surroundings.oturum.surucu = factory.get();
    surroundings.oturum.Server_Adi = "(yerel)";
    surroundings.oturum.SQL_Login = "sa";
    surroundings.oturum.SQL_Sifre = "gizli";
  }
  std::unique_ptr<db::ConnectionFactory> factory;
  support::FakeSurroundings surroundings;
};

template <class Widget>
Widget& control(const char* name) {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (auto* found = window->findChild<Widget*>(name)) return *found;
  throw std::runtime_error(std::string("no ") + name);
}

// The server was prepared by another process: making it is no part of opening the console.
int console(int argc, char** argv) {
  QApplication application(argc, argv);
  ui::applyTheme(application);
  Session session(argv[2]);
  const session_ui::Pencereler windows(session.surroundings.oturum, nullptr);
  bench::settle();
  control<QLineEdit>("Kullanici").setText(supervisor);
  control<QLineEdit>("Sifre").setText(password);
  control<QPushButton>("TamamBtn").click();
  bench::settle();
  const auto& tree = control<QAbstractItemView>("AlanTreeList");
  if (tree.model()->rowCount(tree.model()->index(0, 0)) != companies)
    throw std::runtime_error("no companies");
  bench::tellMemory(*tree.window());
  return 0;
}

int prepare(char** argv) {
  engine::Server::create(std::filesystem::path(argv[2]) / "veri", "sa", "gizli");
  Session session(argv[2]);
  session::Oturum& oturum = session.surroundings.oturum;
  catalog::Sunucu_Hazirla(oturum, {supervisor, password, ""});
  session::Katalog_Bagla(oturum, "Defination_DB");
  for (int i = 1; i <= companies; ++i) {
    const std::string number = std::to_string(i);
    oturum.Baglanti->execute(
        bench::joined({"INSERT INTO sysfrmlng (sysfrm_nm,sysfrm_dbnm,sysfrm_kd) VALUES ('Firma ", number,
                       "','FIRMA", number, "','", number, "')"}));
  }
  return 0;
}

struct Memory {
  std::vector<double> resident, own;  // kilobytes
};

// Returns the size of the window that was measured, as arguments.
QStringList measure(Memory& memory, const QString& program, const QStringList& arguments) {
  QProcess child;
  child.start(program, arguments);
  child.waitForFinished(120000);
  const QString told = QString::fromLatin1(child.readAllStandardOutput()).trimmed();
  const QStringList numbers = told.split(' ');
  if (numbers.size() != 4) throw std::runtime_error(child.readAllStandardError().toStdString());
  memory.resident.push_back(numbers[0].toDouble());
  memory.own.push_back(numbers[1].toDouble());
  return numbers.mid(2);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const std::string part = argc > 1 ? argv[1] : "";
  try {
    if (part == "console") return console(argc, argv);
    if (part == "prepare") return prepare(argv);
    const bench::Folder folder;
    const QString self = QString::fromLocal8Bit(argv[0]), path = QString::fromStdString(folder.path.string());
    QProcess::execute(self, {"prepare", path});
    Memory ours, bare;
    const QString emptyWindow = QFileInfo(self).dir().filePath("empty_window");
    for (int i = 0; i < rounds; ++i) {
      const QStringList size = measure(ours, self, {"console", path});
      measure(bare, emptyWindow, size);
    }
    const double console = bench::median(ours.resident), window = bench::median(bare.resident);
    std::printf("console  %.0f kB (%.0f of its own)   empty window %.0f kB (%.0f of its own)   ratio %.2f\n",
                console, bench::median(ours.own), window, bench::median(bare.own), console / window);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
