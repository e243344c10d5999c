#include "engine/catalog/failure.h"

namespace engine::lite {

namespace {

struct Kept {
  int code;
  Error error;
};
thread_local std::optional<Kept> kept;

constexpr int primary = 0xFF;

}  // namespace

int failWith(int code, const Error& error) {
  kept.emplace(Kept{code, error});
  return code;
}

std::optional<Error> takeFailure(int code) {
  if (!kept || (kept->code & primary) != (code & primary)) return std::nullopt;
  const Error error = kept->error;
  kept.reset();
  return error;
}

void forgetFailure() {
  kept.reset();
}

}  // namespace engine::lite
