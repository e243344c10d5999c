// The embedded server on a company database against bare SQLite in one run; prints times and ratios.
// With an argument only the part named:
//
//   trigger     one-row INSERTs with literals on KASAHAREKET, whose trigger writes ODEMEHAREKET, against the
//               same two rows by prepared INSERTs in one transaction a pair
//   view        six tables of 100,000 rows under one UNION ALL view, grouped, against the same query
//   bind        parse and bind of the longest view of a company
//   memory [N]  resident memory over N (default 200000) statements of differing literals
#include <cstdio>

#include "bench/bare.h"
#include "catalog/definition.h"
#include "company/schema/schema.h"
#include "db/drivers.h"
#include "engine/language/parser.h"
#include "engine/plan/binder.h"
#include "engine/server.h"

namespace {

namespace fs = std::filesystem;
using bench::seconds;

constexpr int rounds = 5;
constexpr int triggerRows = 5000;
constexpr int branches = 6;
constexpr int branchRows = 100000;

class Server {
 public:
  Server() {
    engine::Server::create(folder.path / "veri", "sa", "gizli");
    open("master");
    run("CREATE DATABASE OLCUM");
    run("USE OLCUM");
  }
  void open(const std::string& database) {
    factory = db::makeConnectionFactory(folder.path);
    connection = factory->make("(yerel)");
    connection->open({"(yerel)", "sa", "gizli", database, false});
  }
  void run(const std::string& sql) { connection->execute(sql); }
  // The data file for bare SQLite: whole only while the server is closed, which keeps its log elsewhere.
  fs::path copy() {
    connection.reset();
    factory.reset();
    fs::copy_file(folder.path / "veri" / "OLCUM.mdf", folder.path / "copy.db",
                  fs::copy_options::overwrite_existing);
    open("OLCUM");
    return folder.path / "copy.db";
  }

