// The system as this process sees it, failing at the n-th call that opens, writes, flushes, cuts, renames or
// removes a file of one folder. The program that links this has the calls themselves replaced.
#pragma once

#include <filesystem>

namespace campaign {

struct FailingCall {
  int error = 0;         // errno
  int after = 0;         // so many calls pass first
  bool lasting = false;  // all later ones fail, too; else just the one
  bool room = false;     // counts and fails only what asks for room on the disk: writes, longer and new files
};

class FailingCalls {
 public:
  explicit FailingCalls(const std::filesystem::path& folder);  // one at a time
  ~FailingCalls();
  FailingCalls(const FailingCalls&) = delete;
  FailingCalls& operator=(const FailingCalls&) = delete;

  void arm(const FailingCall& call);
  // Heals the system. True when a call has failed since arm().
  bool disarm();
  int passed() const;  // calls since arm() that did not fail
};

}  // namespace campaign
