// The disk is full at a write of zembera-cli devir, once or from then on: onto a new company, onto one that
// has been rolled into before, and as a trial. A text tells of it, the target is as before, a new one is gone
// again with its rows in the catalog, no byte of the source has changed, and with room again the same command
// succeeds.
//
//   campaign_full_disk [writes] [seed]
//
// So many writes of each kind of run fail: a third are its first ones, a third its last ones, the others are
// drawn from between. With as many as a run has all of them fail.
#include <set>

#include "campaigns/failing_calls.h"
#include "campaigns/rollover_site.h"

namespace campaign {
namespace {

class Campaign {
 public:
  Campaign(int writes, unsigned seed) : random_(seed), writes_(writes) {}

  int run() {
    for (const RolloverSite::Kind& kind : site_.kinds)
      for (const bool lasting : {true, false}) {
        const int all = writesOf(kind);
        for (const int n : chosen(all)) round(kind, {ENOSPC, n, lasting, true}, all);
        std::cout << name(kind) << (lasting ? ", full from then on" : ", full once") << ": " << all
                  << " writes, " << rounds_ << " rounds so far, " << told_ << " told, " << passed_
                  << " done all the same, " << leftovers_ << " leftovers, " << faults_ << " faults"
                  << std::endl;
      }
    return faults_ == 0 && told_ > 0 ? 0 : 1;
  }

 private:
  static std::string name(const RolloverSite::Kind& kind) {
    return kind.target + " " + kind.arguments.back();
  }

  // How many writes an undisturbed run takes.
  int writesOf(const RolloverSite::Kind& kind) {
    int passed = 0;
    const End end = inChild([&](std::string& text) {
      FailingCalls system(site_.folder);
      system.arm({ENOSPC, 1'000'000'000, true, true});
      const int code = site_.here(kind.arguments, text);
      text = std::to_string(system.passed());
      return code;
    });
    if (end.code() == 0) passed = std::atoi(end.text.c_str());
    site_.restore();
    if (passed == 0) throw std::runtime_error("no writes were counted: " + end.text);
    return passed;
  }
  std::set<int> chosen(int all) {
    std::set<int> out;
    const int ends = std::max(1, writes_ / 3);
    for (int i = 0; i < std::min(ends, all); ++i) out.insert({i, all - 1 - i});
    const auto wanted = static_cast<std::size_t>(std::min(writes_, all));
    while (out.size() < wanted) out.insert(static_cast<int>(random_() % static_cast<unsigned>(all)));
    return out;
  }

  void round(const RolloverSite::Kind& kind, const FailingCall& call, int all) {
    ++rounds_;
    const End end = inChild([&](std::string& text) {
      FailingCalls system(site_.folder);
      system.arm(call);
      const int code = site_.here(kind.arguments, text);
      return code == 0 && !system.disarm() ? notStruck : code;
    });
    std::string found;
    const int code = end.code() == notStruck ? 0 : end.code();
    if (code == 0) {
      ++passed_;
    } else {
      ++told_;
      if (code != 1) found += "it ended with " + std::to_string(code) + "\n";
      if (end.text.empty()) found += "nothing was told\n";
    }
    if (code != 0 && kind.before.empty() && !site_.leftover(kind.target).empty()) ++leftovers_;
    found += site_.judge(kind, true, code);
    if (found.empty()) return;
    ++faults_;
    std::cout << name(kind) << ", write " << call.after << " of " << all << (call.lasting ? " and later" : "")
              << ": " << found << "it told: " << end.text << std::endl;
  }

  static constexpr int notStruck = 50;
  RolloverSite site_{[](RolloverSite& site) { site.must({"ornek-veri", "--ad", "KAYNAK"}); }};
  std::mt19937 random_;
  int writes_, rounds_ = 0, told_ = 0, passed_ = 0, leftovers_ = 0, faults_ = 0;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const campaign::Arguments arguments = campaign::arguments(count, values, 300);
  try {
    return campaign::Campaign(arguments.rounds, arguments.seed).run();
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
