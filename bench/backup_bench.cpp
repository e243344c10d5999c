// What a backup costs; prints times, sizes and ratios of one run. Each part runs in a process of its own, so
// that its peak of memory is its own.
//
//   backup_bench [megabytes]
//
//   backup      stopping, without proof, against cp and sync of the same two files
//   proof       against one sequential read of the copy from the disk
//   live        four processes that commit one row at a time, with a live backup under way and without
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "bench/bare.h"
#include "bench/status.h"
#include "maintenance/ortam.h"
#include "maintenance/yedek.h"
#include "maintenance/yedek_denetim.h"

namespace {

namespace fs = std::filesystem;
using bench::seconds;
using maintenance::test::Ortam;

constexpr int rounds = 3, writers = 4;

struct Figures {
  double time = 0, down = 0;
  long peak = 0;  // MB of the process since loggedIn()
  bool good = false;
};

struct Waits {
  std::atomic<bool> stop;
  std::atomic<long> failed;
  std::array<std::atomic<long>, writers> commits;
  std::array<std::array<float, 2'000'000>, writers> waits;  // ms
};

template <class T>
T* shared() {
  void* at = ::mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (at == MAP_FAILED) std::abort();
  return new (at) T{};
}

// The hash of a password takes 64 MB for a moment, in every program that logs in: what comes after it counts
// anew.
void loggedIn(Ortam& o) {
  o.calistir("BUYUK", "SELECT 1");
  if (std::FILE* peak = std::fopen("/proc/self/clear_refs", "w")) {
    std::fputs("5", peak);
    std::fclose(peak);
  }
}

// Runs `work` in a child; what it puts into its figures comes back with its peak of memory.
Figures apart(const std::function<void(Figures&)>& work) {
  auto* figures = shared<Figures>();
  const pid_t child = ::fork();
  if (child == 0) {
    try {
      work(*figures);
      figures->peak = bench::statusKilobytes("VmHWM") / 1024;
      ::_exit(0);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      ::_exit(1);
    }
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  Figures out = *figures;
  ::munmap(figures, sizeof(Figures));
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::exit(1);
  return out;
}

class Bench {
 public:
  explicit Bench(int megabytes) {
    fs::create_directory(target());
    apart([&](Figures&) { fill(megabytes); });
    std::printf("company of %.0f MB\n", static_cast<double>(fs::file_size(data())) / 1e6);
  }

  void backup() {
    std::vector<double> ratios, downs;
    std::vector<long> peaks;
    for (int round = 0; round < rounds; ++round) {
      const fs::path copy = folder_.path / "cp";
      fs::create_directory(copy);
      const std::string command = "cp '" + data().string() + "' '" + log().string() + "' '" + copy.string() +
                                  "' && sync '" + copy.string() + "'/*";
      const double bare = seconds([&] {
        if (std::system(command.c_str()) != 0) std::exit(1);
      });
      fs::remove_all(copy);
      const Figures ours = apart([&](Figures& out) {
        Ortam o(folder_.path);
        maintenance::YedekSonucu result;
        loggedIn(o);
        out.time = seconds([&] { result = maintenance::Yedekle(o.s.oturum, "BUYUK", target()); });
        out.down = result.kesinti;
        out.good = result.tamam;
      });
      if (!ours.good) std::exit(1);
      std::printf("  %.2f s, down %.2f s, against %.2f s of cp and sync; peak %ld MB\n", ours.time, ours.down,
                  bare, ours.peak);
      ratios.push_back(ours.time / bare);
      downs.push_back(ours.down - bare);
      peaks.push_back(ours.peak);
    }
    std::printf(
        "backup: %.2f times cp and sync (at most 1.30); down %+.2f s against the copy's time (at most "
        "+1.00); peak %ld MB (under 64)\n",
        bench::median(ratios), bench::median(downs), std::ranges::max(peaks));
  }

  void proof() {
    const fs::path copy = maintenance::yedekleriListele(target()).front().klasor;
    std::vector<double> ratios;
    long peak = 0;
    for (int round = 0; round < rounds; ++round) {
      const double bare = seconds([&] {
        for (const auto& entry : fs::directory_iterator(copy)) readCold(entry.path());
      });
      const Figures ours = apart([&](Figures& out) {
        Ortam o(folder_.path);
        maintenance::YedekDenetimi result;
        loggedIn(o);
        out.time = seconds([&] { result = maintenance::Yedek_Denetle(o.s.oturum, copy); });
        out.good = result.calisti && result.tablo == 2;
      });
      if (!ours.good) std::exit(1);
      std::printf("  %.2f s against %.2f s of one read; peak %ld MB\n", ours.time, bare, ours.peak);
      ratios.push_back(ours.time / bare);
      peak = std::max(peak, ours.peak);
    }
    std::printf("proof: %.2f times one sequential read (at most 2.00); peak %ld MB (under 64)\n",
                bench::median(ratios), peak);
  }

  void live() {
    Figures copied;
    const auto busy = writing([&] {
      copied = apart([&](Figures& out) {
        Ortam o(folder_.path);
        loggedIn(o);
        out.time =
            seconds([&] { out.good = maintenance::Canli_Yedekle(o.s.oturum, "BUYUK", target()).tamam; });
      });
    });
    if (!copied.good) std::exit(1);
    // As long as the other: the slowest of more commits is slower.
    const auto quiet = writing([&] { ::usleep(static_cast<useconds_t>(copied.time * 1e6)); });
    const auto at = [](const std::vector<float>& all, double part) {
      return all[std::min(all.size() - 1, static_cast<std::size_t>(part * static_cast<double>(all.size())))];
    };
    for (const auto& [name, all] : {std::pair("without", &quiet), std::pair("with", &busy)})
      std::printf("  %-7s %7zu commits, median %.2f ms, p99 %.2f ms, longest %.1f ms\n", name, all->size(),
                  at(*all, 0.5), at(*all, 0.99), all->back());
    std::printf(
        "live: %ld failed (0); a commit waits %.2f times as long, in the slowest of a hundred %.2f, the "
        "slowest of all %.2f (at most 3.00); %.2f s, peak %ld MB (under 64)\n",
        failed_, at(busy, 0.5) / at(quiet, 0.5), at(busy, 0.99) / at(quiet, 0.99), busy.back() / quiet.back(),
        copied.time, copied.peak);
  }

 private:
  fs::path target() const { return folder_.path / "yedek"; }
  fs::path data() const { return folder_.path / "veri" / "BUYUK.mdf"; }
  fs::path log() const { return folder_.path / "veri" / "BUYUK_log.ldf"; }

  void fill(int megabytes) {
    Ortam o(folder_.path);
    o.firma("BUYUK", "x");
    o.calistir(
        "BUYUK",
        "CREATE TABLE HAREKET (ID INT IDENTITY PRIMARY KEY, Tarih DATETIME, Kod CHAR(20), Aciklama "
        "VARCHAR(200), Tutar MONEY, Miktar FLOAT) INSERT INTO HAREKET (Tarih,Kod,Aciklama,Tutar,Miktar) "
        "VALUES ('20120314','STOK0001',REPLICATE('açıklama ',20),12.5,3)");
    o.calistir("BUYUK", "CREATE INDEX HAREKET_KOD ON HAREKET (Kod)");
    const char* const twice =
        "INSERT INTO HAREKET (Tarih,Kod,Aciklama,Tutar,Miktar) SELECT TOP 200000 DATEADD(day,ID%365,Tarih),"
        "'STOK'+CONVERT(VARCHAR(12),ID*7919%100003),Aciklama,Tutar+ID%97,Miktar+1 FROM HAREKET";
    while (static_cast<double>(fs::file_size(data())) < megabytes * 1e6) o.calistir("BUYUK", twice);
  }
  static void readCold(const fs::path& file) {
    const int fd = ::open(file.c_str(), O_RDONLY);
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
    std::vector<char> buffer(1 << 20);
    while (::read(fd, buffer.data(), buffer.size()) > 0) {
    }
    ::close(fd);
  }

  // How long each commit of the writers took while `meanwhile` went on, in ms, ascending.
  std::vector<float> writing(const std::function<void()>& meanwhile) {
    auto* waits = shared<Waits>();
    std::vector<pid_t> children;
    for (std::size_t w = 0; w < writers; ++w) {
      const pid_t child = ::fork();
      if (child == 0) {
        write(*waits, w);
        ::_exit(0);
      }
      children.push_back(child);
    }
    for (std::size_t w = 0; w < writers; ++w)
      while (waits->commits[w] < 20) ::usleep(1000);
    const auto begin = made(*waits);
    meanwhile();
    const auto end = made(*waits);
    waits->stop = true;
    for (const pid_t child : children) ::waitpid(child, nullptr, 0);
    std::vector<float> all;
    for (std::size_t w = 0; w < writers; ++w)
      all.insert(all.end(), waits->waits[w].begin() + begin[w], waits->waits[w].begin() + end[w]);
    failed_ += waits->failed;
    ::munmap(waits, sizeof(Waits));
    std::ranges::sort(all);
    return all;
  }
  static std::array<long, writers> made(const Waits& waits) {
    std::array<long, writers> out{};
    for (std::size_t w = 0; w < writers; ++w) out[w] = waits.commits[w];
    return out;
  }
  void write(Waits& waits, std::size_t writer) {
    Ortam o(folder_.path);
    o.calistir("BUYUK", "SELECT 1");
    auto& made = waits.commits[writer];
    while (!waits.stop && made < static_cast<long>(waits.waits[writer].size())) {
      const double time = seconds([&] {
        try {
          o.s.oturum.Baglanti->execute("INSERT INTO HAREKET (Kod,Aciklama) VALUES ('YENI','kasa fişi')");
        } catch (const db::SqlError&) {
          ++waits.failed;
        }
      });
      waits.waits[writer][static_cast<std::size_t>(made.load())] = static_cast<float>(time * 1e3);
      ++made;
    }
  }

  bench::Folder folder_;
  long failed_ = 0;
};

}  // namespace

int main(int count, char** values) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  Bench bench(count > 1 ? std::atoi(values[1]) : 1000);
  bench.backup();
  bench.proof();
  bench.live();
}
