#include "engine/store/login_guard.h"

#include <algorithm>
#include <ctime>
#include <thread>

#include "engine/value.h"

namespace engine {

namespace {
constexpr std::size_t rememberedPairs = 256;
constexpr std::size_t rememberedNames = 4096;
constexpr std::chrono::milliseconds firstDelay{125};
constexpr std::chrono::milliseconds longestDelay{4000};
constexpr std::uint64_t forgottenAfter = 900;  // seconds
constexpr int freeFailures = 2;                // a person mistypes

// A hash no password is known for; made once per process, so that unknown names cost one verification.
std::string makeDummyHash() {
  std::array<char, 32> secret{};
  randombytes_buf(secret.data(), secret.size());
  return hashPassword({secret.data(), secret.size()});
}
bool hashMatches(const std::string& hash, std::string_view password) {
  return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}
}  // namespace

namespace {

std::string hashAt(std::string_view password, unsigned long long operations, std::size_t memory) {
  std::array<char, crypto_pwhash_STRBYTES> out{};
  if (crypto_pwhash_str(out.data(), password.data(), password.size(), operations, memory) != 0)
    throw Error(701, "There is insufficient system memory to run this query.", 17);
  return out.data();
}

}  // namespace

std::string hashPassword(std::string_view password) {
  return hashAt(password, crypto_pwhash_OPSLIMIT_INTERACTIVE, crypto_pwhash_MEMLIMIT_INTERACTIVE);
}

std::string hashSecret(std::string_view secret) {
  return hashAt(secret, crypto_pwhash_OPSLIMIT_MIN, crypto_pwhash_MEMLIMIT_MIN);
}

LoginGuard::LoginGuard()
    : LoginGuard(
          Tools{[](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }, hashMatches}) {}

LoginGuard::LoginGuard(Tools tools) : tools_(std::move(tools)) {
  if (sodium_init() < 0) throw Error(17058, "The random source of the system cannot be used.", 20);
  randombytes_buf(key_.data(), key_.size());
}

LoginGuard::~LoginGuard() {
  sodium_memzero(key_.data(), key_.size());
}

LoginGuard::Mark LoginGuard::mark(const std::string& login, std::string_view password,
                                  const std::string& hash) const {
  crypto_generichash_state state;
  crypto_generichash_init(&state, key_.data(), key_.size(), crypto_generichash_BYTES);
  for (std::string_view part : {std::string_view(login), password, std::string_view(hash)}) {
    const std::uint64_t size = part.size();
    crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(&size), sizeof size);
    crypto_generichash_update(&state, reinterpret_cast<const unsigned char*>(part.data()), part.size());
  }
  Mark result{};
  crypto_generichash_final(&state, result.data(), result.size());
  return result;
}

bool LoginGuard::verify(const std::string& login, std::string_view password, const std::string& hash) {
  const Mark pair = mark(login, password, hash);
  {
    const std::lock_guard lock(mutex_);
    if (!hash.empty() && passed_.contains(pair)) return true;
    if (dummyHash_.empty()) dummyHash_ = makeDummyHash();
  }
  if (const auto held = begin(login); held.count() > 0) tools_.pause(held);
  const bool equal = tools_.matches(hash.empty() ? dummyHash_ : hash, password);
  const bool passed = equal && !hash.empty();
  if (passed) {
    const std::lock_guard lock(mutex_);
    failures_.erase(login);
    if (page_) slotOf(login).count = 0;
    if (passed_.size() >= rememberedPairs) passed_.clear();
    passed_.insert(pair);
  }
  return passed;
}

void LoginGuard::trust(const std::string& login, std::string_view password, const std::string& hash) {
  const std::lock_guard lock(mutex_);
  passed_.insert(mark(login, password, hash));
}

// The name's own place, else a free one, else the one that was not needed for the longest time.
SharedPage::Failure& LoginGuard::slotOf(const std::string& login) {
  std::uint64_t name = 0;
  crypto_generichash(reinterpret_cast<unsigned char*>(&name), 16 > sizeof name ? sizeof name : 16,
                     reinterpret_cast<const unsigned char*>(login.data()), login.size(), nullptr, 0);
  name |= 1;
  SharedPage::Failure* oldest = &page_->failures[0];
  for (auto& slot : page_->failures) {
    if (slot.name == name) return slot;
    if (slot.time < oldest->time) oldest = &slot;
  }
  oldest->count = 0;
  oldest->name = name;
  return *oldest;
}

std::chrono::milliseconds LoginGuard::begin(const std::string& login) {
  const std::lock_guard lock(mutex_);
  if (failures_.size() >= rememberedNames) failures_.clear();
  int failed = failures_[login]++;
  if (page_) {
    auto& slot = slotOf(login);
    const auto now = static_cast<std::uint64_t>(std::time(nullptr));
    // Numbers of a damaged page, or of an attack long ago.
    if (slot.count > 1000 || slot.time > now || now - slot.time > forgottenAfter) slot.count = 0;
    failed = std::max(failed, static_cast<int>(slot.count++));
    slot.time = now;
  }
  const int counted = failed - freeFailures;
  if (counted <= 0) return std::chrono::milliseconds(0);
  return std::min(longestDelay, firstDelay * (1 << std::min(counted - 1, 10)));
}

}  // namespace engine
