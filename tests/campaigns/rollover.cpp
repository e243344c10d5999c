// zembera-cli devir is killed at any moment of its work: onto a new company, onto one that has been rolled
// into before, and as a trial. Afterwards the target is as before or complete, no byte of the source has
// changed, and the same command succeeds.
//
// The moment is one of the processor time that an undisturbed run takes, so that a busy machine does not
// shift it; the process then ends itself by SIGKILL.
#include <signal.h>
#include <sys/time.h>

#include "campaigns/rollover_site.h"

namespace campaign {
namespace {

class Campaign {
 public:
  explicit Campaign(unsigned seed) : random_(seed), seed_(seed) {}

  void round(int number) {
    const RolloverSite::Kind& kind = site_.kinds[random_() % site_.kinds.size()];
    const auto most = static_cast<unsigned>(kind.processor * 1.02e6);
    const long micros = 1 + static_cast<long>(random_() % most);
    const End end = site_.command(kind.arguments, "", [&] { killAfter(micros); });
    std::string found = site_.judge(kind, !end.killed(), end.code());
    if (!end.killed() && end.code() != 0) found += "it failed: " + end.text;
    ++(site_.complete() ? after_ : before_);
    if (found.empty()) return;
    ++faults_;
    std::cout << "round " << number << " of seed " << seed_ << ", " << kind.target << " "
              << kind.arguments.back() << " after " << micros << " us of the processor: " << found;
  }

  int report(int rounds) const {
    std::cout << rounds << " kills: " << before_ << " targets as before, " << after_ << " complete, "
              << faults_ << " faults" << std::endl;
    return faults_ == 0 ? 0 : 1;
  }

 private:
  // The process ends itself after so much processor time.
  static void killAfter(long micros) {
    struct sigaction action = {};
    action.sa_handler = [](int) { ::kill(::getpid(), SIGKILL); };
    ::sigaction(SIGPROF, &action, nullptr);
    const itimerval timer{{0, 0}, {micros / 1'000'000, micros % 1'000'000}};
    ::setitimer(ITIMER_PROF, &timer, nullptr);
  }

  RolloverSite site_{[](RolloverSite& site) { site.must({"ornek-veri", "--ad", "KAYNAK"}); }};
  std::mt19937 random_;
  unsigned seed_;
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
