// Tables of batches with what they print, for the tests of the dialect.
#pragma once

#include "engine/session_fixture.h"

namespace engine::test {

class DialectTest : public SessionTest {};

}  // namespace engine::test
