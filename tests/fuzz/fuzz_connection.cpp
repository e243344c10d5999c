// Any bytes as a whole connection: bare, or as messages behind a good login, a byte for the type and two for
// the length before each. The server serves on, and a good client gets its answer afterwards.
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "tds/client.h"
#include "tds/connection.h"

namespace {

struct World {
  std::filesystem::path folder;
  std::shared_ptr<engine::Server> engine;
  tds::Options options;
  std::unique_ptr<tds::TlsContext> tls;
};

World& world() {
  static World made = [] {
    World fresh;
    fresh.folder = std::filesystem::temp_directory_path() / ("zembera-fuzz-" + std::to_string(getpid()));
    std::filesystem::remove_all(fresh.folder);
    fresh.engine = engine::Server::create(fresh.folder, "sa", "parola");
    fresh.options.plainOnThisMachine = true;
    fresh.options.largestRequest = 65536;
    const auto certificate = tds::TlsContext::ownCertificate(fresh.folder);
    fresh.tls = std::make_unique<tds::TlsContext>(certificate, certificate);
    return fresh;
  }();
  return made;
}

// What only a second client could end, and what would leave the server another one.
bool isLeftOut(const std::string& bytes) {
  std::string upper;
  for (const char c : bytes)
    if (c != '\0') upper += static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  for (const char* word : {"WHILE", "REPLICATE", "SPACE", "DATABASE", "LOGIN", "SP_PASSWORD", "ROLEMEMBER"})
    if (upper.find(word) != std::string::npos) return true;
  return false;
}

// Serves the bytes to their end; what the server has said.
std::string serve(const std::string& bytes) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) std::abort();
  std::string said;
  std::thread client([&] {
    std::thread reader([&] {
      char chunk[4096];
      for (ssize_t got; (got = recv(ends[1], chunk, sizeof chunk, 0)) > 0;)
        said.append(chunk, static_cast<std::size_t>(got));
    });
    send(ends[1], bytes.data(), bytes.size(), MSG_NOSIGNAL);
    shutdown(ends[1], SHUT_WR);
    reader.join();
  });
  {
    tds::Connection connection(world().engine, world().options, *world().tls, ends[0], "fuzz", true);
    connection.serve();
  }
  client.join();
  close(ends[1]);
  return said;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tds::test;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  if (size == 0 || isLeftOut(bytes)) return 0;
  const std::string greeting =
      packet(0x12, preLogin(2)) + packet(0x10, login(0x74000004, "sa", "parola", ""));
  if ((data[0] & 1) == 0) {
    serve(bytes.substr(1));
  } else {
    std::string all = greeting;
    for (std::size_t at = 1; at + 3 <= bytes.size();) {
      const auto type = static_cast<std::uint8_t>(bytes[at]);
      const std::size_t length = static_cast<unsigned char>(bytes[at + 1]) | (bytes[at + 2] & 7) << 8;
      all += packet(
          type, (type & 0x80) != 0 ? bytes.substr(at + 3, length) : headers() + bytes.substr(at + 3, length));
      at += 3 + length;
    }
    serve(all);
  }
  static int count = 0;
  if (++count % 100 == 0 &&
      serve(greeting + packet(1, headers() + utf16("SELECT 'tamam'"))).find("tamam") == std::string::npos)
    std::abort();
  return 0;
}
