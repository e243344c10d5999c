#include "tds/connection.h"

#include <poll.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

#include "tds/bytes.h"
#include "tds/transaction_request.h"

namespace tds {

namespace {

// PRELOGIN and LOGIN7, which anybody may send.
constexpr std::size_t largestGreeting = std::size_t{16} * 1024;
// From a request on; then what only makes the next one faster is given back.
constexpr std::chrono::seconds beforeRest{1};
constexpr int loginFailed = 18456, cannotOpenDatabase = 4060, cannotOpenDefault = 4064, cancelled = 3617;

engine::Error loginError(const std::string& user) {
  return {loginFailed, "Login failed for user '" + user + "'.", 14};
}

// The part of this thread's stack below the present call: a login or a batch has been there, and nobody will
// be again before the next one.
void giveBackStack() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return;
  void* low = nullptr;
  std::size_t size = 0;
  pthread_attr_getstack(&attributes, &low, &size);
  pthread_attr_destroy(&attributes);
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = reinterpret_cast<std::uintptr_t>(low);
  const auto here = reinterpret_cast<std::uintptr_t>(&attributes);
  const std::uintptr_t end = here / page * page - page;  // what this call itself needs stays
  if (end > begin) madvise(low, end - begin, MADV_DONTNEED);
}

// For the log: texts of the client may hold anything.
std::string printable(const std::string& text) {
  std::string out;
  for (const char c : text) out += static_cast<unsigned char>(c) < ' ' ? '?' : c;
  return out;
}

}  // namespace

Connection::Connection(std::shared_ptr<engine::Server> server, const Options& options, const TlsContext& tls,
                       int descriptor, std::string peer, bool local, bool turnedAway)
    : server_(std::move(server)),
      options_(options),
      socket_(descriptor),
      tlsContext_(tls),
      transport_(&socket_),
      reader_(socket_),
      writer_(socket_),
      peer_(std::move(peer)),
      serverName_(engine::Server::machineName()),
      local_(local),
      turnedAway_(turnedAway) {}

Connection::~Connection() = default;

void Connection::log(const std::string& line) const {
  if (options_.log) options_.log(peer_ + ": " + line);
}

void Connection::serve() noexcept {
  try {
    const Message message = greet();
    {
      const std::lock_guard lock(mutex_);
      greeting_ = false;
    }
    if (login(message)) serveRequests();
  } catch (const LinkLost&) {
    // The usual end.
  } catch (const std::exception& error) {
    try {
      log(std::string("bağlantı kesildi: ") + error.what());
    } catch (const std::exception&) {
      // Without memory for a line there is none.
    }
  }
  {
    const std::lock_guard lock(mutex_);
    greeting_ = running_ = serving_ = false;
  }
  socket_.shut();
  session_.reset();  // an open transaction is rolled back
}

void Connection::use(Transport& transport) {
  transport_ = &transport;
  reader_.setTransport(transport);
  writer_.setTransport(transport);
}

// What both sides will do. Off: TLS for the login alone, so that at least the password is safe.
Encryption Connection::agree(Encryption wanted) {
  const bool plain = options_.plainOnThisMachine && local_;
  const bool able = wanted != Encryption::NotSupported;
  Encryption agreed = plain ? wanted : Encryption::Required;
  if (able && wanted != Encryption::Off) agreed = Encryption::On;
  writer_.tokens() += writePreLogin(agreed);
  writer_.end();
  if (!able && !plain) throw ProtocolError("a client without TLS");
  return agreed;
}

// Up to the login itself, which is returned.
Message Connection::greet() {
  constexpr std::uint8_t tlsHandshake = 0x16;  // of a record of TLS; no message of the protocol begins so
  if (socket_.peek() == tlsHandshake) return greetStrict();
  Message first = reader_.next(largestGreeting);
  // Old clients that want no TLS begin with their login.
  if (first.type == MessageType::Login && options_.plainOnThisMachine && local_) return first;
  return greetFirst(first);
}

