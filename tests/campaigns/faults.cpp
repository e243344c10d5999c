// The disk fails at the n-th call, for every n until the work gets through: each call once, then that call
// and all after it. The error is told, the state is as before, and after the disk has healed the work is
// done.
#include <signal.h>
#include <sys/wait.h>

#include "campaigns/campaign.h"
#include "scenarios/fault_vfs.h"

namespace campaign {
namespace {

using scenarios::Fault;
using scenarios::FaultyDisk;

struct Work {
  const char* what;
  const char* batches[6];  // one after the other in one session
  const char* undo;
};

constexpr Work works[] = {
    {"insert", {"INSERT INTO T (A,B) SELECT A+1000,B FROM T"}, "DELETE FROM T WHERE A>=1000"},
    {"transaction",
     {"BEGIN TRAN", "UPDATE T SET A=A+1000", "INSERT INTO T (A) VALUES (-1)", "INSERT INTO T (A) VALUES (-2)",
      "COMMIT TRAN"},
     "DELETE FROM T WHERE A<0 UPDATE T SET A=A-1000"},
    {"large transaction",
     {"BEGIN TRAN", "INSERT INTO T (A,B) SELECT 5000+x.A,REPLICATE('z',190) FROM T x,T y WHERE y.A<40",
      "DELETE FROM T WHERE A=5000", "COMMIT TRAN"},
     "DELETE FROM T WHERE A>=5000"},
    {"table", {"CREATE TABLE Y (A INT PRIMARY KEY, B CHAR(5))"}, "DROP TABLE Y"},
    {"upgrade",
     {"ALTER TABLE T ADD C INT NULL", "ALTER TABLE T ALTER COLUMN C BIGINT", "CREATE INDEX TC ON T (C)"},
     ""},
    {"database", {"CREATE DATABASE YENI"}, "DROP DATABASE YENI"},
};

constexpr const char* state =
    "SELECT ID,A,B FROM T ORDER BY ID SELECT name FROM sysobjects ORDER BY name SELECT name FROM syscolumns "
    "WHERE id=OBJECT_ID('T') ORDER BY colid SELECT name FROM sysindexes WHERE id=OBJECT_ID('T') ORDER BY "
    "name SELECT name FROM master..sysdatabases ORDER BY name";

class Campaign {
 public:
  explicit Campaign(int step) : step_(step) {
    server_ = engine::Server::create(base_.path / "veri", "sa", password);
    session_ = session("master");
    must("CREATE DATABASE F");
    must("USE F CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT NULL, B CHAR(200) NULL)");
    for (int i = 0; i < 40; ++i) must("INSERT INTO T (A,B) VALUES (" + std::to_string(i) + ",'x')");
  }

  void all() {
    for (const Work& work : works)
      for (const Fault& kind : {Fault{SQLITE_FULL, 0, true}, Fault{SQLITE_FULL, 0, false},
                                Fault{SQLITE_IOERR_WRITE, 0, false}, Fault{SQLITE_IOERR_FSYNC, 0, true}})
        strike(work, kind);
    for (const Fault& kind : {Fault{SQLITE_FULL, 0, true}, Fault{SQLITE_IOERR_WRITE, 0, false},
                              Fault{SQLITE_IOERR_FSYNC, 0, false}})
      stopAndStart(kind);
  }

  int findings() const { return findings_; }
  int calls() const { return calls_; }

 private:
  std::unique_ptr<engine::Session> session(const std::string& database) {
    return std::make_unique<engine::Session>(server_, "sa", password, database);
  }
  void fail(const std::string& what) {
    ++findings_;
    std::cout << what.substr(0, 1500) << std::endl;
  }
  void must(const std::string& batch) {
    if (const Answer answer = run(*session_, batch); answer.number != 0) {
      std::cout << batch << ": " << answer.error << std::endl;
      std::exit(1);
    }
  }
  std::string content() { return run(*session_, state).text; }

  void strike(const Work& work, const Fault& kind) {
    bool struck = true;
    for (int n = 0; struck && findings_ < 10; n += step_) {
      const std::string before = content();
      const std::string at = std::string(work.what) + ", call " + std::to_string(n) +
                             (kind.lasting ? " and later" : "") + ", code " + std::to_string(kind.code) +
                             ": ";
      Fault fault = kind;
      fault.after = n;
      ++calls_;
      disk_.arm(fault);
      int number = 0, done = 0;
      bool begun = false;
      std::string first;
      for (const char* batch : work.batches) {
        if (!batch) break;
        const bool transaction = std::string_view(batch).starts_with("BEGIN");
        begun = begun || transaction;
        const Answer answer = run(*session_, batch);
        if (answer.number == 0 && number != 0 && begun)
          fail(at + batch + " was taken after the transaction had failed with " + std::to_string(number));
        if (answer.number != 0 && number == 0) number = answer.number, first = answer.error;
        if (answer.number == 0) ++done;
        if (number != 0 && !begun) break;
      }
      struck = disk_.disarm();
      run(*session_, "IF @@TRANCOUNT>0 ROLLBACK");
      run(*session_, "BEGIN TRAN ROLLBACK");  // begins anew
      if (number != 0 && number != 1105 && number != 823 && number != 3906 && number != 5123 &&
          number != 5120 && number != 9001)
        fail(at + "told " + std::to_string(number) + " " + first);
      const std::string after = content();
      // Of single statements those before the failing one stand.
      const bool whole = number == 0 || (!begun && done > 0);
      if (!whole && after != before) fail(at + "the state is another after error " + std::to_string(number));
      if (whole && number == 0 && *work.undo == '\0') {
        restore();
        continue;
      }
      if (number == 0) must(work.undo);
      if (number != 0 && !begun && done > 0) restore();
      if (content() != before) fail(at + "not as before after the undo");
    }
  }

  // Takes back what the upgrade has done so far.
  void restore() {
    run(*session_, "DROP INDEX T.TC");
    run(*session_, "ALTER TABLE T DROP COLUMN C");
  }

  // Checkpoint and recovery: what the log holds goes into the file, and the file is opened anew.
  void stopAndStart(const Fault& kind) {
    bool struck = true;
    for (int n = 0; struck && findings_ < 10; n += step_) {
      must("UPDATE T SET A=A+1");
      const std::string before = content();
      ++calls_;
      disk_.arm({kind.code, n, kind.lasting});
      server_->stop();
      struck = disk_.disarm();
      for (const auto& damaged : server_->start())
        fail("start: " + damaged.name + " " + damaged.error.what());
      if (content() != before) fail("stop, call " + std::to_string(n) + ": other rows after the start");
    }
  }

  FaultyDisk disk_;  // before any file is opened
  Folder base_;
  std::shared_ptr<engine::Server> server_;
  std::unique_ptr<engine::Session> session_;
  int step_, findings_ = 0, calls_ = 0;
};

}  // namespace
}  // namespace campaign

// campaign_faults [step]: every step-th call; 1 is all of them.
int main(int count, char** values) {
  const auto arguments = campaign::arguments(count, values, 1);
  campaign::Campaign campaign(std::max(1, arguments.rounds));
  campaign.all();
  std::cout << campaign.calls() << " failing calls, " << campaign.findings() << " findings\n";
  return campaign.findings() == 0 ? 0 : 1;
}
