// What the way over the network costs, on this machine; prints ratios of one run. The client is this
// program's own ODBC driver, once through FreeTDS against a listener in this process, once on the server
// itself.
//
//   insert    one-row INSERT batches of one client
//   clients   the same of 8 clients on 8 databases against one
//   read      100,000 rows of 20 columns
//   login     a login with a connection of its own against the engine's
//   idle      memory of an idle connection
//   crowd     2,000 clients at once: none is refused, each gets its answer
#include <arpa/inet.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <fstream>
#include <thread>

#include "bench/bare.h"
#include "db/embedded/embedded_connection.h"
#include "db/odbc/sqlserver.h"
#include "tds/client.h"
#include "tds/server.h"

namespace {

using bench::seconds;

// Of the clock and of the processors, for a machine that has more to do.
struct Cost {
  double wall = 0, processor = 0;
};

template <class Work>
Cost cost(Work work) {
  const double before = bench::processorSeconds();
  const double wall = seconds(work);
  return {wall, bench::processorSeconds() - before};
}

struct World {
  World() {
    tds::Options options;
    options.port = 0;
    options.plainOnThisMachine = true;
    options.mostConnections = 4000;
    listener = std::make_unique<tds::Server>(engine, options);
  }
  std::unique_ptr<db::Connection> inside(const std::string& database) {
    auto made = std::make_unique<db::EmbeddedConnection>(nullptr);
    made->openAt(engine, {"(yerel)", "sa", "gizli", database, false});
    return made;
  }
  std::unique_ptr<db::Connection> outside(const std::string& database) {
    auto made = db::makeSqlServerConnection();
    made->open({"127.0.0.1," + std::to_string(listener->port()), "sa", "gizli", database, false});
    return made;
  }

