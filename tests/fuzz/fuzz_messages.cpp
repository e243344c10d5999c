// Any bytes as what a client of the network sends: packets, and behind them every message by its own reader.
// They end in a message or in an error, never in anything else.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "tds/login.h"
#include "tds/packet.h"
#include "tds/prelogin.h"
#include "tds/rpc.h"

namespace {

class Memory : public tds::Transport {
 public:
  explicit Memory(std::string_view bytes) : bytes_(bytes) {}
  std::size_t read(char* to, std::size_t most) override {
    if (bytes_.empty()) throw tds::LinkLost("the end");
    const std::size_t size = std::min(most, bytes_.size());
    std::memcpy(to, bytes_.data(), size);
    bytes_.remove_prefix(size);
    return size;
  }
  void write(std::string_view) override {}

 private:
  std::string_view bytes_;
};

template <class Read>
void attempt(Read read) {
  try {
    read();
  } catch (const tds::ProtocolError&) {
  } catch (const tds::LinkLost&) {
  } catch (const engine::Error&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Memory memory(bytes);
  tds::PacketReader reader(memory);
  attempt([&] {
    for (;;) reader.next(65536);
  });
  attempt([&] { tds::readPreLogin(bytes); });
  attempt([&] { tds::readLogin(bytes); });
  for (const tds::Version version : {tds::Version::V71, tds::Version::V74})
    attempt([&] {
      for (const tds::Call& call : tds::readCalls(bytes, version)) {
        call.number(0);
        tds::bindValues(tds::parseDeclarations(call.text(1)), call.parameters, 2);
      }
    });
  attempt([&] { tds::parseDeclarations(bytes); });
  return 0;
}
