#include "engine/server/server.h"
#include "engine/store.h"

namespace engine {

void Server::checkFiles(const std::filesystem::path& data, const std::filesystem::path& log,
                        const std::string& name) {
  checkPages({data, log, name});
}

}  // namespace engine
