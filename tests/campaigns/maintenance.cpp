// A process that backs up, restores, moves or proves is killed at any moment, and in every third round the
// next start, which ends what was left, is killed as well. Then each company is as before or as the work
// makes it, all of them together; the service runs; a backup that is there is whole and proved; and no file
// lies about that the work would not have left.
#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <set>
#include <thread>

#include "campaigns/campaign.h"
#include "maintenance/aktar.h"
#include "maintenance/bakim.h"
#include "maintenance/ortam.h"
#include "maintenance/yedek.h"
#include "maintenance/yedek_denetim.h"

namespace campaign {
namespace {

using maintenance::test::Adlar;
using maintenance::test::Ortam;
using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

enum Work { Stopping, Live, Restore, MoveNew, MoveKnown, MoveCatalog, Proof, LiveProof, works };
constexpr std::array<const char*, works> names = {
    "stopping backup",   "live backup",           "restore", "move of new ones",
    "move of known one", "move with the catalog", "proof",   "proof of a copy in use"};

// What companies there are, and what each holds.
using Books = std::map<std::string, std::string>;

class Campaign {
 public:
  explicit Campaign(unsigned seed) : random_(seed), seed_(seed) {
    ::setenv("TMPDIR", (base_.path / "gecici").c_str(), 1);
    fs::create_directory(base_.path / "gecici");
    build();
    for (int work = 0; work < works; ++work) measure(static_cast<Work>(work));
  }

  int kills() const { return kills_; }
  int failures() const { return failures_; }
  int finished() const { return finished_; }

  void round(int number) {
    const Work work = static_cast<Work>(random_() % works);
    at_ = std::to_string(number) + " (" + names[work] + ")";
    reset();
    killed([&](Ortam& o) { run(o, work); }, took_[work]);
    while (random_() % 3 == 0)
      killed([](Ortam& o) { maintenance::Bakimi_Tamamla(o.s.oturum); }, microseconds(60000));
    check(work, false);
  }

 private:
  fs::path place() const { return base_.path / "kurulum"; }
  fs::path target() const { return place() / "yedekler"; }
  fs::path source() const { return place() / "eski kurulum"; }
  fs::path backup() const { return place() / "eski yedek" / "MAGAZA_2012_03_14"; }

  void build() {
    {
      Ortam old(base_.path / "oteki");
      for (const auto& [name, value] : moved_) company(old, name, value);
      old.surucu->local("(yerel)")->stop();
    }
    Ortam o(place());
    for (const fs::path& folder : {target(), source(), backup().parent_path()}) fs::create_directory(folder);
    for (const auto& entry : fs::directory_iterator(base_.path / "oteki" / "veri"))
      if (entry.path().extension() == ".mdf" || entry.path().extension() == ".ldf")
        fs::copy_file(entry.path(), source() / entry.path().filename());
    company(o, "MAGAZA", "eski");
    company(o, "KOMSU", "komşu");
    if (!maintenance::Yedekle(o.s.oturum, "MAGAZA", backup().parent_path()).tamam) std::abort();
    o.yaz("MAGAZA", "yeni");
    // A pair that was taken while the server ran: its proof needs a copy of its own.
    fs::create_directory(place() / "eski yedek" / "acik");
    fs::copy_file(o.veri / "KOMSU.mdf", place() / "eski yedek" / "acik" / "KOMSU.mdf");
    fs::copy_file(o.veri / "KOMSU_log.ldf", place() / "eski yedek" / "acik" / "KOMSU_LOG.ldf");
    o.birak();
    fs::copy(place(), base_.path / "asil", fs::copy_options::recursive);
    before_ = listing();
  }
  static void company(Ortam& o, const std::string& name, const std::string& value) {
    o.firma(name, value);
    o.calistir(name, "CREATE TABLE DOLGU (A VARCHAR(8000) NULL)");
    o.calistir(name,
               "BEGIN TRAN DECLARE @I INT SET @I=0 WHILE @I<200 BEGIN INSERT INTO DOLGU "
               "VALUES(REPLICATE('x',7000)) SET @I=@I+1 END COMMIT");
  }

