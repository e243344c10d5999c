#include "engine/store/session_list.h"

#include "engine/store/storage.h"

namespace engine {

namespace {

constexpr int firstNumber = 51;  // those below are the system's own

std::string jsonText(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < ' ')
      out += '?';
    else
      (c == '"' || c == '\\' ? out += '\\' : out) += c;
  }
  return out + '"';
}

}  // namespace

void SessionList::enter(SessionEntry& entry) {
  const std::lock_guard lock(mutex_);
  entry.spid = firstNumber;
  for (const auto& [spid, other] : entries_)
    if (spid == entry.spid) ++entry.spid;
  entries_[entry.spid] = &entry;
}

void SessionList::leave(const SessionEntry& entry) {
  const std::lock_guard lock(mutex_);
  entries_.erase(entry.spid);
}

bool SessionList::kill(int spid) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(spid);
  if (found == entries_.end()) return false;
  SessionEntry& entry = *found->second;
  entry.killed = true;
  *entry.cancelled = true;
  sqlite3_interrupt(entry.store->handle());
  entry.store->closeIfIdle();
  return true;
}

std::string SessionList::json(int own) const {
  const std::lock_guard lock(mutex_);
  std::string text = "[";
  for (const auto& [spid, entry] : entries_) {
    if (text.size() > 1) text += ',';
    text += "{\"spid\":" + std::to_string(spid) + ",\"dbid\":" + std::to_string(entry->database) +
            ",\"own\":" + (spid == own ? "1" : "0") + ",\"running\":" + (entry->running ? "1" : "0") +
            ",\"transactions\":" + std::to_string(entry->transactions) +
            ",\"login_time\":" + std::to_string(entry->loginTime) +
            ",\"last_batch\":" + std::to_string(entry->lastBatch) + ",\"login\":" + jsonText(entry->login) +
            ",\"host\":" + jsonText(entry->client.host) + ",\"program\":" + jsonText(entry->client.program) +
            ",\"process\":\"" + std::to_string(entry->client.process) + "\"}";
  }
  return text + ']';
}

}  // namespace engine
