// zembera-cli devir is killed at any moment of its work: onto a new company, onto one that has been rolled
// into before, and as a trial. Afterwards the target is as before or complete, no byte of the source has
// changed, and the same command succeeds.
//
// Every step runs in a process of its own. The moment is one of the processor time that an undisturbed run
// takes, so that a busy machine does not shift it; the process then ends itself by SIGKILL.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>

#include <sstream>
#include <vector>

#include "campaigns/campaign.h"
#include "cli/program.h"
#include "db/drivers.h"

namespace campaign {
namespace {

using Words = std::vector<std::string>;

struct End {
  int status = 0;
  double processor = 0;  // seconds
  std::string text;      // what the work gave
  bool killed() const { return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL; }
  int code() const { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }
};

// Runs `work` in a child; its text comes back. With `micros` above 0 the child is killed after that much
// processor time.
End inChild(const std::function<int(std::string&)>& work, long micros = 0) {
  int ends[2];
  if (::pipe(ends) != 0) std::abort();
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::close(ends[0]);
    if (micros > 0) {
      struct sigaction action = {};
      action.sa_handler = [](int) { ::kill(::getpid(), SIGKILL); };
      ::sigaction(SIGPROF, &action, nullptr);
      const itimerval timer{{0, 0}, {micros / 1'000'000, micros % 1'000'000}};
      ::setitimer(ITIMER_PROF, &timer, nullptr);
    }
    std::string text;
    int code = 99;
    try {
      code = work(text);
    } catch (const std::exception& error) {
      text = error.what();
    }
    for (std::size_t done = 0; done < text.size();) {
      const ssize_t n = ::write(ends[1], text.data() + done, text.size() - done);
      if (n <= 0) break;
      done += static_cast<std::size_t>(n);
    }
    ::_exit(code);
  }
  ::close(ends[1]);
  End end;
  char buffer[65536];
  for (ssize_t n = 0; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
    end.text.append(buffer, static_cast<std::size_t>(n));
  ::close(ends[0]);
  rusage usage{};
  ::wait4(pid, &end.status, 0, &usage);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
  };
  end.processor = seconds(usage.ru_utime) + seconds(usage.ru_stime);
  return end;
}

class Campaign {
 public:
  explicit Campaign(unsigned seed) : random_(seed), seed_(seed) {
    must({"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n");
    company("KAYNAK", "00001", "2012");
    must({"ornek-veri", "--ad", "KAYNAK"});
    must({"devir", "--kaynak", "KAYNAK", "--yeni-ad", "HEDEF"});
    // The new period has begun: rows of its own stand beside what was carried.
    sql("INSERT INTO HEDEF.dbo.CARIKART (Cari_Kod,Unvan) VALUES ('YENI','Yeni dönemde açıldı') UPDATE "
        "HEDEF.dbo.STOKKART SET Stok_Ad='Hedefte değişti' WHERE Stok_ID%7=0");
    fs::copy(folder_, kept_, fs::copy_options::recursive);
    for (Kind& kind : kinds_) {
      kind.before = state(kind.target);
      const End whole = command(kind.arguments);
      if (whole.code() != 0) throw std::runtime_error("an undisturbed run failed: " + whole.text);
      kind.processor = whole.processor;
      kind.after = state(kind.target);
      restore();
    }
  }

  void round(int number) {
    Kind& kind = kinds_[random_() % std::size(kinds_)];
    const auto most = static_cast<unsigned>(kind.processor * 1.02e6);
    const long micros = 1 + static_cast<long>(random_() % most);
    const End end = command(kind.arguments, micros);
    if (!end.killed() && end.code() != 0) fail(number, kind, micros, "it failed: " + end.text);
    for (const char* const file : {"KAYNAK.mdf", "KAYNAK_log.ldf"})
      if (readAll(folder_ / "veri" / file) != readAll(kept_ / "veri" / file))
        fail(number, kind, micros, std::string(file) + " has changed");
    const std::string now = state(kind.target);
    if (now == kind.before)
      ++before_;
    else if (now == kind.after)
      ++after_;
    else
      fail(number, kind, micros, "the target is neither as before nor complete");
    if (!end.killed() && now != kind.after) fail(number, kind, micros, "a run that ended is not complete");
    const bool stood = now == kind.after && kind.before.empty();
    if (stood) must({"firma-sil", "--ad", kind.target, "--evet"});
    const End next = command(kind.arguments);
    if (next.code() != 0) fail(number, kind, micros, "the next run failed: " + next.text);
    if (now == kind.before && state(kind.target) != kind.after)
      fail(number, kind, micros, "the next run left something else");
    restore();
  }

  int report(int rounds) const {
    std::cout << rounds << " kills: " << before_ << " targets as before, " << after_ << " complete, "
              << faults_ << " faults\n";
    return faults_ == 0 ? 0 : 1;
  }

 private:
  struct Kind {
    std::string target;
    Words arguments;
    std::string before, after;
    double processor = 0;
  };

  End command(const Words& arguments, long micros = 0, const std::string& input = "") {
    return inChild(
        [&](std::string& text) {
          std::istringstream in(input);
          std::ostringstream out;
          std::ostringstream err;
          cli::Ortam ortam{in, out, err, false, false, folder_, db::makeConnectionFactory};
          const int code = cli::calistir(ortam, arguments);
          text = err.str();
          return code;
        },
        micros);
  }
  void must(const Words& arguments, const std::string& input = "") {
    const End end = command(arguments, 0, input);
    if (end.code() != 0) throw std::runtime_error(arguments[0] + ": " + end.text);
  }
  void company(const std::string& name, const std::string& code, const std::string& year) {
    must({"firma-olustur", "--ad", name, "--kod", code, "--unvan", name, "--baslangic", "01/01/" + year,
          "--bitis", "31/12/" + year});
    must({"guncelle", "--ad", name});
  }
  void sql(const std::string& batch) {
    const End end = inChild([&](std::string& text) {
      auto session = open(folder_ / "veri", "master");
      text = run(*session, batch).error;
      return text.empty() ? 0 : 1;
    });
    if (end.code() != 0) throw std::runtime_error(end.text);
  }

  void restore() {
    for (const auto& entry : fs::directory_iterator(folder_)) fs::remove_all(entry.path());
    fs::copy(kept_, folder_, fs::copy_options::recursive);
  }

  // All rows of the company and of the catalog but for the clock's. Empty when the catalog does not know the
  // company, whatever a broken run has left of its database.
  std::string state(const std::string& target) {
    const End end = inChild([&](std::string& text) {
      auto session = open(folder_ / "veri", "master");
      const auto rows = [&](const std::string& batch) {
        const Answer answer = run(*session, batch);
        return answer.number == 0 ? answer.text : "!" + answer.error;
      };
      if (rows("SELECT sysfrm_ID FROM Defination_DB..sysfrmlng WHERE sysfrm_dbnm='" + target + "'").empty())
        return 0;
      text = "company\n";
      for (const std::string& database : {target, std::string("Defination_DB")}) {
        std::istringstream tables(rows("SELECT name FROM " + database + "..sysobjects WHERE xtype='U'"));
        for (std::string table; std::getline(tables, table);)
          text += table + "\n" + content(rows, database, table);
      }
      return 0;
    });
    if (end.code() != 0) return "!" + std::to_string(end.code()) + end.text;
    return end.text;
  }
  template <class Rows>
  static std::string content(const Rows& rows, const std::string& database, const std::string& table) {
    std::istringstream names(rows("SELECT c.name FROM " + database + "..syscolumns c," + database +
                                  "..sysobjects o WHERE o.id=c.id AND o.name='" + table +
                                  "' ORDER BY c.colid"));
    std::string columns;
    for (std::string name; std::getline(names, name);)
      if (name != "Saat" && name != "YR_DT" && name.find("_Saat") == std::string::npos &&
          name.find("_Tarih") == std::string::npos)
        columns += (columns.empty() ? "[" : ",[") + name + "]";
    return columns.empty() ? "" : rows("SELECT " + columns + " FROM " + database + ".." + table);
  }

  void fail(int number, const Kind& kind, long micros, const std::string& what) {
    ++faults_;
    std::cout << "round " << number << " of seed " << seed_ << ", " << kind.target << " "
              << kind.arguments.back() << " after " << micros << " us of the processor: " << what << "\n";
  }

  const Folder base_, kept_base_;
  const fs::path folder_ = base_.path / "program", kept_ = kept_base_.path / "program";
  std::mt19937 random_;
  unsigned seed_;
  Kind kinds_[3] = {
      {"YENI2013", {"devir", "--kaynak", "KAYNAK", "--yeni-ad", "YENI2013", "--evet"}, "", "", 0},
      {"HEDEF", {"devir", "--kaynak", "KAYNAK", "--hedef", "HEDEF", "--evet"}, "", "", 0},
      {"HEDEF", {"devir", "--kaynak", "KAYNAK", "--hedef", "HEDEF", "--evet", "--dene"}, "", "", 0}};
  int before_ = 0, after_ = 0, faults_ = 0;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const campaign::Arguments arguments = campaign::arguments(count, values, 300);
  try {
    campaign::Campaign campaign(arguments.seed);
    for (int i = 1; i <= arguments.rounds; ++i) {
      campaign.round(i);
      if (i % 20 == 0) campaign.report(i);
    }
    return campaign.report(arguments.rounds);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
