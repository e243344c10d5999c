// A company database on the embedded server against bare SQLite in one run; prints times and ratios.
// All objects of a new company, against the same objects made in a bare file, each statement a transaction of
// its own on both sides: once the tables, indexes and first rows alone, once with the views and triggers. The
// bare file gets the text of a view as it stands, with the names of functions that SQLite's grammar keeps for
// itself replaced; a trigger, whose language SQLite does not know, as one with its text in a literal.
#include <cstdio>
#include <map>

#include "bench/bare.h"
#include "catalog/sunucu_hazirla.h"
#include "company/base_schema.h"
#include "company/firma_karti.h"
#include "company/schema/schema.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "support/fakes.h"

namespace {

namespace fs = std::filesystem;
using bench::seconds;

constexpr int rounds = 5;

class Surroundings {
 public:
  Surroundings() {
    engine::Server::create(folder.path / "veri", "sa", "gizli");
    factory = db::makeConnectionFactory(folder.path);
    s.oturum.surucu = factory.get();
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = s.oturum.Firma_DB_Versiyon = "2012.002";
    s.platform.folder = folder.path;
    catalog::Sunucu_Hazirla(s.oturum, {"Olcum", "olcum", ""});
  }
  ~Surroundings() {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
  }
  fs::path copy(const std::string& database) const {
    return bench::settledCopy(folder.path / "veri", database);
  }
  void failOnBoxes() const {
    if (!s.boxes.shown.empty()) throw std::runtime_error(s.boxes.last());
  }

  bench::Folder folder;
  support::FakeSurroundings s;
  std::unique_ptr<db::ConnectionFactory> factory;
};

// Every statement that makes the tables, indexes and rows of `file`, rows with their values in the text.
std::vector<std::string> statementsOf(const fs::path& file) {
  bench::Sqlite source(file);
  std::vector<std::string> all;
  for (const auto& table : bench::tablesOf(source)) {
    const auto definitions = bench::definitionsOf(source, table);
    all.push_back(definitions.front());
    std::string values = "SELECT 'INSERT INTO \"" + table + "\" VALUES('";
    for (const auto& column : source.texts("SELECT name FROM pragma_table_info('" + table + "')")) {
      values += values.ends_with("VALUES('") ? "||quote(\"" : "||','||quote(\"";
      values.append(column).append("\")");
    }
    for (auto& insert : source.texts(values + "||')' FROM \"" + table + "\"")) all.push_back(insert);
    all.insert(all.end(), definitions.begin() + 1, definitions.end());
  }
  return all;
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::string literal(const std::string& text) {
  std::string quoted = "'";
  quoted += replaced(text, "'", "''");
  return quoted += "'";
}

std::string viewFor(std::string text) {
  constexpr std::pair<const char*, const char*> spelling[] = {
      {"ISNULL(", "ifnull("}, {"LEFT(", "substr("}, {"RIGHT(", "substr("}};
  for (const auto& [ours, theirs] : spelling) text = replaced(text, ours, theirs);
  return text;
}

struct Names {
  std::string name, table, text;
};

// Views and triggers of `file`, in order of creation.
std::vector<Names> objectsOf(bench::Sqlite& source, const std::string& type) {
  const std::string from = " FROM zb_objects o WHERE xtype='" + type + "' ORDER BY id";
  const auto names = source.texts("SELECT name" + from);
  const auto texts = source.texts("SELECT text" + from);
  const auto tables = source.texts("SELECT (SELECT name FROM zb_objects t WHERE t.id=o.parent)" + from);
  std::vector<Names> all;
  for (std::size_t i = 0; i < names.size(); ++i) all.push_back({names[i], tables[i], texts[i]});
  return all;
}

std::vector<std::string> viewsAndTriggersOf(const fs::path& file) {
  bench::Sqlite source(file);
  std::vector<std::string> all;
  for (const Names& view : objectsOf(source, "V")) all.push_back(viewFor(view.text));
  for (const Names& trigger : objectsOf(source, "TR")) {
    std::string sql = "CREATE TRIGGER \"";
    sql.append(trigger.name).append("\" AFTER INSERT ON \"").append(trigger.table);
    all.push_back(sql.append("\" BEGIN SELECT ").append(literal(trigger.text)).append("; END"));
  }
  return all;
}

struct Side {
  std::vector<double> tables, whole, processor;
};

void printCreate(const char* what, std::vector<double>& ours, std::vector<double>& bare,
                 std::size_t statements) {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < ours.size(); ++i) ratios.push_back(ours[i] / bare[i]);
  std::printf("create   %-7s %8.3f s   sqlite %8.3f s (%zu statements)   ratio of times %.2f", what,
              bench::median(ours), bench::median(bare), statements, bench::median(ratios));
}

// The first half of the progress steps are the tables: `tables` gets the time when the last one stands.
void createOurs(Surroundings& here, const std::string& name, Side& side) {
  session::Oturum& oturum = here.s.oturum;
  oturum.Baglanti->execute("CREATE DATABASE " + name);
  session::Katalog_Bagla(oturum, name);
  const std::size_t tableCount = company::schema::tableOrder(company::schema::Stage::Base).size();
  const auto start = std::chrono::steady_clock::now();
  std::size_t steps = 0;
  here.s.progress.onPump = [&] {
    if (++steps != tableCount) return;
    side.tables.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  };
  const double processor = bench::processorSeconds();
  side.whole.push_back(seconds([&] { company::Firma_Tablolari_Olustur(oturum); }));
  side.processor.push_back(bench::processorSeconds() - processor);
  here.s.progress.onPump = nullptr;
  here.failOnBoxes();
}

void measureCreate() {
  Surroundings here;
  Side ours, bare;
  std::size_t tableStatements = 0, otherStatements = 0;
  for (int round = 0; round < rounds; ++round) {
    const std::string name = "OLCUM" + std::to_string(round);
    createOurs(here, name, ours);
    const fs::path copy = here.copy(name);
    const auto tables = statementsOf(copy), others = viewsAndTriggersOf(copy);
    tableStatements = tables.size();
    otherStatements = others.size();
    bench::Sqlite sqlite(here.folder.path / ("bare" + std::to_string(round) + ".db"));
    const double processor = bench::processorSeconds();
    bare.tables.push_back(seconds([&] {
      for (const auto& sql : tables) sqlite.run(sql);
    }));
    bare.whole.push_back(bare.tables.back() + seconds([&] {
                           for (const auto& sql : others) sqlite.run(sql);
                         }));
    bare.processor.push_back(bench::processorSeconds() - processor);
  }
  printCreate("tables", ours.tables, bare.tables, tableStatements);
  std::printf("\n");
  printCreate("whole", ours.whole, bare.whole, tableStatements + otherStatements);
  std::vector<double> processor;
  processor.reserve(rounds);
  for (std::size_t i = 0; i < ours.processor.size(); ++i)
    processor.push_back(ours.processor[i] / bare.processor[i]);
  std::printf(", of processor times %.2f\n", bench::median(processor));
}

}  // namespace

int main() {
  try {
    measureCreate();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