// TDS 8: everything lies inside of TLS, and what PRELOGIN says of it has no meaning.
Message Connection::greetStrict() {
  strict_ = true;
  tls_.emplace(tlsContext_.strict(), socket_);
  tls_->handshakeFirst();
  use(*tls_);
  const Message first = reader_.next(largestGreeting);
  if (first.type != MessageType::PreLogin) throw ProtocolError("the first message is no PRELOGIN");
  writer_.tokens() += writePreLogin(readPreLogin(first.data).encryption);
  writer_.end();
  return reader_.next(largestGreeting);
}

Message Connection::greetFirst(const Message& first) {
  if (first.type != MessageType::PreLogin) throw ProtocolError("the first message is no PRELOGIN");
  const Encryption wanted = readPreLogin(first.data).encryption;
  if (wanted == Encryption::Strict) throw ProtocolError("TDS 8 without TLS before it");
  const Encryption agreed = agree(wanted);
  if (agreed == Encryption::NotSupported) return reader_.next(largestGreeting);
  tls_.emplace(tlsContext_.get(), socket_);
  tls_->handshake(reader_, writer_);
  use(*tls_);
  Message login = reader_.next(largestGreeting);
  if (agreed != Encryption::Off) return login;
  if (!tls_->isDrained()) throw ProtocolError("bytes behind the login");
  use(socket_);
  tls_.reset();
  return login;
}

void Connection::enter(const Login& login) {
  if (turnedAway_)
    throw engine::Error(17809,
                        "Could not connect because the maximum number of '" +
                            std::to_string(options_.mostConnections) +
                            "' user connections has already been reached. The system administrator can use "
                            "sp_configure to increase the maximum value. The connection has been closed.",
                        20);
  if (login.integrated)
    throw engine::Error(18452,
                        "Login failed for user '" + login.user +
                            "'. Reason: Not associated with a trusted SQL Server connection.",
                        14);
  session_ =
      std::make_unique<engine::Session>(server_, login.user, login.password, login.database,
                                        engine::SessionClient{login.host, login.program, login.process});
}

bool Connection::login(const Message& message) {
  if (message.type != MessageType::Login) throw ProtocolError("no LOGIN7 behind the PRELOGIN");
  const Login login = readLogin(message.data, strict_);
  version_ = login.version;
  try {
    enter(login);
  } catch (const engine::Error& error) {
    log("oturum reddedildi: kullanıcı '" + printable(login.user) + "', " + std::to_string(error.number()));
    std::string& to = writer_.tokens();
    putMessage(to, error, true, serverName_, version_);
    if (error.number() == cannotOpenDatabase || error.number() == cannotOpenDefault)
      putMessage(to, loginError(login.user), true, serverName_, version_);
    putDone(to, token::done, doneError, commandNone, 0, version_);
    writer_.end();
    return false;
  }
  procedures_.emplace(*session_, options_.largestKept);
  welcome(login);
  return true;
}

void Connection::welcome(const Login& login) {
  const std::size_t wanted = login.packetSize == 0 ? firstPacket : login.packetSize;
  const std::size_t size = std::clamp(wanted, smallestPacket, largestPacket);
  const engine::Error database(5701, "Changed database context to '" + session_->database() + "'.", 0, 2);
  const engine::Error language(5703, "Changed language setting to us_english.", 0, 1);
  std::string& to = writer_.tokens();
  putEnvironment(to, Environment::Database, session_->database(), "master");
  putMessage(to, database, false, serverName_, version_);
  putEnvironmentBytes(to, Environment::Collation, turkishCollation, {});
  putEnvironment(to, Environment::Language, "us_english", "");
  putMessage(to, language, false, serverName_, version_);
  putLoginAck(to, login.acknowledged);
  putEnvironment(to, Environment::PacketSize, std::to_string(size), std::to_string(firstPacket));
  putDone(to, token::done, 0, commandNone, 0, version_);
  writer_.end();
  writer_.setPacketSize(size);
  writer_.setSpid(session_->spid());
}

bool Connection::setRunning(bool running) {
  const std::lock_guard lock(mutex_);
  running_ = running && !stopping_;
  return !stopping_;
}

