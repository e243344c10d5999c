// Processes that work on one folder are killed at any moment. What they had been told stands, nothing stands
// in halves, and the files as they lie there, copied elsewhere, open to the same rows.
#include <map>
#include <set>
#include <vector>

#include "campaigns/killed_workers.h"

namespace campaign {
namespace {

constexpr int workers = 3;

// What a worker's own objects should look like.
struct Model {
  std::map<int, int> rows, others;  // of the table in A, and of that in B
  std::set<std::string> objects;
  int next = 1, carried = 0;  // the trigger's counter in B
};

struct Step {
  std::vector<std::string> batches;  // the last one acknowledges
  std::function<void(Model&)> effect;
};

std::string text(int number) {
  return std::to_string(number);
}

// Objects that one step makes and the next one of its kind removes.
Step toggle(const Model& model, const std::string& name, const std::string& make, const std::string& remove) {
  const bool stands = model.objects.contains(name);
  return {{stands ? remove : make}, [name, stands](Model& after) {
            if (stands)
              after.objects.erase(name);
            else
              after.objects.insert(name);
          }};
}

Step nextStep(const Model& model, int worker, std::mt19937& random) {
  const std::string w = text(worker), table = "A..W" + w;
  const int kind = static_cast<int>(random() % 17), pick = static_cast<int>(random() % 7), id = model.next;
  const auto insert = [&](int row, int value) {
    return "INSERT INTO " + table + " (ID,A,B) VALUES (" + text(row) + "," + text(value) + ",REPLICATE('x'," +
           text(value % 3000) + "))";
  };
  const auto other = [&](int row, int value) {
    return "INSERT INTO B..W" + w + " (ID,A) VALUES (" + text(row) + "," + text(value) + ")";
  };
  switch (kind) {
    case 0:
    case 1:
      return {{insert(id, pick * 400)}, [=](Model& m) { m.rows[id] = pick * 400, m.next = id + 1; }};
    case 2:
      return {{"UPDATE " + table + " SET A=A+1 WHERE ID%7=" + text(pick)}, [=](Model& m) {
                for (auto& [row, value] : m.rows)
                  if (row % 7 == pick) ++value;
              }};
    case 3:
      return {{"DELETE FROM " + table + " WHERE ID%7=" + text(pick)}, [=](Model& m) {
                std::erase_if(m.rows, [&](const auto& each) { return each.first % 7 == pick; });
              }};
    case 4:
      return {{"BEGIN TRAN", insert(id, 1), insert(id + 1, 2), "UPDATE " + table + " SET A=A+5", "COMMIT"},
              [=](Model& m) {
                m.rows[id] = 1, m.rows[id + 1] = 2, m.next = id + 2;
                for (auto& [row, value] : m.rows) value += 5;
              }};
    case 5:
      return {{"BEGIN TRAN " + insert(id, 1), "DELETE FROM " + table, "ROLLBACK"}, [](Model&) {}};
    case 6: {
      std::string many;
      for (int i = 0; i < 40; ++i) many += insert(id + i, 2000) + " ";
      return {{"BEGIN TRAN " + many + "COMMIT"}, [=](Model& m) {
                for (int i = 0; i < 40; ++i) m.rows[id + i] = 2000;
                m.next = id + 40;
              }};
    }
    case 7:
      return toggle(model, "X" + w, "CREATE TABLE A..X" + w + " (ID INT IDENTITY PRIMARY KEY, C CHAR(10))",
                    "DROP TABLE A..X" + w);
    case 8:
      return toggle(model, "V" + w, "USE A EXEC('CREATE VIEW V" + w + " AS SELECT ID FROM W" + w + "')",
                    "USE A EXEC('DROP VIEW V" + w + "')");
    case 9:
      return toggle(model, "Y" + w, "SELECT * INTO A..Y" + w + " FROM " + table, "DROP TABLE A..Y" + w);
    case 10:
      return {
          {"UPDATE " + table + " SET A=A WHERE ID>0", "USE A DBCC CHECKTABLE (W" + w + ") WITH NO_INFOMSGS"},
          [](Model&) {}};
    case 11:
    case 12:
    case 13:
      // Both databases or none, whichever is written first.
      return {
          {"BEGIN TRAN " + (kind == 12 ? other(id, pick) + " " + insert(id, pick * 300)
                                       : insert(id, pick * 300) + " " + other(id, pick)),
           "UPDATE B..W" + w + " SET A=A+1 DELETE FROM B..W" + w + " WHERE ID%11=" + text(pick), "COMMIT"},
          [=](Model& m) {
            m.rows[id] = pick * 300, m.others[id] = pick, m.next = id + 1;
            for (auto& [row, value] : m.others) ++value;
            std::erase_if(m.others, [&](const auto& each) { return each.first % 11 == pick; });
          }};
    case 14:
      // A statement on its own that its trigger carries into the other database.
      return {{"UPDATE A..Z" + w + " SET A=A+1"}, [](Model& m) { ++m.carried; }};
    case 15:
      return toggle(model, "D" + w, "CREATE DATABASE D" + w, "DROP DATABASE D" + w);
    default:
      return {{"TRUNCATE TABLE A..Q" + w, "INSERT INTO A..Q" + w + " VALUES (1)"}, [](Model&) {}};
  }
}

std::string shown(const Model& model) {
  std::string out;
  for (const auto& [row, value] : model.rows) out += text(row) + "\t" + text(value) + "\n";
  out += "B\n";
  for (const auto& [row, value] : model.others) out += text(row) + "\t" + text(value) + "\n";
  out += "B " + text(model.carried) + "\n";
  for (const std::string& object : model.objects) out += object + "\n";
  return out;
}

std::string found(engine::Session& session, int worker) {
  const std::string w = text(worker);
  Answer rows = run(session, "SELECT ID,A FROM A..W" + w + " ORDER BY ID");
  if (rows.number != 0) return "!" + text(rows.number) + " " + rows.error;
  const Answer others = run(session, "SELECT ID,A FROM B..W" + w + " ORDER BY ID");
  if (others.number != 0) return "!" + text(others.number) + " " + others.error;
  std::string out = rows.text + "B\n" + others.text;
  out += "B " + run(session, "SELECT N FROM B..S" + w).text;
  for (const std::string name : {"D", "V", "X", "Y"}) {
    const std::string list = name == "D" ? "master..sysdatabases" : "A..sysobjects";
    if (!run(session, "SELECT name FROM " + list + " WHERE name='" + name + w + "'").text.empty())
      out += name + w + "\n";
  }
  return out;
}

// False when another process was in the way; then nothing of the step stands.
bool done(engine::Session& session, int worker, const Step& step) {
  for (const std::string& batch : step.batches) {
    const Answer answer = run(session, batch);
    if (answer.number == 0) continue;
    if (answer.number == 1222 || answer.number == 1205) {
      run(session, "IF @@TRANCOUNT>0 ROLLBACK");
      return false;
    }
    std::cerr << "worker " << worker << ": " << batch.substr(0, 100) << ": " << answer.error << "\n";
    ::_exit(2);
  }
  return true;
}

[[noreturn]] void work(const fs::path& folder, int worker, Model model, unsigned seed, int acknowledge) {
  try {
    auto session = open(folder, "master");
    std::mt19937 random(seed);
    for (;;) {
      const Step step = nextStep(model, worker, random);
      while (!done(*session, worker, step)) {
      }
      step.effect(model);
      if (::write(acknowledge, "x", 1) != 1) ::_exit(3);
    }
  } catch (const std::exception& error) {
    std::cerr << "worker " << worker << ": " << error.what() << "\n";
  }
  ::_exit(4);
}

class Campaign {
 public:
  explicit Campaign(unsigned seed) : random_(seed), seed_(seed), folder_(base_.path / "veri") {
    engine::Server::create(folder_, "sa", password);
    auto session = open(folder_, "master");
    must(*session, "CREATE DATABASE A");
    must(*session, "CREATE DATABASE B");
    for (int w = 0; w < workers; ++w) {
      must(*session, "CREATE TABLE A..W" + text(w) + " (ID INT PRIMARY KEY, A INT, B VARCHAR(8000))");
      must(*session, "CREATE TABLE A..Q" + text(w) + " (A INT)");
      must(*session, "CREATE TABLE A..Z" + text(w) + " (A INT) INSERT INTO A..Z" + text(w) + " VALUES (0)");
      must(*session, "CREATE TABLE B..W" + text(w) + " (ID INT PRIMARY KEY, A INT)");
      must(*session, "CREATE TABLE B..S" + text(w) + " (N INT) INSERT INTO B..S" + text(w) + " VALUES (0)");
      must(*session, "USE A EXEC('CREATE TRIGGER ZT" + text(w) + " ON Z" + text(w) +
                         " FOR UPDATE AS UPDATE B..S" + text(w) + " SET N=N+1') USE master");
      must(*session, "USE A CREATE INDEX WI" + text(w) + " ON W" + text(w) + " (A) USE master");
    }
  }

