// Floor `value`: types and values in their physical form, conversions, arithmetic, dates, LIKE and the
// collation. Pure: no file, no connection, no state but the constants of code page and collation. The same
// arguments give the same result or the same Error on every thread. Includes nothing of the engine.
#pragma once

#include "engine/value/arithmetic.h"
#include "engine/value/collation.h"
#include "engine/value/convert.h"
#include "engine/value/date_parts.h"
#include "engine/value/datetime.h"
#include "engine/value/datum.h"
#include "engine/value/decimal.h"
#include "engine/value/error.h"
#include "engine/value/key_action.h"
#include "engine/value/like.h"
#include "engine/value/operator.h"
#include "engine/value/result.h"
#include "engine/value/type.h"
