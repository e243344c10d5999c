#include "tds/tls.h"

#include <fcntl.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <unistd.h>

#include <stdexcept>

#include "engine/server.h"
#include "tds/bytes.h"

namespace tds {

namespace fs = std::filesystem;

namespace {

constexpr long validSeconds = 20L * 365 * 24 * 3600;

std::string reason() {
  char text[256] = "?";
  if (const unsigned long code = ERR_get_error()) ERR_error_string_n(code, text, sizeof text);
  ERR_clear_error();
  return text;
}

[[noreturn]] void fail(const fs::path& file) {
  throw std::runtime_error(file.string() + ": " + reason());
}

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;
using Output = std::unique_ptr<BIO, decltype(&BIO_free)>;

Certificate selfSigned(EVP_PKEY* key) {
  Certificate made(X509_new(), X509_free);
  X509_set_version(made.get(), 2);
  std::uint64_t serial = 0;
  RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial);
  ASN1_INTEGER_set_uint64(X509_get_serialNumber(made.get()), serial >> 1);
  X509_gmtime_adj(X509_getm_notBefore(made.get()), -24L * 3600);  // clocks differ
  X509_gmtime_adj(X509_getm_notAfter(made.get()), validSeconds);
  X509_set_pubkey(made.get(), key);
  const std::string name = engine::Server::machineName();
  X509_NAME* subject = X509_get_subject_name(made.get());
  X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_UTF8,
                             reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0);
  X509_set_issuer_name(made.get(), subject);
  if (X509_sign(made.get(), key, EVP_sha256()) == 0) throw std::runtime_error(reason());
  return made;
}

// On a curve: signing with such a key, once a login, costs a tenth of what RSA does.
std::string pemOfNewPair() {
  const Key key(EVP_EC_gen("P-256"), EVP_PKEY_free);
  if (!key) throw std::runtime_error(reason());
  const Certificate certificate = selfSigned(key.get());
  const Output out(BIO_new(BIO_s_mem()), BIO_free);
  PEM_write_bio_PrivateKey(out.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
  PEM_write_bio_X509(out.get(), certificate.get());
  char* text = nullptr;
  const long size = BIO_get_mem_data(out.get(), &text);
  return {text, static_cast<std::size_t>(size)};
}

}  // namespace

