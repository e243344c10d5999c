// A call to the system fails, the n-th, for every n until the work gets through: once, and from then on.
// Whatever call it is, the error is told, the state is as before or as after, and once the system is well
// again the work is done. Work are transactions over two databases, creation, the start on a folder whose
// process was killed, a checkpoint, and the upgrade of a company.
//
//   campaign_calls [step] [first] [work]        every step-th call, from the first on; of one kind of work
#include <signal.h>
#include <sys/wait.h>

#include <set>

#include "campaigns/campaign.h"
#include "campaigns/failing_calls.h"
#include "company/guncelle_ortami.h"

namespace campaign {
namespace {

constexpr FailingCall kinds[] = {{ENOSPC, 0, true}, {EIO, 0, false}, {EFBIG, 0, true}, {EMFILE, 0, false}};
constexpr const char* state =
    "SELECT A,B FROM F..T ORDER BY ID SELECT A FROM G..T ORDER BY A SELECT name FROM F..sysobjects ORDER BY "
    "name SELECT name FROM master..sysdatabases ORDER BY name";

class Calls {
 public:
  Calls(int step, int first, std::string only) : step_(step), first_(first), only_(std::move(only)) {}

  void all() {
    for (const FailingCall& kind : kinds) {
      statements(kind, "transaction",
                 {"BEGIN TRAN UPDATE F..T SET A=A+1 INSERT INTO G..T VALUES (99) COMMIT"});
      statements(kind, "creation", {"CREATE DATABASE YENI CREATE TABLE YENI..T (A INT)"});
      statements(kind, "checkpoint", {"UPDATE F..T SET A=A+1", "stop", "start"});
      recovery(kind);
      upgrade(kind);
    }
  }
  int findings() const { return findings_; }
  int calls() const { return calls_; }

 private:
  void fail(const std::string& what) {
    ++findings_;
    std::cout << what.substr(0, 1500) << std::endl;
  }
  static fs::path veri(const Folder& base) { return base.path / "veri"; }