  // The number of processes killed.
  int round(int number) {
    constexpr unsigned longest = 60000;
    const auto killed =
        killWorkers(workers, longest, random_, [&](int worker, unsigned seed, int acknowledge) {
          work(folder_, worker, models_[static_cast<std::size_t>(worker)], seed, acknowledge);
        });
    const fs::path copy = base_.path / "kopya";
    copyPairs(folder_, copy);
    auto session = open(folder_, "master"), copied = open(copy, "master");
    for (int w = 0; w < workers; ++w) {
      Model& model = models_[static_cast<std::size_t>(w)];
      const KilledWorker& child = killed[static_cast<std::size_t>(w)];
      if (!child.killed) fail(number, "a worker ended by itself");
      acknowledged_ += child.steps;
      std::mt19937 random(child.seed);
      for (int i = 0; i < child.steps; ++i) nextStep(model, w, random).effect(model);
      Model next = model;
      nextStep(next, w, random).effect(next);
      const std::string now = found(*session, w);
      if (now == shown(next))
        model = next;
      else if (now != shown(model))
        fail(number, "worker " + text(w) + " after " + text(child.steps) + " steps of seed " +
                         std::to_string(child.seed) + "\nfound\n" + now + "wanted\n" + shown(model) + "or\n" +
                         shown(next));
      if (const std::string there = found(*copied, w); there != now)
        fail(number, "the copy differs\n" + there + "from\n" + now);
      model.next += 50;
    }
    if (number % 10 == 0) {
      const Answer check = run(*session, "DBCC CHECKDB ('A') WITH NO_INFOMSGS");
      if (check.number != 0) fail(number, check.messages);
      if (const Answer b = run(*session, "DBCC CHECKDB ('B') WITH NO_INFOMSGS"); b.number != 0)
        fail(number, b.messages);
      for (int w = 0; w < workers; ++w) {
        must(*session, "DELETE FROM A..W" + text(w) + " WHERE ID%2=0 DELETE FROM B..W" + text(w));
        models_[static_cast<std::size_t>(w)].others.clear();
        std::erase_if(models_[static_cast<std::size_t>(w)].rows,
                      [](const auto& each) { return each.first % 2 == 0; });
      }
    }
    return workers;
  }

  int failures() const { return failures_; }
  std::int64_t acknowledged() const { return acknowledged_; }

 private:
  void fail(int round, const std::string& what) {
    ++failures_;
    std::cout << "round " << round << " of seed " << seed_ << ": " << what.substr(0, 4000) << std::endl;
  }
  void must(engine::Session& session, const std::string& batch) {
    if (const Answer answer = run(session, batch); answer.number != 0) {
      std::cerr << batch << ": " << answer.error << "\n";
      std::abort();
    }
  }

  std::mt19937 random_;
  unsigned seed_;
  Folder base_;
  fs::path folder_;
  std::vector<Model> models_ = std::vector<Model>(workers);
  int failures_ = 0;
  std::int64_t acknowledged_ = 0;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const auto arguments = campaign::arguments(count, values, 700);
  campaign::Campaign campaign(arguments.seed);
  const int kills = campaign::runRounds(campaign, arguments.rounds);
  std::cout << kills << " kills, " << campaign.acknowledged() << " steps acknowledged, "
            << campaign.failures() << " findings\n";
  return campaign.failures() == 0 ? 0 : 1;
}