  bench::Folder folder;
  std::unique_ptr<db::ConnectionFactory> factory;
  std::unique_ptr<db::Connection> connection;
};

void makeTable(Server& server, const char* name) {
  const auto* table = company::schema::table(name);
  server.run(company::schema::createStatement(*table, company::schema::Stage::Upgrade));
  for (const auto& index : table->indexes) server.run(index);
}

// ---- trigger ----

std::string kasaInsert(int i) {
  const std::string n = std::to_string(i);
  return "INSERT INTO KASAHAREKET (Isyeri_ID,Kasa_ID,Cari_ID,Tarih,Islem_Tipi,Fis_No,Aciklama,ATutar,BTutar,"
         "Doviz_ID,KUR,Ozel,Kullanici_ID) VALUES (1,1," +
         std::to_string(i % 300) + ",'03/14/2012','Tahsilat','" + std::to_string(1000000000 + i) +
         "','Kayıt " + n + "'," + n + ".25,0,1,1,0,1)";
}

// Prepares an INSERT of every column of `table`, its values taken from the row `rowid`=1 of the source.
struct RowCopy {
  RowCopy(bench::Sqlite& source, bench::Sqlite& target, const std::string& table) {
    rows = source.prepare("SELECT * FROM \"" + table + "\"");
    std::string marks;
    for (int i = 0; i < sqlite3_column_count(rows); ++i) marks += i ? ",?" : "?";
    insert = target.prepare("INSERT INTO \"" + table + "\" VALUES(" + marks + ")");
  }
  ~RowCopy() {
    sqlite3_finalize(rows);
    sqlite3_finalize(insert);
  }
  bool next() {
    if (sqlite3_step(rows) != SQLITE_ROW) return false;
    for (int i = 0; i < sqlite3_column_count(rows); ++i) {
      sqlite3_bind_value(insert, i + 1, sqlite3_column_value(rows, i));
    }
    return true;
  }
  sqlite3_stmt* rows = nullptr;
  sqlite3_stmt* insert = nullptr;
};

void measureTrigger() {
  std::vector<double> ours, bare, ratios;
  for (int round = 0; round < rounds; ++round) {
    Server server;
    makeTable(server, "KASAHAREKET");
    makeTable(server, "ODEMEHAREKET");
    server.run(company::schema::trigger("KASAODEMEEKLE")->text);
    server.run(kasaInsert(0));
    ours.push_back(seconds([&] {
      for (int i = 1; i <= triggerRows; ++i) server.run(kasaInsert(i));
    }));
    bench::Sqlite source(server.copy()), target(server.folder.path / "bare.db");
    for (const char* table : {"KASAHAREKET", "ODEMEHAREKET"}) {
      for (const auto& sql : bench::definitionsOf(source, table)) target.run(sql);
    }
    RowCopy kasa(source, target, "KASAHAREKET"), odeme(source, target, "ODEMEHAREKET");
    sqlite3_stmt* begin = target.prepare("BEGIN");
    sqlite3_stmt* commit = target.prepare("COMMIT");
    int pairs = 0;
    double time = 0;
    while (kasa.next() && odeme.next()) {
      ++pairs;
      time += seconds([&] {
        target.once(begin);
        target.once(kasa.insert);
        target.once(odeme.insert);
        target.once(commit);
      });
    }
    if (pairs != triggerRows + 1) throw std::runtime_error("the trigger did not write its rows");
    sqlite3_finalize(begin);
    sqlite3_finalize(commit);
    bare.push_back(time * triggerRows / pairs);
    ratios.push_back(bare.back() / ours.back());
  }
  std::printf("trigger  %10.0f rows/s   sqlite %10.0f rows/s   ratio of rates %.2f\n",
              triggerRows / bench::median(ours), triggerRows / bench::median(bare), bench::median(ratios));
}

// ---- view ----

void fillBranch(Server& server, const std::string& table) {
  server.run("CREATE TABLE " + table +
             " (ID INT IDENTITY(1,1) NOT NULL PRIMARY KEY, Cari_ID INT, Cari_Kod CHAR(26), Islem_Tipi "
             "CHAR(30), Tarih DATETIME, ATutar FLOAT, BTutar FLOAT)");
  server.run("BEGIN TRAN DECLARE @i INT SET @i=0 WHILE @i<" + std::to_string(branchRows) +
             " BEGIN INSERT INTO " + table +
             " VALUES (@i%500,'CARİ'+CAST(@i%500 AS VARCHAR(10)),CASE @i%3 WHEN 0 THEN 'Fatura' WHEN 1 THEN "
             "'Tahsilat' ELSE 'Kredi Kartı Tahsilat' END,DATEADD(d,@i%365,'01/01/2012'),@i*0.25,@i*0.5) SET "
             "@i=@i+1 END COMMIT TRAN");
}

// The same text for both servers.
std::string unionText(const std::string& convert) {
  std::string text;
  for (int i = 1; i <= branches; ++i) {
    text += (i > 1 ? " UNION ALL " : "") +
            ("SELECT Cari_ID,Cari_Kod,Tarih,ATutar,BTutar," + convert + " AS Tutar2 FROM DAL" +
             std::to_string(i) +
             " WHERE Cari_ID>0 AND NOT Cari_ID IS NULL AND Islem_Tipi<>'Kredi Kartı Tahsilat'");
  }
  return text;
}
constexpr const char* balance = "CASE WHEN BTutar>ATutar THEN BTutar ELSE -1*ATutar END";

void measureView() {
  Server server;
  for (int i = 1; i <= branches; ++i) fillBranch(server, "DAL" + std::to_string(i));
  server.run("CREATE VIEW DALLAR AS " + unionText("CONVERT(FLOAT," + std::string(balance) + ")"));
  struct Case {
    const char* name;
    const char* columns;
    const char* group;
  };
  constexpr Case cases[] = {{"by number", "Cari_ID", "Cari_ID"}, {"by text", "Cari_Kod", "Cari_Kod"}};
  for (const auto& each : cases) {
    std::vector<double> ours, bare, ratios;
    const std::string head = "SELECT " + std::string(each.columns) + ",";
    const std::string tail = " GROUP BY " + std::string(each.group);
    bench::Sqlite same(server.copy());
    for (int round = 0; round < rounds; ++round) {
      std::size_t rows = 0;
      ours.push_back(seconds([&] {
        const auto found = server.connection->query(
            bench::joined({head,
                           "ISNULL(SUM(BTutar-ATutar),0) AS Bakiye,ISNULL(SUM(Tutar2),0) "
                           "AS Bakiye2 FROM DALLAR",
                           tail}));
        rows = static_cast<std::size_t>(found->count());
      }));
      std::size_t bareRows = 0;
      bare.push_back(seconds([&] {
        bareRows =
            same.texts(bench::joined({head, "ifnull(sum(BTutar-ATutar),0),ifnull(sum(Tutar2),0) FROM (",
                                      unionText(balance), ")", tail}))
                .size();
      }));
      if (rows != bareRows || rows == 0) throw std::runtime_error("the two queries differ");
      ratios.push_back(ours.back() / bare.back());
    }
    std::printf("view     %-10s %8.3f s   sqlite %8.3f s   ratio of times %.2f\n", each.name,
                bench::median(ours), bench::median(bare), bench::median(ratios));
  }
}

// ---- bind ----

void measureBind() {
  Server server;
  const company::schema::ObjectDef* longest = nullptr;
  for (const auto& view : company::schema::views()) {
    if (!longest || view.text.size() > longest->text.size()) longest = &view;
  }
  for (const auto& table : company::schema::tables()) {
    server.run(company::schema::createStatement(table, company::schema::Stage::Upgrade));
  }
  engine::Store store(engine::Server::open(server.folder.path / "veri")->sharedInstance());
  store.beginStatement();
  store.catalog("OLCUM");
  std::vector<double> parse, bind;
  for (int round = 0; round < 200; ++round) {
    engine::Batch batch;
    parse.push_back(seconds([&] { batch = engine::parseBatch(longest->text); }));
    const auto& view = std::get<engine::CreateViewStatement>(batch.statements.at(0)->node);
    const engine::VariableTable none;
    bind.push_back(seconds([&] {
      engine::Binder binder({.store = &store, .database = "OLCUM", .variables = &none, .chain = {}});
      if (binder.bindViewQuery(*view.select, true).columns.empty()) throw std::runtime_error("no columns");
    }));
  }
  store.endStatement();
  std::printf("bind     %s (%zu bytes): parsed in %.3f ms, bound in %.3f ms\n", longest->name.c_str(),
              longest->text.size(), 1000 * bench::median(parse), 1000 * bench::median(bind));
}

// ---- memory ----

void measureMemory(long statements) {
  Server server;
  server.run(
      "CREATE TABLE HAREKET (ID INT IDENTITY(1,1) NOT NULL PRIMARY KEY, Ad VARCHAR(100), Tutar FLOAT)");
  server.run("INSERT INTO HAREKET (Ad,Tutar) VALUES ('bir',1)");
  const auto tell = [](long done) {
    std::printf("memory   after %8ld statements: %ld kB resident, %ld kB of its own\n", done,
                bench::statusKilobytes("VmRSS"), bench::statusKilobytes("RssAnon"));
  };
  tell(0);
  for (long i = 1; i <= statements; ++i) {
    const std::string n = std::to_string(i);
    const std::string filler(static_cast<std::size_t>(i % 37), 'x');
    server.run(bench::joined({"UPDATE HAREKET SET Ad='Kayıt ", n, filler, "',Tutar=", n, ".5 WHERE Ad='yok ",
                              n, "' OR Tutar<-", n}));
    if (i == 1000 || i == 100000 || i == statements) tell(i);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string only = argc > 1 ? argv[1] : "";
  try {
    if (only.empty() || only == "trigger") measureTrigger();
    if (only.empty() || only == "view") measureView();
    if (only.empty() || only == "bind") measureBind();
    if (only.empty() || only == "memory") measureMemory(argc > 2 ? std::stol(argv[2]) : 200000);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
