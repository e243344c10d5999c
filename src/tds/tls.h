// TLS inside the protocol: the handshake goes in PRELOGIN messages, what follows lies bare on the connection.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "tds/packet.h"
#include "tds/transport.h"

using SSL = struct ssl_st;
using SSL_CTX = struct ssl_ctx_st;

namespace tds {

// The server's certificate and key, shared by all connections.
class TlsContext {
 public:
  // Both in PEM; they may be one file. Throws std::runtime_error that tells the file.
  TlsContext(const std::filesystem::path& certificate, const std::filesystem::path& key);
  // The server's own pair in one file that only its owner reads; made when it is missing.
  static std::filesystem::path ownCertificate(const std::filesystem::path& folder);

  SSL_CTX* get() const { return context_.get(); }
  // For clients that begin with TLS (TDS 8), 1.3 among it.
  SSL_CTX* strict() const { return strict_.get(); }

 private:
  std::shared_ptr<SSL_CTX> context_, strict_;
};

class TlsTransport : public Transport {
 public:
  TlsTransport(SSL_CTX* context, Transport& below);
  ~TlsTransport() override;

  // Throws ProtocolError when it does not come about, LinkLost.
  void handshake(PacketReader& reader, PacketWriter& writer);
  // The same without packets, for a client that begins with it and has to name TDS 8 there.
  void handshakeFirst();
  std::size_t read(char* to, std::size_t most) override;
  void write(std::string_view bytes) override;
  // Nothing has come that was not read: the connection may go on without TLS.
  bool isDrained() const;

 private:
  std::string takeOutput();
  void feed();

  Transport& below_;
  std::unique_ptr<SSL, void (*)(SSL*)> ssl_;
};

}  // namespace tds