void Connection::look() {
  const std::lock_guard lock(mutex_);
  if (serving_ && session_->killed()) socket_.shut();
  if (greeting_ && std::chrono::steady_clock::now() - begun_ > options_.loginPatience) socket_.shut();
  if (!running_) return;
  pollfd state{socket_.descriptor(), POLLIN | POLLRDHUP, 0};
  if (poll(&state, 1, 0) <= 0) return;
  if ((state.revents & POLLIN) != 0 && (state.revents & (POLLRDHUP | POLLHUP | POLLERR)) == 0) {
    char type = 0;
    const bool plain = transport_ == &socket_;
    // Inside TLS the type cannot be seen; while a request runs there is nothing else to send.
    if (plain && (recv(socket_.descriptor(), &type, 1, MSG_PEEK | MSG_DONTWAIT) != 1 ||
                  static_cast<MessageType>(type) != MessageType::Attention))
      return;
  }
  session_->cancel();
}

void Connection::stop(bool atOnce) {
  const std::lock_guard lock(mutex_);
  stopping_ = true;
  if (running_ && atOnce) session_->cancel();
  if (!running_ || atOnce) socket_.shut();
}

void Connection::serveRequests() {
  {
    const std::lock_guard lock(mutex_);
    serving_ = true;
  }
  for (;;) {
    if ((!tls_ || tls_->isDrained()) && !socket_.waits(beforeRest)) {
      session_->rest();
      giveBackStack();
      rested_ = true;
    }
    const Message message = reader_.nextOrTooLong(options_.largestRequest);
    if ((message.status & ignoreMessage) != 0) continue;
    if (!setRunning(true)) return;
    serveRequest(message);
    if (!setRunning(false)) return;
  }
}

void Connection::serveRequest(const Message& message) {
  if (message.type == MessageType::Attention) return acknowledgeAttention();
  Answer answer(writer_, *session_, version_, serverName_);
  try {
    if (message.tooLong)
      throw engine::Error(701,
                          "There is insufficient system memory to run this query: a request may have " +
                              std::to_string(options_.largestRequest) + " bytes.",
                          17);
    if ((message.status & (resetConnection | resetKeepingTransaction)) != 0) {
      session_->reset((message.status & resetKeepingTransaction) != 0);
      procedures_->reset();
      answer.tellState();
      putEnvironmentBytes(answer.tokens(), Environment::Reset, {}, {});
    }
    runMessage(message, answer);
  } catch (const engine::Error& error) {
    tellFailure(error, answer);
  }
  answer.end();
}

void Connection::runMessage(const Message& message, Answer& answer) {
  const std::string_view data = withoutHeaders(message.data);
  switch (message.type) {
    case MessageType::SqlBatch:
      return session_->execute(fromUtf16(data), answer);
    case MessageType::Rpc:
      return runCalls(data, answer);
    case MessageType::Transaction:
      return runTransactionRequest(data, *session_, answer);
    default:
      throw ProtocolError("a message of an unknown type");
  }
}

// What the client has cancelled itself it is told by the answer to its ATTENTION; false then.
bool Connection::tellFailure(const engine::Error& error, Answer& answer) const {
  if (error.number() == cancelled) return false;
  answer.fail(error);
  return true;
}

void Connection::runCalls(std::string_view data, Answer& answer) {
  for (const Call& call : readCalls(data, version_)) {
    try {
      procedures_->run(call, answer);
    } catch (const engine::Error& error) {
      if (!tellFailure(error, answer)) return;
      answer.endProcedure();
    }
  }
}

void Connection::acknowledgeAttention() {
  putDone(writer_.tokens(), token::done, doneAttention, commandOther, 0, version_);
  writer_.end();
}

std::string_view Connection::withoutHeaders(std::string_view data) const {
  if (version_ < Version::V72) return data;
  ByteReader reader(data);
  const std::uint32_t size = reader.u32();
  if (size < 4) throw ProtocolError("headers that are shorter than their own length");
  reader.seek(size);
  return data.substr(size);
}

}  // namespace tds
