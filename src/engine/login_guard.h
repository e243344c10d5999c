// What a process remembers about log-ins: who may skip the slow hash, who has to wait.
#pragma once

#include <sodium.h>

#include <array>
#include <chrono>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace engine {

// The salted slow hash of a password. Error 701 when the memory for it is missing.
std::string hashPassword(std::string_view password);

class LoginGuard {
 public:
  LoginGuard();
  ~LoginGuard();
  LoginGuard(const LoginGuard&) = delete;
  LoginGuard& operator=(const LoginGuard&) = delete;

  // True when the password belongs to the hash. An empty hash (no such login) takes as long as a wrong
  // password. A pair that passed once passes again without the slow work as long as the hash is the same.
  bool verify(const std::string& foldedLogin, std::string_view password, const std::string& hash);

  // How long the next answer for this login is held back.
  std::chrono::milliseconds delay(const std::string& foldedLogin) const;

 private:
  using Mark = std::array<unsigned char, crypto_generichash_BYTES>;
  Mark mark(const std::string& login, std::string_view password, const std::string& hash) const;
  void count(const std::string& login, bool passed);

  std::array<unsigned char, crypto_generichash_KEYBYTES> key_{};  // of this process alone
  std::string dummyHash_;
  mutable std::mutex mutex_;
  std::set<Mark> passed_;
  std::map<std::string, int> failures_;
};

}  // namespace engine