  void reset() {
    fs::remove_all(place());
    fs::copy(base_.path / "asil", place(), fs::copy_options::recursive);
  }

  void run(Ortam& o, Work work) {
    o.s.boxes.answers = {true, true};
    const auto move = [&](const std::set<std::string>& chosen, bool catalog) {
      auto rows = maintenance::aktarListesi(source());
      for (auto& row : rows) row.Sec = chosen.contains(row.Database);
      maintenance::Aktar(o.s.oturum, source(), o.veri.string(), rows, catalog);
    };
    switch (work) {
      case Stopping:
        maintenance::Yedekle(o.s.oturum, "MAGAZA", target());
        break;
      case Live:
        maintenance::Canli_Yedekle(o.s.oturum, "MAGAZA", target());
        break;
      case Restore:
        maintenance::Geri_Al(o.s.oturum, backup());
        break;
      case MoveNew:
        move({"TASINAN", "IKINCI"}, false);
        break;
      case MoveKnown:
        move({"MAGAZA"}, false);
        break;
      case MoveCatalog:
        move({"TASINAN", "IKINCI", "MAGAZA"}, true);
        break;
      default:
        maintenance::Yedek_Denetle(o.s.oturum, work == Proof ? backup() : place() / "eski yedek" / "acik");
    }
  }
  Books after(Work work) const {
    Books books = {{"KOMSU", "komşu"}, {"MAGAZA", work == Restore ? "eski" : "yeni"}};
    if (work == MoveKnown) books["MAGAZA"] = moved_.at("MAGAZA");
    if (work == MoveNew)
      for (const char* name : {"TASINAN", "IKINCI"}) books[name] = moved_.at(name);
    return work == MoveCatalog ? moved_ : books;
  }

  // How long the work takes when nobody disturbs it; what it leaves is what a killed one may leave.
  void measure(Work work) {
    at_ = std::string("0 (") + names[work] + ")";
    reset();
    const auto begin = Clock::now();
    killed([&](Ortam& o) { run(o, work); }, microseconds(-1));
    took_[work] = std::chrono::duration_cast<microseconds>(Clock::now() - begin);
    left_[work] = listing();
    check(work, true);
  }

  // A child works until it is killed; a negative span lets it end.
  void killed(const std::function<void(Ortam&)>& work, microseconds span) {
    const pid_t child = ::fork();
    if (child == 0) {
      try {
        Ortam o(place());
        work(o);
      } catch (const std::exception& error) {
        std::cout << "round " << at_ << ": " << error.what() << std::endl;
        ::_exit(1);
      }
      ::_exit(0);
    }
    if (span.count() >= 0) {
      std::uniform_int_distribution<long> moment(0, span.count());
      std::this_thread::sleep_for(microseconds(moment(random_)));
      ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) ++kills_;
    if (WIFEXITED(status)) ++finished_;
    if (WIFEXITED(status) && WEXITSTATUS(status) != 0) fail("the work ended with an error");
  }

  // Every file but those that the server keeps while it runs.
  Adlar listing() const {
    Adlar all;
    for (const fs::path& root : {place(), base_.path / "gecici"})
      for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string name = entry.path().lexically_relative(base_.path).string();
        const bool passing = name.ends_with("-wal") || name.ends_with("-shm") || name.ends_with(".intent");
        if (!passing) all.push_back(entry.is_directory() ? name + "/" : name);
      }
    std::sort(all.begin(), all.end());
    return all;
  }

  static Books books(Ortam& o) {
    Books found;
    for (const std::string& name : o.oku("Defination_DB", "SELECT sysfrm_dbnm FROM sysfrmlng"))
      found[name] = o.deger(name);
    return found;
  }

