// A pair of database files with any bytes of it changed, put under a stopped server: started, read, checked
// and written. Nothing but errors may come of it, and no other file may be touched.
//
//   input = flags edit*
//   flags = 1 byte          bit 0: pages and frames get sums that fit, so that what lies behind them is met
//   edit  = kind at from value       1, 3, 3 and 1 bytes; places count from the front, modulo the file's size
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>

#include "engine/server.h"
#include "engine/store/log_format.h"
#include "engine/store/page_checksum.h"
#include "engine/value/error.h"

namespace {

namespace fs = std::filesystem;
using namespace engine;

constexpr std::size_t page = 4096;

class Nothing : public ResultSink {
 public:
  void onResultSet(ResultSet&& set) override { rows += set.rowCount(); }
  void onRowCount(std::int64_t) override {}
  void onMessage(int, const std::string&) override {}
  std::int64_t rows = 0;
};

std::string readAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}
void writeAll(const fs::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

unsigned char* bytesOf(std::string& text, std::size_t at = 0) {
  return reinterpret_cast<unsigned char*>(text.data()) + at;
}

struct Pair {
  std::string data, log;
};

void sumPages(std::string& data) {
  for (std::size_t at = 0; at + page <= data.size(); at += page)
    store::storeChecksum(
        bytesOf(data, at), page,
        store::pageChecksum(bytesOf(data, at), page, static_cast<std::uint32_t>(at / page + 1)));
}

void put32(unsigned char* to, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) to[i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

void sumFrames(std::string& log) {
  if (log.size() < store::framesBegin) return;
  const auto shape = store::readLogShape(bytesOf(log, store::logOrigin));
  if (!shape || shape->pageSize != page) return;
  store::FrameSum sum = shape->sum;
  constexpr std::size_t step = store::frameHeaderSize + page;
  for (std::size_t at = store::framesBegin; at + step <= log.size(); at += step) {
    unsigned char* frame = bytesOf(log, at);
    sum = store::addToSum(sum, shape->bigEnd, frame, 8);
    sum = store::addToSum(sum, shape->bigEnd, frame + store::frameHeaderSize, page);
    put32(frame + 16, sum[0]);
    put32(frame + 20, sum[1]);
  }
}

void apply(std::string& file, unsigned kind, std::size_t at, std::size_t from, unsigned char value) {
  if (file.empty()) return;
  at %= file.size();
  from %= file.size();
  const std::size_t length = std::min<std::size_t>(value + 1, file.size() - std::max(at, from));
  switch (kind) {
    case 0:
      file[at] = static_cast<char>(static_cast<unsigned char>(file[at]) ^ value);
      break;
    case 1:
      file[at] = static_cast<char>(value);
      break;
    case 2:
      std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(at), length, '\0');
      break;
    case 3:
      file.resize(at);
      break;
    case 4:
      file.resize(file.size() + std::size_t{value} * 64);
      break;
    case 5: {
      const std::string part = file.substr(from, length);
      file.replace(at, length, part);
      break;
    }
    case 6: {  // a page in another's place
      const std::size_t a = at / page * page, b = from / page * page;
      if (std::max(a, b) + page <= file.size()) file.replace(a, page, file.substr(b, page));
      break;
    }
    default:
      put32(bytesOf(file, std::min(at, file.size() - std::min<std::size_t>(4, file.size()))), value);
  }
}

class Bench {
 public:
  Bench() {
    folder_ = fs::temp_directory_path() / ("zembera-files-" + std::to_string(::getpid()));
    fs::remove_all(folder_);
    fill();
    good_ = {readAll(data()), readAll(log())};
    writeAll(foreign(), "somebody's");
    server_ = Server::open(folder_);
    session_ = std::make_unique<Session>(server_, "sa", "parola", "master");
    run("SELECT * FROM F..T");
    server_->stop();
    for (const auto& entry : fs::directory_iterator(folder_)) names_.insert(entry.path().filename());
  }

  void meet(const std::uint8_t* input, std::size_t size) {
    Pair pair = good_;
    for (std::size_t i = 1; i + 8 <= size; i += 8) {
      const auto place = [&](std::size_t at) {
        return std::size_t{input[at]} << 16 | std::size_t{input[at + 1]} << 8 | input[at + 2];
      };
      apply((input[i] & 8) != 0 ? pair.log : pair.data, input[i] & 7, place(i + 1), place(i + 4),
            input[i + 7]);
    }
    if (size > 0 && (input[0] & 1) != 0) {
      sumPages(pair.data);
      sumFrames(pair.log);
    }
    fs::remove(data().string() + "-shm");
    writeAll(data(), pair.data);
    writeAll(log(), pair.log);
    server_->start();
    for (const char* batch :
         {"SELECT * FROM F..T ORDER BY ID", "SELECT ID FROM F..T WHERE A=7", "SELECT * FROM F..V",
          "SELECT * FROM F..sysobjects SELECT * FROM F..syscolumns", "DBCC CHECKDB ('F')",
          "INSERT INTO F..T VALUES (1000,7,'yeni',REPLICATE('z',3000))",
          "UPDATE F..T SET A=A+1 WHERE ID<5 DELETE FROM F..T WHERE ID=6",
          "BEGIN TRAN INSERT INTO F..T (ID) VALUES (1001) INSERT INTO K..T VALUES (2) ROLLBACK",
          "USE F CREATE TABLE Y (A INT) DROP TABLE Y", "USE master"})
      run(batch);
    Nothing neighbour;
    session_->execute("SELECT A FROM K..T", neighbour);
    if (neighbour.rows != 1) std::abort();
    server_->stop();
    if (readAll(foreign()) != "somebody's") std::abort();
    for (const auto& entry : fs::directory_iterator(folder_))
      if (!names_.contains(entry.path().filename()) && entry.path().filename() != "F.mdf-shm") std::abort();
  }

 private:
  fs::path data() const { return folder_ / "F.mdf"; }
  fs::path log() const { return folder_ / "F_log.ldf"; }
  fs::path foreign() const { return folder_ / "YABANCI.mdf"; }
  void run(const char* batch) {
    Nothing sink;
    try {
      session_->execute(batch, sink);
    } catch (const Error&) {
    }
  }
  // By a process that dies, so that the log holds rows.
  void fill() const {
    const pid_t child = ::fork();
    if (child == 0) {
      auto server = Server::create(folder_, "sa", "parola");
      Session session(server, "sa", "parola", "master");
      Nothing sink;
      for (const char* batch :
           {"CREATE DATABASE K", "CREATE TABLE K..T (A INT) INSERT INTO K..T VALUES (1)", "CREATE DATABASE F",
            "USE F CREATE TABLE T (ID INT PRIMARY KEY, A INT, B CHAR(40), C TEXT)",
            "CREATE INDEX TA ON T (A)", "CREATE VIEW V AS SELECT A,COUNT(*) AS N FROM T GROUP BY A"})
        session.execute(batch, sink);
      const auto insert = [&](int i) {
        session.execute("INSERT INTO T VALUES (" + std::to_string(i) + ",7,'satır',REPLICATE('ş'," +
                            std::to_string(i % 9 * 700) + "))",
                        sink);
      };
      for (int i = 0; i < 30; ++i) insert(i);
      session.execute("DBCC CHECKDB", sink);  // writes the log into the file
      for (int i = 30; i < 40; ++i) insert(i);
      ::kill(::getpid(), SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
  }

  fs::path folder_;
  Pair good_;
  std::set<fs::path> names_;
  std::shared_ptr<Server> server_;
  std::unique_ptr<Session> session_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Bench bench;
  bench.meet(data, size);
  return 0;
}
