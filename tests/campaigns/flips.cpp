// One bit of a data file or its log is turned. No query gives other rows than before, and what a page says is
// told by DBCC CHECKDB wherever it lies.
#include <signal.h>
#include <sys/wait.h>

#include "campaigns/campaign.h"
#include "engine/store/log_format.h"

namespace campaign {
namespace {

constexpr const char* queries[] = {
    "SELECT * FROM T ORDER BY ID",
    "SELECT ID FROM T WHERE A>=0 ORDER BY A,ID",
    "SELECT COUNT(*),SUM(A) FROM T",
    "SELECT ID,LEN(C) FROM T ORDER BY ID",
    "SELECT name,xtype FROM sysobjects ORDER BY name",
};

std::string all(engine::Session& session) {
  std::string out;
  for (const char* query : queries) {
    const Answer answer = run(session, query);
    if (answer.number != 0) return "!" + std::to_string(answer.number) + " " + answer.error;
    out += answer.text;
  }
  return out;
}

// A process that dies with rows in its log: some of them have gone into the data file, some have not.
void fill(const fs::path& folder) {
  const pid_t child = ::fork();
  if (child == 0) {
    engine::Server::create(folder, "sa", password);
    auto session = open(folder, "master");
    run(*session, "CREATE DATABASE F");
    run(*session, "USE F CREATE TABLE T (ID INT PRIMARY KEY, A INT, B CHAR(40), C VARCHAR(8000))");
    run(*session, "CREATE INDEX TA ON T (A)");
    for (int i = 0; i < 700; ++i)
      run(*session, "INSERT INTO T VALUES (" + std::to_string(i) + "," + std::to_string(i * 37 % 500) +
                        ",'satır " + std::to_string(i) + "',REPLICATE('ş'," + std::to_string(i % 90 * 60) +
                        "))");
    run(*session, "DBCC CHECKDB");  // writes the log into the file
    for (int i = 700; i < 760; ++i)
      run(*session, "INSERT INTO T VALUES (" + std::to_string(i) + ",7,'x',REPLICATE('y',300))");
    ::kill(::getpid(), SIGKILL);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
}

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  using namespace campaign;
  const auto arguments = campaign::arguments(count, values, 300);
  std::mt19937 random(arguments.seed);
  const Folder base;
  const fs::path folder = base.path / "veri", data = folder / "F.mdf", log = folder / "F_log.ldf";
  fill(folder);
  const std::string goodData = readAll(data), goodLog = readAll(log);
  const auto put = [&](const std::string& dataBytes, const std::string& logBytes) {
    fs::remove(folder / "F.mdf-shm");
    writeAll(data, dataBytes);
    writeAll(log, logBytes);
  };
  const std::string wanted = all(*open(folder, "F"));
  if (wanted.starts_with("!") || goodLog.size() <= engine::store::framesBegin) {
    std::cout << "the example does not open: " << wanted.substr(0, 300) << "\n";
    return 1;
  }
  int findings = 0, told = 0, unread = 0;
  for (int round = 1; round <= arguments.rounds; ++round) {
    std::string dataBytes = goodData, logBytes = goodLog;
    const bool inLog = random() % 3 == 0;
    std::string& bytes = inLog ? logBytes : dataBytes;
    // Every fourth one near the beginning, where the formats are.
    const std::size_t at = random() % (random() % 4 == 0 ? 4200 : bytes.size());
    bytes[at] = static_cast<char>(bytes[at] ^ (1 << random() % 8));
    put(dataBytes, logBytes);
    std::string seen, checked;
    try {
      auto session = open(folder, "F");
      seen = all(*session);
      if (const Answer answer = run(*session, "DBCC CHECKDB WITH NO_INFOMSGS"); answer.number != 0)
        checked = answer.messages + answer.error;
    } catch (const engine::Error& error) {
      seen = "!" + std::to_string(error.number()) + " " + error.what();
    }
    const bool error = seen.starts_with("!"), mark = at >= engine::store::markOffset &&
                                                     at < engine::store::markOffset + engine::store::markSize;
    std::string what;
    if (!error && seen != wanted) what = "other rows were served";
    // Pages that the log holds anew are written over before they are read.
    if (!error && seen == wanted && checked.empty() && !inLog && !mark) ++unread;
    if (error && seen.find(inLog ? "F_log.ldf" : "F.mdf") == std::string::npos)
      what = "not told by name: " + seen;
    told += error || !checked.empty() ? 1 : 0;
    if (what.empty()) continue;
    ++findings;
    std::cout << "round " << round << " of seed " << arguments.seed << ": byte " << at
              << (inLog ? " of the log: " : " of the data: ") << what.substr(0, 500) << std::endl;
  }
  std::cout << arguments.rounds << " flips, " << told << " told, " << unread << " written over by the log, "
            << findings << " findings\n";
  return findings == 0 ? 0 : 1;
}
