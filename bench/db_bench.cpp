// Data access on the embedded server against bare SQLite in one run; prints times and ratios.
// With an argument only the part named:
//
//   insert  one-row INSERTs with differing literals through Connection::execute, against a prepared INSERT
//           into a table and indexes of the same definition
//   read    100,000 rows of 20 columns through a Recordset, against sqlite3_step with column reads
#include <cstdio>

#include "bench/bare.h"
#include "db/drivers.h"
#include "db/recordset.h"

namespace {

namespace fs = std::filesystem;
using bench::seconds;
using bench::Sqlite;

constexpr int insertedRows = 20000;
constexpr int readRows = 100000;
constexpr int readColumns = 20;

void report(const char* name, int rows, double ours, double bare) {
  std::printf("%-8s %10.0f rows/s   sqlite %10.0f rows/s   ratio of rates %.2f\n", name, rows / ours,
              rows / bare, bare / ours);
}

std::string code(int i) {
  return "ST" + std::to_string(1000000 + i);
}

double insertOurs(db::Connection& connection) {
  connection.execute(
      "CREATE TABLE HAREKET (ID INT IDENTITY(1,1) NOT NULL PRIMARY KEY, Stok_Kod CHAR(26), Stok_Ad CHAR(50), "
      "Miktar FLOAT, Tutar MONEY, Aktif BIT, Sira INT, Aciklama VARCHAR(100))");
  return seconds([&] {
    for (int i = 0; i < insertedRows; ++i) {
      const std::string n = std::to_string(i);
      connection.execute(
          bench::joined({"INSERT INTO HAREKET (Stok_Kod,Stok_Ad,Miktar,Tutar,Aktif,Sira,Aciklama) VALUES ('",
                         code(i), "','Kalem ", n, "',", n, ".5,12.75,1,", n, ",'Açıklama ", n, "')"}));
    }
  });
}

// `definitions`: the statements that made the server's table and its indexes.
double insertBare(Sqlite& sqlite, const std::vector<std::string>& definitions) {
  for (const auto& sql : definitions) sqlite.run(sql);
  sqlite3_stmt* statement = sqlite.prepare(
      "INSERT INTO HAREKET (Stok_Kod,Stok_Ad,Miktar,Tutar,Aktif,Sira,Aciklama,ID) VALUES (?,?,?,?,?,?,?,?)");
  const double time = seconds([&] {
    for (int i = 0; i < insertedRows; ++i) {
      const std::string kod = code(i), ad = "Kalem " + std::to_string(i),
                        not_ = "Açıklama " + std::to_string(i);
      sqlite3_bind_text(statement, 1, kod.c_str(), -1, SQLITE_STATIC);
      sqlite3_bind_text(statement, 2, ad.c_str(), -1, SQLITE_STATIC);
      sqlite3_bind_double(statement, 3, i + 0.5);
      sqlite3_bind_int64(statement, 4, 127500);
      sqlite3_bind_int(statement, 5, 1);
      sqlite3_bind_int(statement, 6, i);
      sqlite3_bind_text(statement, 7, not_.c_str(), -1, SQLITE_STATIC);
      sqlite3_bind_int(statement, 8, i + 1);
      sqlite.once(statement);
    }
  });
  sqlite3_finalize(statement);
  return time;
}

// Five columns each of whole numbers, money, fixed text and dates.
void fillWide(db::Connection& connection) {
  std::string columns, values;
  static constexpr const char* types[] = {"INT", "MONEY", "CHAR(26)", "DATETIME"};
  static constexpr const char* literals[] = {"@i", "@i*1.25", "'Kod '+CAST(@i AS VARCHAR(10))",
                                             "DATEADD(mi,@i,'20120101')"};
  for (int i = 0; i < readColumns; ++i) {
    columns += (i ? ",K" : "K") + std::to_string(i) + " " + types[i % 4];
    values += (i ? "," : "") + std::string(literals[i % 4]);
  }
  connection.execute("CREATE TABLE GENIS (" + columns + ")");
  connection.execute("BEGIN TRAN DECLARE @i INT SET @i=0 WHILE @i<" + std::to_string(readRows) +
                     " BEGIN INSERT INTO GENIS VALUES (" + values + ") SET @i=@i+1 END COMMIT TRAN");
}

double readOurs(db::Connection& connection, std::int64_t& sum) {
  return seconds([&] {
    db::Recordset recordset;
    recordset.open(connection, "SELECT * FROM GENIS");
    for (; !recordset.eof(); recordset.moveNext()) {
      for (int column = 0; column < readColumns; ++column) {
        const db::Value value = recordset.field(column);
        if (const auto* text = value.as<std::string>()) sum += static_cast<std::int64_t>(text->size());
        if (const auto* number = value.as<std::int64_t>()) sum += *number;
      }
    }
  });
}

double readBare(Sqlite& sqlite, std::int64_t& sum) {
  sqlite3_stmt* statement = sqlite.prepare("SELECT * FROM GENIS");
  const double time = seconds([&] {
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int column = 0; column < readColumns; ++column) {
        if (sqlite3_column_type(statement, column) == SQLITE_TEXT) {
          sum += reinterpret_cast<const char*>(sqlite3_column_text(statement, column))[0] +
                 sqlite3_column_bytes(statement, column);
        } else {
          sum += sqlite3_column_int64(statement, column);
        }
      }
    }
  });
  sqlite3_finalize(statement);
  return time;
}

void measureInsert(db::Connection& connection, const fs::path& folder) {
  const double ours = insertOurs(connection);
  Sqlite same(bench::settledCopy(folder / "veri", "OLCUM")), bare(folder / "bare.db");
  report("insert", insertedRows, ours, insertBare(bare, bench::definitionsOf(same, "HAREKET")));
  if (const auto counters = connection.planCounters()) {
    std::printf("         plan cache: %lld hits, %lld misses\n", static_cast<long long>(counters->hits),
                static_cast<long long>(counters->misses));
  }
}

void measureRead(db::Connection& connection, const fs::path& folder) {
  fillWide(connection);
  std::int64_t sum = 0;
  Sqlite same(bench::settledCopy(folder / "veri", "OLCUM"));
  for (int round = 0; round < 3; ++round) {
    const double read = readOurs(connection, sum);
    report("read", readRows, read, readBare(same, sum));
  }
  std::printf("         (checksum %lld)\n", static_cast<long long>(sum));
}

}  // namespace

int main(int argc, char** argv) {
  const std::string only = argc > 1 ? argv[1] : "";
  try {
    const bench::Folder folder;
    const auto factory = db::makeConnectionFactory(folder.path);
    factory->local("(yerel)")->create("sa", "parola");
    const auto connection = factory->make("(yerel)");
    connection->open({"(yerel)", "sa", "parola", "master", false});
    connection->execute("CREATE DATABASE OLCUM");
    connection->execute("USE OLCUM");

    if (only != "read") measureInsert(*connection, folder.path);
    if (only != "insert") measureRead(*connection, folder.path);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