fs::path TlsContext::ownCertificate(const fs::path& folder) {
  const fs::path file = folder / "zembera-sunucu.pem";
  if (fs::exists(file)) return file;
  const std::string pem = pemOfNewPair();
  fs::path unfinished = file;
  unfinished += "." + std::to_string(getpid());
  const int descriptor = open(unfinished.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  const bool written = descriptor >= 0 &&
                       ::write(descriptor, pem.data(), pem.size()) == static_cast<ssize_t>(pem.size()) &&
                       fsync(descriptor) == 0;
  if (descriptor >= 0) close(descriptor);
  std::error_code error;
  if (written) fs::rename(unfinished, file, error);
  if (!written || error) {
    fs::remove(unfinished, error);
    throw std::runtime_error(file.string() + " yazılamadı");
  }
  return file;
}

namespace {

std::shared_ptr<SSL_CTX> makeContext(const fs::path& certificate, const fs::path& key) {
  std::shared_ptr<SSL_CTX> made(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
  SSL_CTX* const context = made.get();
  if (!context) throw std::runtime_error(reason());
  SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
  // A connection is used once; tickets would come at a moment when the other side reads packets.
  SSL_CTX_set_num_tickets(context, 0);
  SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
  SSL_CTX_set_mode(context, SSL_MODE_RELEASE_BUFFERS);  // an idle connection keeps none
  if (SSL_CTX_use_certificate_chain_file(context, certificate.c_str()) != 1) fail(certificate);
  if (SSL_CTX_use_PrivateKey_file(context, key.c_str(), SSL_FILETYPE_PEM) != 1) fail(key);
  if (SSL_CTX_check_private_key(context) != 1) fail(key);
  return made;
}

constexpr std::string_view strictName{"\x07tds/8.0"};  // behind its length

int chooseStrict(SSL*, const unsigned char** chosen, unsigned char* size, const unsigned char* offered,
                 unsigned int offeredSize, void*) {
  unsigned char* found = nullptr;
  const auto* ours = reinterpret_cast<const unsigned char*>(strictName.data());
  const int agreed = SSL_select_next_proto(&found, size, ours, static_cast<unsigned int>(strictName.size()),
                                           offered, offeredSize);
  *chosen = found;
  return agreed == OPENSSL_NPN_NEGOTIATED ? SSL_TLSEXT_ERR_OK : SSL_TLSEXT_ERR_ALERT_FATAL;
}

}  // namespace

TlsContext::TlsContext(const fs::path& certificate, const fs::path& key)
    : context_(makeContext(certificate, key)), strict_(makeContext(certificate, key)) {
  // Not 1.3: its handshake ends with words of the client, which drivers keep back until they have read an
  // answer.
  SSL_CTX_set_max_proto_version(context_.get(), TLS1_2_VERSION);
  SSL_CTX_set_alpn_select_cb(strict_.get(), chooseStrict, nullptr);
}

TlsTransport::TlsTransport(SSL_CTX* context, Transport& below)
    : below_(below), ssl_(SSL_new(context), SSL_free) {
  if (!ssl_) throw std::bad_alloc();
  SSL_set_bio(ssl_.get(), BIO_new(BIO_s_mem()), BIO_new(BIO_s_mem()));
  SSL_set_accept_state(ssl_.get());
}

TlsTransport::~TlsTransport() {
  ERR_clear_error();
}

std::string TlsTransport::takeOutput() {
  BIO* const from = SSL_get_wbio(ssl_.get());
  std::string out(BIO_ctrl_pending(from), '\0');
  if (!out.empty()) BIO_read(from, out.data(), static_cast<int>(out.size()));
  return out;
}

void TlsTransport::handshake(PacketReader& reader, PacketWriter& writer) {
  constexpr std::size_t largestFlight = std::size_t{64} * 1024;
  constexpr int mostFlights = 8;
  for (int flight = 0; flight < mostFlights; ++flight) {
    const Message message = reader.next(largestFlight);
    if (message.type != MessageType::PreLogin) throw ProtocolError("no TLS behind the PRELOGIN");
    BIO_write(SSL_get_rbio(ssl_.get()), message.data.data(), static_cast<int>(message.data.size()));
    ERR_clear_error();
    const int done = SSL_do_handshake(ssl_.get());
    const int state = SSL_get_error(ssl_.get(), done);
    if (std::string out = takeOutput(); !out.empty()) {
      writer.tokens() += out;
      writer.end(MessageType::PreLogin);
    }
    if (done == 1) return;
    if (state != SSL_ERROR_WANT_READ) throw ProtocolError("TLS: " + reason());
  }
  throw ProtocolError("TLS: the handshake has no end");
}

void TlsTransport::handshakeFirst() {
  for (;;) {
    ERR_clear_error();
    const int done = SSL_do_handshake(ssl_.get());
    const int state = SSL_get_error(ssl_.get(), done);
    if (const std::string out = takeOutput(); !out.empty()) below_.write(out);
    if (done == 1) break;
    if (state != SSL_ERROR_WANT_READ) throw ProtocolError("TLS: " + reason());
    feed();
  }
  const unsigned char* chosen = nullptr;
  unsigned int size = 0;
  SSL_get0_alpn_selected(ssl_.get(), &chosen, &size);
  if (size == 0) throw ProtocolError("TLS that does not name TDS 8");
}

void TlsTransport::feed() {
  constexpr std::size_t chunkSize = 16384;
  char chunk[chunkSize];
  const std::size_t size = below_.read(chunk, sizeof chunk);
  BIO_write(SSL_get_rbio(ssl_.get()), chunk, static_cast<int>(size));
}

std::size_t TlsTransport::read(char* to, std::size_t most) {
  for (;;) {
    ERR_clear_error();
    const int got = SSL_read(ssl_.get(), to, static_cast<int>(most));
    if (got > 0) return static_cast<std::size_t>(got);
    if (SSL_get_error(ssl_.get(), got) != SSL_ERROR_WANT_READ) throw LinkLost("TLS has ended");
    if (const std::string out = takeOutput(); !out.empty()) below_.write(out);
    feed();
  }
}

void TlsTransport::write(std::string_view bytes) {
  while (!bytes.empty()) {
    ERR_clear_error();
    const int sent = SSL_write(ssl_.get(), bytes.data(), static_cast<int>(bytes.size()));
    if (sent <= 0) throw LinkLost("TLS has ended");
    bytes.remove_prefix(static_cast<std::size_t>(sent));
    below_.write(takeOutput());
  }
}

bool TlsTransport::isDrained() const {
  return BIO_ctrl_pending(SSL_get_rbio(ssl_.get())) == 0 && SSL_pending(ssl_.get()) == 0;
}

}  // namespace tds
