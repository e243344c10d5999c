// Four clients enter sales over the network into one company, while live backups of it are made by another
// process, one after the other.
//
//   campaign_sales [seconds] [seed]
//
// Every backup has to pass its own proof and to hold each sale whole or not at all. In the end the company
// holds exactly what was acknowledged, no number was given twice, and its year is rolled over over the
// network with a proof without a difference.
#include <signal.h>
#include <sys/wait.h>

#include <atomic>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

#include "campaigns/campaign.h"
#include "cli/program.h"
#include "db/drivers.h"
#include "db/odbc/sqlserver.h"
#include "db/recordset.h"
#include "session/sys_inf.h"
#include "tds/server.h"

namespace campaign {
namespace {

using Words = std::vector<std::string>;
using Clock = std::chrono::steady_clock;
constexpr int clients = 4;

// The server, in a process of its own until the object goes.
class Serving {
 public:
  explicit Serving(const fs::path& folder) {
    int ends[2], stops[2];
    if (::pipe(ends) != 0 || ::pipe(stops) != 0) std::abort();
    pid_ = ::fork();
    if (pid_ == 0) {
      ::close(stops[1]);
      serve(folder, ends[1], stops[0]);
      ::_exit(0);
    }
    ::close(ends[1]);
    ::close(stops[0]);
    stop_ = stops[1];
    if (::read(ends[0], &port, sizeof port) != sizeof port) throw std::runtime_error("no server");
    ::close(ends[0]);
  }
  ~Serving() {
    ::close(stop_);
    ::waitpid(pid_, nullptr, 0);
  }
  Serving(const Serving&) = delete;
  Serving& operator=(const Serving&) = delete;
  std::uint16_t port = 0;

