// What the file layer found, for the caller on the other side of SQLite, which passes numbers only.
#pragma once

#include <optional>

#include "engine/value/error.h"

namespace engine::lite {

// Keeps the error for this thread and returns `code`, for SQLite.
int failWith(int code, const Error& error);
// The last one kept in this thread under the same primary code; it is forgotten.
std::optional<Error> takeFailure(int code);
void forgetFailure();

}  // namespace engine::lite
