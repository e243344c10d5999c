// The server's own procedures (sp_...).
#pragma once

#include "engine/execute/executor.h"

namespace engine {

// Runs EXEC of a procedure and returns its status, 0. Throws 2812 (no such procedure), 201, 8144, 8145
// (arguments) and what the procedure itself finds.
bool isServerProcedure(const std::string& name);
int runProcedure(Executor& executor, const ExecStatement& statement);

}  // namespace engine