  // A folder whose process died with rows in its logs.
  static const Folder& killed() {
    static const Folder base;
    static bool made = false;
    if (std::exchange(made, true)) return base;
    const pid_t child = ::fork();
    if (child == 0) {
      engine::Server::create(veri(base), "sa", password);
      auto session = open(veri(base), "master");
      run(*session, "CREATE DATABASE F CREATE DATABASE G CREATE TABLE G..T (A INT)");
      run(*session, "CREATE TABLE F..T (ID INT IDENTITY PRIMARY KEY, A INT, B CHAR(200))");
      for (int i = 0; i < 30; ++i) run(*session, "INSERT INTO F..T (A,B) VALUES (1,'x')");
      run(*session, "INSERT INTO G..T VALUES (1)");
      ::kill(::getpid(), SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return base;
  }
  static std::string content(const fs::path& folder) {
    const Answer answer = run(*open(folder, "master"), state);
    return answer.number == 0 ? answer.text : "!" + std::to_string(answer.number) + " " + answer.error;
  }
  static void copy(const fs::path& from, const fs::path& to) {
    fs::remove_all(to);
    fs::copy(from, to, fs::copy_options::recursive);
  }

  // Each round on a fresh copy.
  template <typename Work>
  void rounds(const FailingCall& kind, const std::string& what, const fs::path& from, Work work) {
    if (!only_.empty() && only_ != what) return;
    bool struck = true;
    int n = first_;
    for (; struck && findings_ < 10; n += step_) {
      const Folder base;
      const fs::path folder = base.path / "kopya";
      copy(from, folder);
      FailingCalls system(folder);
      FailingCall call = kind;
      call.after = n;
      ++calls_;
      struck = work(folder, system, call,
                    what + ", call " + std::to_string(n) + ", error " + std::to_string(call.error) + ": ");
    }
    std::cout << what << ", error " << kind.error << ": through after " << n - step_ << " calls" << std::endl;
  }

  void statements(const FailingCall& kind, const std::string& what, const std::vector<std::string>& batches) {
    const fs::path from = veri(killed());
    rounds(
        kind, what, from,
        [&](const fs::path& folder, FailingCalls& system, const FailingCall& call, const std::string& at) {
          const std::string before = content(folder);
          bool struck = false;
          int number = 0;
          std::string error;
          std::vector<std::string> whole{before};
          {
            auto server = engine::Server::open(folder);
            engine::Session session(server, "sa", password, "master");
            run(session, state);  // the files are open
            system.arm(call);
            for (const std::string& batch : batches) {
              if (number != 0 && batch != "start") continue;
              if (batch == "stop") {
                try {
                  server->stop();
                } catch (const engine::Error& stopping) {  // it runs on, and what was done stands
                  if (!known(stopping.number())) fail(at + "stop told " + stopping.what());
                }
              } else if (batch == "start") {
                struck = system.disarm();
                server->start();
              } else if (const Answer answer = run(session, batch); answer.number != 0) {
                number = answer.number;
                error = answer.error;
              }
            }
            struck = system.disarm() || struck;
            if (number != 0 && !known(number)) fail(at + "told " + std::to_string(number) + " " + error);
            const Answer now = run(session, state);
            if (now.number != 0) fail(at + "cannot be read: " + now.error);
            if (number == 0 && now.text == before) fail(at + "was taken, but did nothing");
            if (number != 0 && now.text != before && what != "creation")
              fail(at + "another state after " + std::to_string(number) + "\n" + now.text);
            whole.push_back(now.text);
          }
          const std::string after = content(folder);
          if (after != whole.back()) fail(at + "other rows when opened anew\n" + after);
          auto session = open(folder, "master");
          run(*session, "DROP DATABASE YENI");
          for (const std::string& batch : batches)
            if (const Answer again = run(*session, batch == "stop" || batch == "start" ? "SELECT 1" : batch);
                again.number != 0)
              fail(at + "again: " + std::to_string(again.number) + " " + again.error);
          return struck;
        });
  }

  void recovery(const FailingCall& kind) {
    const fs::path from = veri(killed());
    static const std::string wanted = [&] {
      const Folder base;
      copy(from, base.path / "kopya");
      return content(base.path / "kopya");
    }();
    rounds(kind, "recovery", from,
           [&](const fs::path& folder, FailingCalls& system, const FailingCall& call, const std::string& at) {
             system.arm(call);
             std::string seen;
             try {
               seen = content(folder);
             } catch (const engine::Error& error) {
               seen = "!" + std::to_string(error.number()) + " " + error.what();
             }
             const bool struck = system.disarm();
             if (!seen.starts_with("!") && seen != wanted) fail(at + "other rows were served\n" + seen);
             if (seen.starts_with("!") && !known(std::atoi(seen.c_str() + 1))) fail(at + "told " + seen);
             if (const std::string now = content(folder); now != wanted)
               fail(at + "not recovered afterwards\n" + now);
             return struck;
           });
  }

  void upgrade(const FailingCall& kind) {
    using namespace guncelle_testi;
    static const Icerik wanted = [] {
      const Folder base;
      copy(Taban::klasor(), base.path / "kopya");
      Baglam b(base.path / "kopya");
      b.guncelle();
      return icerik(b, "FIRMA");
    }();
    rounds(kind, "upgrade", Taban::klasor(),
           [&](const fs::path& folder, FailingCalls& system, const FailingCall& call, const std::string& at) {
             bool struck = false;
             {
               Baglam b(folder);
               b.baglan("FIRMA");
               system.arm(call);
               const auto result = b.guncelle();
               struck = system.disarm();
               const bool told =
                   !result.hata.empty() || !b.s.boxes.texts().empty() || result.sayilar.reddedilen > 1;
               if (!result.tamamlandi && !told) fail(at + "nothing was told");
             }
             Baglam b(folder);
             const auto again = b.guncelle();
             if (!again.tamamlandi) fail(at + "the next run ends with " + again.hata);
             if (!farklar(sema(b, "FIRMA"), sema(b, "YENI")).empty())
               fail(at + "the next run leaves another schema");
             if (icerik(b, "FIRMA") != wanted) fail(at + "the next run leaves other rows");
             return struck;
           });
  }

  static bool known(int number) {
    static const std::set<int> numbers{823, 1105, 5120, 5123, 9001, 3906, 701, 5170, 1802};
    return numbers.contains(number);
  }

  int step_, first_, findings_ = 0, calls_ = 0;
  std::string only_;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const int step = std::max(1, count > 1 ? std::atoi(values[1]) : 1);
  const int first = count > 2 ? std::atoi(values[2]) : 0;
  campaign::Calls calls(step, first, count > 3 ? values[3] : "");
  calls.all();
  std::cout << calls.calls() << " failing calls, " << calls.findings() << " findings\n";
  return calls.findings() == 0 ? 0 : 1;
}
