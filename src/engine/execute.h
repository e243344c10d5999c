// Floor `execute`: runs bound statements, control flow, triggers, definitions and the sp_ procedures of one
// session. A statement stands with its triggers or leaves nothing; every failure is an Error.
#pragma once

#include "engine/execute/ddl.h"
#include "engine/execute/definition.h"
#include "engine/execute/executor.h"
#include "engine/execute/logins.h"
