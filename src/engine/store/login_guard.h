// What a process remembers about log-ins: who may skip the slow hash, who has to wait.
#pragma once

#include <sodium.h>

#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "engine/store/shared_state.h"

namespace engine {

// The salted slow hash of a password. Error 701 when the memory for it is missing.
std::string hashPassword(std::string_view password);
// Of a random password that lives as long as its process: nobody guesses it, so it need not be slow.
std::string hashSecret(std::string_view secret);

class LoginGuard {
 public:
  // What takes its time; tests bring their own.
  struct Tools {
    std::function<void(std::chrono::milliseconds)> pause;
    std::function<bool(const std::string& hash, std::string_view password)> matches;
  };

  LoginGuard();
  // Failures are counted where every process on the folder sees them.
  void shareFailures(SharedPage* page) { page_ = page; }
  explicit LoginGuard(Tools tools);
  ~LoginGuard();
  LoginGuard(const LoginGuard&) = delete;
  LoginGuard& operator=(const LoginGuard&) = delete;

  // True when the password belongs to the hash. An empty hash (no such login) takes as long as a wrong
  // password. A pair that passed once passes again without the slow work as long as the hash is the same.
  bool verify(const std::string& foldedLogin, std::string_view password, const std::string& hash);
  // The pair passes from now on without the slow work.
  void trust(const std::string& foldedLogin, std::string_view password, const std::string& hash);

 private:
  using Mark = std::array<unsigned char, crypto_generichash_BYTES>;
  Mark mark(const std::string& login, std::string_view password, const std::string& hash) const;
  SharedPage::Failure& slotOf(const std::string& login);
  // Counts an attempt as failed until it has passed, so that many at a time wait, too. Returns how long
  // the answer is held back.
  std::chrono::milliseconds begin(const std::string& login);

  Tools tools_;
  std::array<unsigned char, crypto_generichash_KEYBYTES> key_{};  // of this process alone
  std::string dummyHash_;
  mutable std::mutex mutex_;
  std::set<Mark> passed_;
  std::map<std::string, int> failures_;
  SharedPage* page_ = nullptr;
};

}  // namespace engine
