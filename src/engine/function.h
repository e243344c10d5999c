// Floor `function`: the T-SQL functions as one table (what each takes, gives and how it is bound) and their
// bodies, registered on an SQLite connection. They see their arguments, the clock and the session's date
// settings only.
#pragma once

#include "engine/function/functions.h"
