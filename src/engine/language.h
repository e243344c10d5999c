// Floor `language`: text to tokens, tree and literal-free plan key. Pure; survives any input: depth and
// height of what it yields are bounded, and what it refuses is an Error before anything has run. Knows
// `value`.
#pragma once

#include "engine/language/ast.h"
#include "engine/language/parser.h"
