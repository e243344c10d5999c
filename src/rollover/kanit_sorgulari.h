// The proof's own questions to both companies.
#pragma once

#include "rollover/baglam.h"

namespace rollover {

// Reads source and target, with what the run's transaction has written.
Kanit kanitHazirla(Baglam& b);

}  // namespace rollover