  void check(Work work, bool undisturbed) {
    Ortam o(place());
    try {
      maintenance::Bakimi_Tamamla(o.s.oturum);
      if (!o.calisiyor()) return fail("the service does not run");
      const Books found = books(o), before = after(Proof), done = after(work);
      if (found != done && (undisturbed || found != before)) return fail("books: " + shown(found));
      const bool isDone = found == done && done != before;
      if (found.contains("TASINAN") && work == MoveNew) checkCards(o);
      checkServer(o, found);
      for (const auto& backup : maintenance::yedekleriListele(target())) {
        const auto proof = maintenance::Yedek_Denetle(o.s.oturum, backup.klasor);
        for (const auto& row : proof.satirlar)
          if (row.durum == maintenance::DenetimSatiri::Durum::Kusur && row.konu != "Şema")
            fail("a backup is no good: " + row.konu + ": " + row.aciklama);
      }
      o.birak();
      checkFiles(work, isDone);
    } catch (const std::exception& error) {
      fail(error.what());
    }
  }
  // A company that was made here belongs to the first user.
  void checkCards(Ortam& o) {
    const Adlar each =
        o.oku("Defination_DB",
              "SELECT F.sysfrm_dbnm,(SELECT COUNT(*) FROM sysusfrmlng U WHERE U.sysfrm_ID=F.sysfrm_ID),"
              "(SELECT COUNT(*) FROM Kullanici K WHERE K.Firma_ID=F.sysfrm_ID) FROM sysfrmlng F WHERE "
              "F.sysfrm_dbnm IN ('TASINAN','IKINCI') ORDER BY 1");
    if (each != Adlar{"IKINCI|1|1", "TASINAN|1|1"}) fail("cards of the moved companies");
  }
  // The server knows the companies of the catalog, and of the others only those that it had.
  void checkServer(Ortam& o, const Books& found) {
    for (const std::string& name : o.oku("master", "SELECT name FROM sysdatabases")) {
      const bool system = name == "master" || name == "Defination_DB" || name == "tempdb";
      if (!system && !found.contains(name) && name != "MAGAZA" && name != "KOMSU")
        fail("the server knows " + name + ", the catalog does not");
      o.oku(name, "SELECT COUNT(*) FROM sysobjects");
    }
  }
  // Files that the work would have left, or that were there before it.
  void checkFiles(Work work, bool isDone) {
    const Adlar& may = left_[work];
    for (const std::string& name : listing()) {
      const bool known = std::ranges::binary_search(before_, name) || std::ranges::binary_search(may, name) ||
                         name.ends_with("/bakim.kilit") || name.find("/yedek_kanit/") != std::string::npos;
      if (!known) fail("left behind: " + name);
      if (name.ends_with(".mdf") && !isDone && work == MoveNew && !std::ranges::binary_search(before_, name))
        fail("a database of no company: " + name);
    }
    const Adlar now = listing();
    for (const std::string& name : before_)
      if (!std::ranges::binary_search(now, name)) fail("gone: " + name);
  }

  static std::string shown(const Books& books) {
    std::string text;
    for (const auto& [name, value] : books) text.append(name).append("=").append(value).append(" ");
    return text;
  }
  void fail(const std::string& what) {
    if (at_ != failedAt_) ++failures_;
    failedAt_ = at_;
    std::cout << "round " << at_ << " of seed " << seed_ << ": " << what << std::endl;
  }

  const Books moved_ = {{"TASINAN", "taşınan"}, {"IKINCI", "ikinci"}, {"MAGAZA", "gelen"}};
  std::mt19937 random_;
  unsigned seed_;
  Folder base_;
  std::string at_, failedAt_;
  Adlar before_;
  std::array<Adlar, works> left_;
  std::array<microseconds, works> took_{};
  int kills_ = 0, finished_ = 0, failures_ = 0;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const auto arguments = campaign::arguments(count, values, 700);
  campaign::Campaign campaign(arguments.seed);
  for (int round = 1; round <= arguments.rounds && campaign.failures() < 5; ++round) {
    campaign.round(round);
    if (round % 100 == 0) std::cout << campaign.kills() << " kills so far" << std::endl;
  }
  std::cout << campaign.kills() << " kills, " << campaign.failures() << " findings\n";
  return campaign.failures() == 0 ? 0 : 1;
}