  bench::Folder folder;
  std::shared_ptr<engine::Server> engine = engine::Server::create(folder.path / "veri", "sa", "gizli");
  std::unique_ptr<tds::Server> listener;
};

void insertRows(db::Connection& connection, int rows) {
  for (int i = 0; i < rows; ++i)
    connection.execute("INSERT INTO T(A,B) VALUES(" + std::to_string(i) + ",'satır " + std::to_string(i) +
                       "')");
}

void prepare(db::Connection& master, const std::string& database) {
  master.execute("CREATE DATABASE " + database);
  master.execute("CREATE TABLE " + database + "..T(ID INT IDENTITY PRIMARY KEY, A INT, B VARCHAR(30))");
}

void insert(World& world) {
  const auto master = world.inside("master");
  prepare(*master, "EKLE");
  const auto inside = world.inside("EKLE"), outside = world.outside("EKLE");
  constexpr int rows = 3000;
  insertRows(*inside, 200);
  insertRows(*outside, 200);
  const Cost in = cost([&] { insertRows(*inside, rows); });
  const Cost out = cost([&] { insertRows(*outside, rows); });
  std::printf("insert: in process %.0f/s, network %.0f/s, %.2f of it (wanted 0.5; processor %.2f)\n",
              rows / in.wall, rows / out.wall, in.wall / out.wall, in.processor / out.processor);
}

void clients(World& world) {
  constexpr int many = 8, rows = 1000;
  const auto master = world.inside("master");
  std::vector<std::unique_ptr<db::Connection>> all;
  for (int i = 0; i < many; ++i) {
    prepare(*master, "K" + std::to_string(i));
    all.push_back(world.outside("K" + std::to_string(i)));
    insertRows(*all.back(), 50);
  }
  const double one = seconds([&] { insertRows(*all[0], rows); });
  const double together = seconds([&] {
    std::vector<std::thread> threads;
    for (auto& each : all) threads.emplace_back([&each] { insertRows(*each, rows); });
    for (auto& thread : threads) thread.join();
  });
  std::printf("clients: one %.0f/s, eight %.0f/s, %.2f times (wanted 1.5)\n", rows / one,
              many * rows / together, many * one / together);
}

void read(World& world) {
  const auto master = world.inside("master");
  master->execute("CREATE DATABASE OKU");
  const auto inside = world.inside("OKU"), outside = world.outside("OKU");
  std::string columns, values;
  for (int i = 0; i < 20; ++i) {
    static const char* const types[] = {"INT", "VARCHAR(20)", "MONEY", "DATETIME", "CHAR(10)"};
    static const char* const texts[] = {"12345", "'Şeker pancarı'", "12.34", "'20240102 03:04:05'", "'abc'"};
    columns += (i ? ",C" : "C") + std::to_string(i) + " " + types[i % 5];
    values += std::string(i ? "," : "") + texts[i % 5];
  }
  inside->execute("CREATE TABLE T(" + columns + ")");
  inside->execute("BEGIN TRAN INSERT INTO T VALUES(" + values +
                  ") DECLARE @i INT SET @i=0 SET NOCOUNT ON WHILE @i<17 "
                  "BEGIN INSERT INTO T SELECT * FROM T SET @i=@i+1 END COMMIT");
  const std::string query = "SELECT TOP 100000 * FROM T";
  inside->query(query);
  const Cost in = cost([&] { inside->query(query); });
  const Cost out = cost([&] { outside->query(query); });
  std::printf("read: in process %.2f s, network %.2f s, %.2f of the rate (wanted 0.4; processor %.2f)\n",
              in.wall, out.wall, in.wall / out.wall, in.processor / out.processor);
}

void login(World& world) {
  constexpr int times = 200;
  world.inside("master");
  world.outside("master");
  const Cost in = cost([&] {
    for (int i = 0; i < times; ++i) engine::Session(world.engine, "sa", "gizli", "master");
  });
  const Cost out = cost([&] {
    for (int i = 0; i < times; ++i)
      tds::test::Client(world.listener->port()).open(0x74000004, "sa", "gizli", "");
  });
  std::printf("login: engine %.2f ms, network %.2f ms, %.2f times (wanted 1.2; processor %.2f)\n",
              1000 * in.wall / times, 1000 * out.wall / times, out.wall / in.wall,
              out.processor / in.processor);
}

long residentKilobytes() {
  std::ifstream status("/proc/self/smaps_rollup");
  std::string word;
  while (status >> word)
    if (word == "Pss:") break;
  long kilobytes = 0;
  status >> kilobytes;
  return kilobytes;
}

void idle(World& world) {
  constexpr int many = 200;
  std::vector<std::unique_ptr<engine::Session>> sessions;
  std::vector<std::unique_ptr<tds::test::Client>> clients;
  const auto each = [](auto open) {
    for (int i = 0; i < 20; ++i) open();
    const long before = residentKilobytes();
    for (int i = 0; i < many; ++i) open();
    std::this_thread::sleep_for(std::chrono::seconds(8));
    return (residentKilobytes() - before) / many;
  };
  const long network = each([&] {
    clients.push_back(std::make_unique<tds::test::Client>(world.listener->port()));
    clients.back()->open(0x74000004, "sa", "gizli", "");
  });
  const long engine =
      each([&] { sessions.push_back(std::make_unique<engine::Session>(world.engine, "sa", "gizli", "")); });
  std::printf("idle: %ld kB a connection (wanted 100), of it %ld the session's own\n", network, engine);
}

void crowd(World& world) {
  constexpr std::size_t many = 2000, doors = 8;
  rlimit files{};
  getrlimit(RLIMIT_NOFILE, &files);
  files.rlim_cur = files.rlim_max;
  setrlimit(RLIMIT_NOFILE, &files);
  std::vector<std::unique_ptr<tds::test::Client>> all(many);
  std::atomic<int> entered = 0, answered = 0;
  const auto together = [&](auto work) {
    return cost([&] {
      std::vector<std::thread> threads;
      for (std::size_t door = 0; door < doors; ++door)
        threads.emplace_back([&, door] {
          for (std::size_t i = door; i < many; i += doors) work(all[i]);
        });
      for (auto& thread : threads) thread.join();
    });
  };
  const long before = residentKilobytes();
  const Cost in = together([&](auto& client) {
    client = std::make_unique<tds::test::Client>(world.listener->port());
    if (client->open(0x74000004, "sa", "gizli", "").find("login") != std::string::npos) ++entered;
  });
  const long during = residentKilobytes();
  const Cost asked = together([&](auto& client) {
    if (client->batch("SELECT 1 AS a") == "columns a:int4\nrow 1\ndone select 1\n") ++answered;
  });
  std::printf("crowd: %d of %zu logged in within %.1f s, %d answered within %.1f s, %ld MB\n", entered.load(),
              many, in.wall, answered.load(), asked.wall, (during - before) / 1024);
}

struct Part {
  const char* name;
  void (*run)(World&);
};
constexpr Part parts[] = {{"insert", insert}, {"clients", clients}, {"read", read},
                          {"login", login},   {"idle", idle},       {"crowd", crowd}};

}  // namespace

int main(int argc, char** argv) {
  World world;
  for (const Part& part : parts)
    if (argc < 2 || std::string(argv[1]) == part.name) part.run(world);
}