 private:
  static void serve(const fs::path& folder, int told, int stopped) {
    tds::Options options;
    options.port = 0;
    options.plainOnThisMachine = true;
    options.log = [](const std::string& line) { std::cerr << line << "\n"; };
    tds::Server server(engine::Server::open(folder), options);
    const std::uint16_t port = server.port();
    if (::write(told, &port, sizeof port) != sizeof port) return;
    char byte;
    static_cast<void>(!::read(stopped, &byte, 1));
  }
  pid_t pid_;
  int stop_;
};

// What was acknowledged.
struct Entered {
  int sales = 0, undone = 0;
  std::vector<std::string> numbers;  // of the cash movements
};

class Shop {
 public:
  Shop(int seconds, unsigned seed) : seconds_(seconds), seed_(seed) {
    fs::create_directory(folder_.path / "yedek");
    must({"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n");
    must({"firma-olustur", "--ad", "A2012", "--kod", "00001", "--unvan", "A", "--baslangic", "01/01/2012",
          "--bitis", "31/12/2012"});
    must({"guncelle", "--ad", "A2012"});
    must({"ornek-veri", "--ad", "A2012"});
  }

  int run() {
    {
      const Serving serving(folder_.path / "veri");
      std::vector<Entered> entered(clients);
      std::vector<std::thread> threads;
      const auto end = Clock::now() + std::chrono::seconds(seconds_);
      for (int i = 0; i < clients; ++i)
        threads.emplace_back([&, i] { guarded([&] { sell(serving.port, i, end, entered[i]); }); });
      int backups = 0;
      guarded([&] {
        for (; Clock::now() < end || backups == 0; ++backups) backUp();
      });
      for (auto& thread : threads) thread.join();
      guarded([&] { compare(serving.port, entered); });
      guarded([&] { rollOver(serving.port); });
      int sales = 0;
      for (const Entered& each : entered) sales += each.sales;
      std::cout << sales << " sales of " << clients << " clients, " << backups << " backups, " << faults_
                << " faults\n";
      if (sales == 0) fail("nothing was sold");
    }
    return faults_ == 0 ? 0 : 1;
  }

 private:
  std::unique_ptr<db::Connection> connect(std::uint16_t port) {
    auto made = db::makeSqlServerConnection();
    made->open({"127.0.0.1," + std::to_string(port), "sa", password, "A2012", false});
    return made;
  }
  void sell(std::uint16_t port, int client, Clock::time_point end, Entered& entered) {
    std::mt19937 random(seed_ + static_cast<unsigned>(client));
    const auto connection = connect(port);
    for (int n = 0; Clock::now() < end; ++n) {
      const std::string slip = "'K" + std::to_string(client) + "-" + std::to_string(n) + "'";
      const std::string item = std::to_string(1 + random() % 500);
      const std::string sum = std::to_string(1 + random() % 900) + ".25";
      connection->execute("BEGIN TRAN");
      for (const char* const kind : {"'Alış Faturası','Mal',Stok_ID,Stok_Kod,1,2,0,5",
                                     "'Satış Faturası','Mal',Stok_ID,Stok_Kod,1,0,1,0"})
        connection->execute(
            "INSERT INTO STOKHAREKET "
            "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) SELECT "
            "'20121115'," +
            slip + "," + kind + " FROM STOKKART WHERE Stok_ID=" + item);
      connection->execute(
          "INSERT INTO CARIHAREKET "
          "(Tarih,Fis_No,Islem_Tipi,Cari_ID,Cari_Kod,Vade,BTutar,ATutar,Dovizli_Tutar) "
          "SELECT '20121115'," +
          slip + ",'Borç Dekontu',Cari_ID,Cari_Kod,30," + sum +
          ",0,0 FROM CARIKART WHERE Cari_ID=" + item.substr(0, 2));
      connection->execute(
          "INSERT INTO KASAHAREKET (Tarih,Fis_No,Islem_Tipi,Kasa_ID,Kasa_Kod,BTutar,ATutar) SELECT "
          "'20121115'," +
          slip + ",'Tahsilat',Kasa_ID,Kasa_Kod," + sum + ",0 FROM KASAKART WHERE Kasa_ID=1");
      const std::string number =
          connection->query("SELECT MAX(Kasa_Hareket_ID) FROM KASAHAREKET WHERE Fis_No=" + slip)
              ->value(0, 0)
              .text();
      if (random() % 10 == 0) {
        connection->execute("ROLLBACK");
        ++entered.undone;
      } else {
        connection->execute("COMMIT");
        ++entered.sales;
        entered.numbers.push_back(number);
      }
    }
  }

  // The command makes it and proves it.
  void backUp() {
    std::string out;
    const fs::path to = folder_.path / "yedek";
    if (command({"yedekle", "--ad", "A2012", "--hedef", to.string(), "--canli"}, out) != 0)
      return fail("a backup: " + out);
    for (const auto& entry : fs::recursive_directory_iterator(to))
      if (entry.path().extension() == ".mdf") lookInto(entry.path());
    for (const auto& entry : fs::directory_iterator(to)) fs::remove_all(entry.path());
  }
  void lookInto(const fs::path& data) {
    const fs::path log = data.parent_path() / "A2012_LOG.ldf";
    const auto copy = engine::Server::openCopy(data, log, "A2012", folder_.path);
    engine::Session session(copy.server, copy.login, copy.password, "A2012");
    const Answer answer = campaign::run(
        session,
        "SELECT COUNT(*) FROM (SELECT Fis_No,SUM(s) AS s,SUM(c) AS c,SUM(k) AS k FROM (SELECT Fis_No,1 AS "
        "s,0 AS c,0 "
        "AS k FROM STOKHAREKET UNION ALL SELECT Fis_No,0,1,0 FROM CARIHAREKET UNION ALL SELECT Fis_No,0,0,1 "
        "FROM "
        "KASAHAREKET) x WHERE Fis_No LIKE 'K[0-3]-%' GROUP BY Fis_No) y WHERE s<>2 OR c<>1 OR k<>1");
    if (answer.text != "0\n") fail("a sale in halves in a backup: " + answer.text + answer.error);
  }

  void compare(std::uint16_t port, const std::vector<Entered>& entered) {
    std::set<std::string> numbers;
    int sales = 0;
    for (const Entered& each : entered) {
      sales += each.sales;
      numbers.insert(each.numbers.begin(), each.numbers.end());
    }
    if (numbers.size() != static_cast<std::size_t>(sales)) fail("a number was given twice");
    const auto connection = connect(port);
    const auto count = [&](const std::string& from) {
      return connection->query("SELECT COUNT(*) FROM " + from + " WHERE Fis_No LIKE 'K[0-3]-%'")
          ->value(0, 0)
          .integer();
    };
    if (count("STOKHAREKET") != 2 * sales || count("CARIHAREKET") != sales || count("KASAHAREKET") != sales)
      fail("rows and acknowledged sales differ");
    std::set<std::string> found;
    const auto rows =
        connection->query("SELECT Kasa_Hareket_ID FROM KASAHAREKET WHERE Fis_No LIKE 'K[0-3]-%'");
    for (std::int64_t i = 0; i < rows->count(); ++i) found.insert(rows->value(i, 0).text());
    if (found != numbers) fail("the numbers of the rows are not those that were told");
    connection->execute("DBCC CHECKDB('A2012')");
  }

  void rollOver(std::uint16_t port) {
    const std::string refused =
        session::Sys_Inf_Yaz(folder_.path, {"127.0.0.1," + std::to_string(port), "sa", password, false});
    if (!refused.empty()) return fail(refused);
    std::string out;
    const int code =
        command({"devir", "--kaynak", "A2012", "--yeni-ad", "A2013", "--evet", "--yalnizca-farklar"}, out);
    if (code != 0 || out.find("Açıklanmayan fark yok.") == std::string::npos) fail("devir: " + out);
  }

  int command(const Words& words, std::string& out, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream written, err;
    cli::Ortam around{in, written, err, false, false, folder_.path, db::makeConnectionFactory};
    const int code = cli::calistir(around, words);
    out = written.str() + err.str();
    return code;
  }
  void must(const Words& words, const std::string& input = "") {
    std::string out;
    if (command(words, out, input) != 0) throw std::runtime_error(words[0] + ": " + out);
  }
  template <class Work>
  void guarded(Work work) {
    try {
      work();
    } catch (const std::exception& error) {
      fail(error.what());
    }
  }
  void fail(const std::string& what) {
    const std::lock_guard lock(mutex_);
    ++faults_;
    std::cout << what << std::endl;
  }

  const Folder folder_;
  const int seconds_;
  const unsigned seed_;
  std::mutex mutex_;
  int faults_ = 0;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const campaign::Arguments arguments = campaign::arguments(count, values, 10);
  try {
    return campaign::Shop(arguments.rounds, arguments.seed).run();
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
