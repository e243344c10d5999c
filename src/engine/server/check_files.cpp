#include "engine/server/server.h"
#include "engine/store.h"

namespace engine {

void Server::checkFiles(const std::filesystem::path& data, const std::filesystem::path& log,
                        const std::string& name, const CopyStep& step) {
  checkPages({data, log, name}, step);
}

}  // namespace engine
