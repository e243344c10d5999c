// Processes that work on one folder until they are killed, and what lies there afterwards.
#pragma once

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <iostream>
#include <thread>
#include <vector>

#include "campaigns/campaign.h"

namespace campaign {

struct KilledWorker {
  pid_t pid = 0;
  int pipe = -1;
  unsigned seed = 0;
  int steps = 0;        // acknowledged: bytes that it has written
  bool killed = false;  // else it has ended by itself
};

// Each runs `work`, which writes a byte after every step and never returns. Killed at any moment within
// `longest` microseconds after one of them has ended its first step. No server is open here meanwhile.
inline std::vector<KilledWorker> killWorkers(
    int count, unsigned longest, std::mt19937& random,
    const std::function<void(int worker, unsigned seed, int acknowledge)>& work) {
  std::vector<KilledWorker> workers;
  for (int w = 0; w < count; ++w) {
    int ends[2];
    if (::pipe(ends) != 0) std::abort();
    KilledWorker worker;
    worker.seed = static_cast<unsigned>(random());
    worker.pid = ::fork();
    if (worker.pid == 0) {
      ::close(ends[0]);
      work(w, worker.seed, ends[1]);
      ::_exit(9);
    }
    ::close(ends[1]);
    worker.pipe = ends[0];
    workers.push_back(worker);
  }
  pollfd first{workers[random() % workers.size()].pipe, POLLIN, 0};
  ::poll(&first, 1, 20000);
  std::this_thread::sleep_for(std::chrono::microseconds(random() % longest));
  for (const KilledWorker& worker : workers) {
    ::kill(worker.pid, SIGKILL);
    if (random() % 3 == 0) std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
  }
  for (KilledWorker& worker : workers) {
    int status = 0;
    ::waitpid(worker.pid, &status, 0);
    worker.killed = WIFSIGNALED(status);
    char byte;
    while (::read(worker.pipe, &byte, 1) == 1) ++worker.steps;
    ::close(worker.pipe);
  }
  return workers;
}

// Rounds until five findings; gives the number of kills. `round` of the campaign gives those of one round.
template <class Campaign>
int runRounds(Campaign& campaign, int rounds) {
  int kills = 0;
  for (int round = 1; round <= rounds && campaign.failures() < 5; ++round) {
    kills += campaign.round(round);
    if (round % 50 == 0) std::cout << kills << " kills so far" << std::endl;
  }
  return kills;
}

// The pairs of all databases and the records of transactions over several, as they lie there.
inline void copyPairs(const fs::path& from, const fs::path& to) {
  fs::remove_all(to);
  fs::create_directory(to);
  for (const auto& entry : fs::directory_iterator(from)) {
    const std::string name = entry.path().filename().string();
    if (name.ends_with(".mdf") || name.ends_with(".ldf") || name.ends_with(".intent"))
      fs::copy_file(entry.path(), to / name);
  }
}

}  // namespace campaign
