// Requests to the transaction manager: begin, commit, roll back and save without a statement's text.
#pragma once

#include <string_view>

#include "tds/answer.h"

namespace tds {

// `data` behind its headers. Throws ProtocolError, and Error for requests that there is no use for.
void runTransactionRequest(std::string_view data, engine::Session& session, Answer& answer);

}  // namespace tds
