// Floor `server`: the embedded server as the rooms above see it. The only header of the engine that they
// include.
#pragma once

#include "engine/language/keywords.h"
#include "engine/server/server.h"
#include "engine/value.h"
