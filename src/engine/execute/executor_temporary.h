// How long temporary tables and table variables live. Part of executor.h.
#pragma once

#include "engine/execute/executor.h"

namespace engine {

// Around a running batch or trigger: makes its table variables and takes them away again; of a `nested` one
// also the temporary tables that it has made and not dropped.
class Executor::TemporaryScope {
 public:
  TemporaryScope(Executor& executor, const Frame& frame, bool nested);
  ~TemporaryScope();
  TemporaryScope(const TemporaryScope&) = delete;
  TemporaryScope& operator=(const TemporaryScope&) = delete;

 private:
  void end() noexcept;

  Executor& executor_;
  const bool nested_;
  const std::size_t tables_;  // of Executor::liveTables_ that are others'
  std::shared_ptr<const DatabaseCatalog> before_;
};

}  // namespace engine
