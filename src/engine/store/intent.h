// A transaction that has changed several databases is committed file by file. What it is about to do is put
// on the disk before the first file, so that whoever comes after a broken-off commit can complete it or undo
// it: a record of intent in the data folder.
//
//   islemNUMBER.intent = "ZBINTENT1" LF number verdict leader count other* sum
//   number   = 8 bytes            of the transaction
//   verdict  = "?" | "+" | "-"    nobody has judged yet; completed; undone
//   leader   = part               without changes; an empty name once it has been settled
//   other    = part
//   part     = text(database) seed(8) frames(4) count change*     the state it was in before: Position
//   change   = text(table) kind keyed oldrow(8) newrow(8) row row   row before, row after
//   kind     = "I" | "U" | "D"
//   keyed    = "k" | "v"          the row is named by its number; by its values
//   row      = count value*
//   value    = "n" | "i" int(8) | "r" double(8) | "t" text | "b" text
//   text     = count byte*
//   count    = 8 bytes
//   sum      = 32 bytes           BLAKE2b of all before it
//
// Numbers have their low end first.
//
// Every database concerned takes the number into its zb_meta (key 'intent:NUMBER') as a part of the
// transaction; a later one removes it once the record is gone. The leader is the database that the
// transaction wrote first; of the others the record holds each row that was changed. Recovery
// (intent_recovery.cpp) asks the leader: with the number the transaction is committed, and the others are
// brought after it; in the state of before it is not, and those that have it are brought back. A record is
// locked while its owner lives. One under its temporary name was never whole, and nothing was committed.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/store/file_layer.h"
#include "engine/store/system_file.h"
#include "engine/value.h"

namespace engine {

struct SharedPage;

// Values of one row: each as it lies in the file.
using StoredRow = std::vector<Datum>;

struct RowChange {
  std::string table;
  char kind = 'I';
  bool keyed = true;
  std::int64_t oldRow = 0, newRow = 0;
  StoredRow before, after;
};

struct IntentPart {
  std::string database;
  store::Position before;
  std::vector<RowChange> changes;
};

enum class Verdict : char { Open = '?', Completed = '+', Undone = '-' };

struct Intent {
  std::int64_t number = 0;
  Verdict verdict = Verdict::Open;
  IntentPart leader;
  std::vector<IntentPart> others;

  bool concerns(std::string_view foldedName) const;
};

std::filesystem::path intentFile(const std::filesystem::path& folder, std::int64_t number);

// The record of a commit under way; removed with the object unless `keep` was called. The counters of the
// shared page tell everybody that there is one.
class IntentFile {
 public:
  // Written, locked and on the disk. Error 5123 or 1105 when it cannot be.
  IntentFile(const std::filesystem::path& folder, const Intent& intent, SharedPage& page);
  ~IntentFile();
  IntentFile(const IntentFile&) = delete;
  IntentFile& operator=(const IntentFile&) = delete;
  // Whether all is committed is not known: the next one who comes finds out.
  void keep() { keep_ = true; }
  std::int64_t number() const { return number_; }

 private:
  std::filesystem::path file_;
  SharedPage& page_;
  std::int64_t number_;
  system::File handle_;
  bool keep_ = false;
};

// A record whose owner is gone. For whoever holds the lock under which records are made and ended.
class LeftIntent {
 public:
  // Null while its owner lives, or when there is nothing to end: a record that is not whole is removed.
  static std::unique_ptr<LeftIntent> take(const std::filesystem::path& file);

  Intent intent;
  void remove();
  // Writes `intent` in the place of what the record held.
  void rewrite() const;

 private:
  LeftIntent(std::filesystem::path file, system::File handle)
      : file_(std::move(file)), handle_(std::move(handle)) {}
  std::filesystem::path file_;
  system::File handle_;
};

// Whether the record concerns one of the databases (folded names) and its owner is gone.
bool isLeft(const std::filesystem::path& file, const std::vector<std::string>& databases);

// All records of the folder, temporary ones too.
std::vector<std::filesystem::path> intentFiles(const std::filesystem::path& folder);

// Brings the row to what it is after the change (`forward`) or before it.
void applyChange(sqlite3* db, const std::string& alias, const RowChange& change, bool forward);

// A transaction's number in a database.
bool isMarked(sqlite3* db, const std::string& alias, std::int64_t number);
void setMark(sqlite3* db, const std::string& alias, std::int64_t number, bool set);
// Removes the numbers of transactions that have no record any more.
void dropOldMarks(sqlite3* db, const std::string& alias, const std::filesystem::path& folder);

// What the tests stop at: called with the name of each step of such a commit and of its recovery.
extern void (*intentStep)(const char* step);
void atIntentStep(const char* name);

}  // namespace engine
