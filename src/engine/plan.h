// Floor `plan`: names and types of a tree bound against catalogs, SQLite's SQL with parameters made of it,
// and the cache of plans by literal-free text. Runs nothing.
#pragma once

#include "engine/plan/binder.h"
#include "engine/plan/plan.h"
#include "engine/plan/plan_cache.h"
#include "engine/plan/prepared.h"
