// The embedded server as its users see it: a folder of databases, and sessions on it.
//
//   auto server = engine::Server::open(folder);     // one per folder and process
//   engine::Session session(server, "sa", password, "master");
//   session.execute("SELECT 1", sink);
//
// Errors are engine::Error. Connection level numbers: 18456 login failed, 4060 cannot open database, 4064 nor
// the login's default one, 17142 service is stopped or paused (the clients' 0x80004005), 5120 / 9004 / 823
// damaged or locked file.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/plan/plan_statistics.h"
#include "engine/store/session_list.h"
#include "engine/store/table_digest.h"
#include "engine/value.h"

namespace engine {

class Instance;     // storage.h
class SessionImpl;  // executor

struct DamagedDatabase {
  std::string name;
  Error error;  // what a statement that needs it gets, too
};

enum class ServiceState : std::uint8_t { Running, Stopped };

class Server {
 public:
  // Opens the folder, which must exist or be creatable, and its master database, which must exist
  // unless `create` is set. Sharing the folder with other processes is allowed.
  static std::shared_ptr<Server> open(const std::filesystem::path& folder);
  // True when the folder holds a master database.
  static bool exists(const std::filesystem::path& folder);
  // Makes the folder and its master database with the login `login` (a member of sysadmin). The
  // password is stored as a salted slow hash. Throws Error 1802 when one is there already.
  static std::shared_ptr<Server> create(const std::filesystem::path& folder, const std::string& login,
                                        const std::string& password);

  // Databases that a broken-off CREATE or DROP left behind and that could not be cleaned up at opening; it
  // is tried again at every opening and start. And those of which a transaction over several databases
  // could not be made whole, for their files are from another time.
  std::vector<DamagedDatabase> leftOvers() const;

  // The folder and those of its files that others than their owner may read or write; and closes them.
  std::vector<std::filesystem::path> exposed() const;
  void closeExposed();
  // The folder as it was called when the server was made; another one when it has been moved or copied.
  std::filesystem::path recordedFolder() const;

  ServiceState serviceState() const;
  // Finishes running statements, checkpoints and closes every file, refuses sessions until start().
  // Seen by other processes on the same folder at their next statement.
  // Waits for running statements, also those of other processes; their open transactions between two
  // statements are rolled back.
  void stop();
  // Opens the service again and looks through every page of every database; the damaged ones are
  // returned, the others work.
  std::vector<DamagedDatabase> start();

  // Holds a pair of files that no server has open against each other and reads every page. Throws what a
  // statement that needs it would get, and 3617 when `step` breaks off.
  static void checkFiles(const std::filesystem::path& data, const std::filesystem::path& log,
                         const std::string& name, const CopyStep& step = {});

  // A pair of files that no server has open, as the only company of a server of its own, which goes with
  // its last user. What is settled is read where it lies and cannot be written (3906); another pair, whose
  // log has to be taken in first, is copied into a scratch folder below `scratch`. The pair stays as it is.
  // 5120, 5171, 5172, 5173, 823, 824, 9004.
  struct Copy {
    std::shared_ptr<Server> server;
    std::string login, password;
    std::filesystem::path data;  // the file that is read, the pair's own or the one in the scratch folder
  };
  static Copy openCopy(const std::filesystem::path& data, const std::filesystem::path& log,
                       const std::string& name, const std::filesystem::path& scratch);
  // What the tables of a database hold.
  std::vector<TableDigest> digest(const std::string& database);
  // The database as it is at this moment, as a settled pair under names that must be free; others go on
  // writing. Returns what the original's tables held at that moment. 911, 5123, 1105, 3617.
  std::vector<TableDigest> copyLive(const std::string& database, const std::filesystem::path& data,
                                    const std::filesystem::path& log, const CopyStep& step);

  const std::filesystem::path& folder() const;
  static std::string machineName();  // @@SERVERNAME
  Instance& instance() { return *instance_; }
  const std::shared_ptr<Instance>& sharedInstance() const { return instance_; }

 private:
  explicit Server(std::shared_ptr<Instance> instance);
  static std::shared_ptr<Server> make(const std::filesystem::path& folder, const std::string& login,
                                      const std::string& passwordHash);
  std::shared_ptr<void> scratch_;  // goes last
  std::shared_ptr<Instance> instance_;
  std::vector<DamagedDatabase> leftOvers_;
};

// Checks a database of an opened copy while the bytes of its data file pass by once and in order: what it
// tells is in store/data_reading.h.
class CopyReading {
 public:
  CopyReading(const std::shared_ptr<Server>& server, const std::string& database);
  ~CopyReading();
  CopyReading(const CopyReading&) = delete;
  CopyReading& operator=(const CopyReading&) = delete;

  void take(const char* bytes, std::size_t count);
  DataFindings finish();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

class Session {
 public:
  // Throws 18456, 4060, 4064, 17142. `database` empty: the login's default. The client is for sysprocesses.
  Session(std::shared_ptr<Server> server, const std::string& login, const std::string& password,
          const std::string& database, const SessionClient& client = {});
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Runs one batch (no GO). Results reach the sink in order. On an error that ends only its statement
  // the batch goes on as SQL Server does, results after it are not delivered, and the first error is
  // thrown at the end; on one that ends the batch it is thrown at once. Uncommitted work of the failed
  // statement is gone; the session stays usable.
  void execute(std::string_view batch, ResultSink& sink);

  // The same with variables that the batch finds declared; they hold afterwards what it has left in them.
  // After an error they are as they were.
  void execute(std::string_view batch, std::vector<Parameter>& parameters, ResultSink& sink);
  // Columns of the query that the batch begins with; nothing runs. Empty when it begins with something else.
  std::vector<ResultColumn> describe(std::string_view batch, const std::vector<Parameter>& parameters);

  const std::string& database() const;
  int openTransactions() const;  // @@TRANCOUNT
  bool committed() const;        // how the last of them has ended
  // Settings and database as after the login. An open transaction is rolled back unless it is to be kept.
  void reset(bool keepTransaction);
  // Gives back memory that only makes the next batch faster, for a session that is likely to stay idle.
  void rest();
  int spid() const;     // @@SPID
  bool killed() const;  // by KILL; every batch from then on is refused (596). From any thread.
  // Interrupts a running execute() from another thread; it ends with Error 3617.
  void cancel();
  PlanStatistics planStatistics() const;

 private:
  std::unique_ptr<SessionImpl> impl_;
};

}  // namespace engine
