// A folder with a year to roll over, KAYNAK, and a company that it has been rolled into before, HEDEF, for
// campaigns that disturb zembera-cli devir. Every step runs in a process of its own.
#pragma once

#include <sys/resource.h>
#include <sys/wait.h>

#include <sstream>
#include <vector>

#include "campaigns/campaign.h"
#include "cli/program.h"
#include "db/drivers.h"

namespace campaign {

using Words = std::vector<std::string>;

struct End {
  int status = 0;
  double processor = 0;  // seconds
  std::string text;      // what the work gave
  bool killed() const { return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL; }
  int code() const { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }
};

// Runs `work` in a child; its text comes back.
inline End inChild(const std::function<int(std::string&)>& work) {
  int ends[2];
  if (::pipe(ends) != 0) std::abort();
  std::cout.flush();
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::close(ends[0]);
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

class RolloverSite {
 public:
  // A way to roll over, and what its target holds before and after an undisturbed run.
  struct Kind {
    std::string target;
    Words arguments;
    std::string before, after;
    double processor = 0;
  };

  // `fill` gives KAYNAK its rows.
  explicit RolloverSite(const std::function<void(RolloverSite&)>& fill) {
    must({"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n");
    must({"firma-olustur", "--ad", "KAYNAK", "--kod", "00001", "--unvan", "KAYNAK", "--baslangic",
          "01/01/2012", "--bitis", "31/12/2012"});
    must({"guncelle", "--ad", "KAYNAK"});
    fill(*this);
    must({"devir", "--kaynak", "KAYNAK", "--yeni-ad", "HEDEF"});
    // The new period has begun: rows of its own stand beside what was carried.
    sql("INSERT INTO HEDEF.dbo.CARIKART (Cari_Kod,Unvan) VALUES ('YENI','Yeni dönemde açıldı') UPDATE "
        "HEDEF.dbo.STOKKART SET Stok_Ad='Hedefte değişti' WHERE Stok_ID%7=0");
    fs::copy(folder, kept_, fs::copy_options::recursive);
    for (Kind& kind : kinds) {
      kind.before = state(kind.target);
      const End whole = command(kind.arguments);
      if (whole.code() != 0) throw std::runtime_error("an undisturbed run failed: " + whole.text);
      kind.processor = whole.processor;
      kind.after = state(kind.target);
      restore();
    }
  }

  // zembera-cli with these words; `before` is done in its process first. The text is that of its errors.
  End command(const Words& arguments, const std::string& input = "",
              const std::function<void()>& before = nullptr) {
    return inChild([&](std::string& text) {
      if (before) before();
      return here(arguments, text, input);
    });
  }
  // The same in this process.
  int here(const Words& arguments, std::string& errors, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    cli::Ortam ortam{in, out, err, false, false, folder, db::makeConnectionFactory};
    const int code = cli::calistir(ortam, arguments);
    errors = err.str();
    return code;
  }
  void must(const Words& arguments, const std::string& input = "") {
    const End end = command(arguments, input);
    if (end.code() != 0) throw std::runtime_error(arguments[0] + ": " + end.text);
  }
  void sql(const std::string& batch) {
    const End end = inChild([&](std::string& text) {
      auto session = open(folder / "veri", "master");
      text = run(*session, batch).error;
      return text.empty() ? 0 : 1;
    });
    if (end.code() != 0) throw std::runtime_error(end.text);
  }

  void restore() {
    for (const auto& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    fs::copy(kept_, folder, fs::copy_options::recursive);
  }
  // Name of a file of the source that has changed since; empty when no byte has.
  std::string changedSource() const {
    for (const char* const file : {"KAYNAK.mdf", "KAYNAK_log.ldf"})
      if (readAll(folder / "veri" / file) != readAll(kept_ / "veri" / file)) return file;
    return "";
  }

  // All rows of the company and of the catalog but for the clock's. Empty when the catalog does not know the
  // company, whatever a broken run has left of its database.
  std::string state(const std::string& target) {
    const End end = inChild([&](std::string& text) {
      auto session = open(folder / "veri", "master");
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
  // What is left of a target that the catalog does not know: "server" knows it, "file" lies there.
  std::string leftover(const std::string& target) {
    const End end = inChild([&](std::string& text) {
      auto session = open(folder / "veri", "master");
      text = run(*session, "SELECT name FROM sysdatabases WHERE name='" + target + "'").text;
      return 0;
    });
    if (!end.text.empty()) return "server";
    return fs::exists(folder / "veri" / (target + ".mdf")) ? "file" : "";
  }

  // What has to hold behind a disturbed run that has ended with `code`, and that the same command succeeds
  // now; the findings, a line each. The site is then as it was at the beginning.
  std::string judge(const Kind& kind, bool ended, int code) {
    std::string found;
    const auto fail = [&](const std::string& what) { found += what + "\n"; };
    if (const std::string file = changedSource(); !file.empty()) fail(file + " has changed");
    const std::string now = state(kind.target);
    complete_ = now == kind.after && now != kind.before;
    if (now != kind.before && now != kind.after) fail("the target is neither as before nor complete");
    if (ended && code == 0 && now != kind.after) fail("a run that ended is not complete");
    if (ended && code != 0 && now != kind.before) fail("a run that failed has left something");
    if (now == kind.after && kind.before.empty()) must({"firma-sil", "--ad", kind.target, "--evet"});
    const End next = command(kind.arguments);
    if (next.code() != 0) fail("the next run failed: " + next.text);
    if (now == kind.before && state(kind.target) != kind.after) fail("the next run left something else");
    restore();
    return found;
  }
  bool complete() const { return complete_; }  // the target that judge() has seen

  std::vector<Kind> kinds{
      {"YENI2013", {"devir", "--kaynak", "KAYNAK", "--yeni-ad", "YENI2013", "--evet"}, "", "", 0},
      {"HEDEF", {"devir", "--kaynak", "KAYNAK", "--hedef", "HEDEF", "--evet"}, "", "", 0},
      {"HEDEF", {"devir", "--kaynak", "KAYNAK", "--hedef", "HEDEF", "--evet", "--dene"}, "", "", 0}};

 private:
  const Folder base_, kept_base_;
  const fs::path kept_ = kept_base_.path / "program";
  bool complete_ = false;

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

 public:
  const fs::path folder = base_.path / "program";
};

}  // namespace campaign
