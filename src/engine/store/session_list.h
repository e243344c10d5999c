// The sessions of this process on one folder, by the numbers that @@SPID gives.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace engine {

class Store;

// What a session tells of itself.
struct SessionClient {
  std::string host, program;
  std::uint32_t process = 0;
};

// One session. Its own thread writes, any other reads.
struct SessionEntry {
  int spid = 0;
  SessionClient client;
  std::string login;
  std::int64_t loginTime = 0;  // ticks
  std::atomic<std::int64_t> database = 1, lastBatch = 0;
  std::atomic<int> transactions = 0;
  std::atomic<bool> running = false;
  std::atomic<bool> killed = false;  // by KILL: it ends as soon as it can
  std::atomic<bool>* cancelled = nullptr;
  Store* store = nullptr;
};

class SessionList {
 public:
  // Gives the lowest number that is free, from 51.
  void enter(SessionEntry& entry);
  void leave(const SessionEntry& entry);
  // False when there is none of that number. Its statement is cancelled, or its open transaction rolled back
  // and its files closed when none runs.
  bool kill(int spid);
  // All of them as a JSON array, for the system tables; that of the number `own` is marked.
  std::string json(int own) const;

 private:
  mutable std::mutex mutex_;
  std::map<int, SessionEntry*> entries_;
};

}  // namespace engine
