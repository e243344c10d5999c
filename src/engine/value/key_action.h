#pragma once

#include <cstdint>

namespace engine {

// What a foreign key does where the key that it refers to goes or changes; numbered as the catalog tells it.
enum class KeyAction : std::uint8_t { NoAction, Cascade, SetNull, SetDefault };

}  // namespace engine
