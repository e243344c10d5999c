// Several processes run the commands of the shell that write, each on companies and users of its own beside
// the others', and are killed at any moment. What a command had told as done stands; a single save is whole
// or has not been; what takes many steps is completed, or taken back, by running its command again. The files
// as they lie there, copied elsewhere, open to the same rows.
//
//   campaign_commands [rounds] [seed]        four processes are killed in each round
#include <fcntl.h>
#include <sys/stat.h>

#include <map>
#include <set>
#include <sstream>

#include "campaigns/killed_workers.h"
#include "cli/program.h"
#include "db/drivers.h"

namespace campaign {
namespace {

using Words = std::vector<std::string>;

constexpr int workers = 4;
constexpr const char* fullRights = "11111111111111";
constexpr const char* someRights = "00110000111100";

std::string text(int number) {
  return std::to_string(number);
}

struct Command {
  Words words;
  std::string input = {};
};
struct End {
  int code = -1;
  std::string text;
};

End run(const fs::path& folder, const Command& command) {
  std::istringstream in(command.input);
  std::ostringstream out;
  cli::Ortam around{in, out, out, false, false, folder, db::makeConnectionFactory};
  End end;
  end.code = cli::calistir(around, command.words);
  end.text = out.str();
  return end;
}

// In a process of its own, so that no server stays open in this one.
End runApart(const fs::path& folder, const Command& command) {
  int ends[2];
  if (::pipe(ends) != 0) std::abort();
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::close(ends[0]);
    const End end = run(folder, command);
    (void)!::write(ends[1], end.text.data(), end.text.size());
    ::_exit(end.code);
  }
  ::close(ends[1]);
  End end;
  char buffer[4096];
  for (ssize_t n = 0; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
    end.text.append(buffer, static_cast<std::size_t>(n));
  ::close(ends[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  end.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return end;
}

// What a worker's own objects should look like: company F, its neighbour G, user U; companies X and M and
// user V come and go.
struct Model {
  std::string company;         // X: nothing, "new", "charted", "upgraded", "filled"
  bool moved = false;          // M, which is brought from another folder
  std::string branch;          // its code in the settings of an offline branch; the first worker's alone
  std::string timer;           // the hour of the daily backup
  std::set<std::string> user;  // V: the companies that it uses
  std::string rights = fullRights, neighbour = fullRights;  // of U in F and in G
  std::string port = "NULL";                                // of U's till in F
  int card = 1, neighbourCard = 1;                          // PosVar of F and of G
  int number = 0;                                           // of the last invoice of F
  std::set<int> sellers, rows, others;                      // of F; of tables in F and in G
  int next = 1;
};

struct Step {
  Command command;
  std::function<void(Model&)> effect;
  std::vector<Command> again = {};  // run after a kill when it takes more than one transaction
};

class Worker {
 public:
  Worker(fs::path folder, int number) : folder_(std::move(folder)), n_(text(number)) {}

  std::string name(const std::string& kind) const { return kind + n_; }
  fs::path file(const std::string& name) const { return folder_ / (name + n_); }

  void setUp() const {
    for (const char* kind : {"F", "G"}) {
      must({{"firma-olustur", "--ad", name(kind), "--kod", kind + n_, "--unvan", name(kind)}});
      must({{"sql", "--db", name(kind), "CREATE TABLE ISARET (ID INT PRIMARY KEY)"}});
    }
    must({{"kullanici-ekle", "--ad", name("U"), "--firma", name("F") + "," + name("G")}, "abcd\n"});
    write("haklar-tam", "{\"KHE\": \"" + std::string(fullRights) + "\"}");
    write("haklar-az", "{\"KHE\": \"" + std::string(someRights) + "\"}");
    for (const char* port : {"COM1", "COM2"}) write(port, "{\"TerPort\": \"" + std::string(port) + "\"}");
    fs::create_directory(file("yedek"));
    fs::create_directory(file("ilk"));
    must({{"yedekle", "--ad", name("F"), "--hedef", file("ilk").string()}});
    must({{"firma-olustur", "--ad", name("M"), "--kod", "M" + n_, "--unvan", name("M")}});
    fs::create_directory(file("eski"));
    must({{"yedekle", "--ad", name("M"), "--hedef", file("eski").string()}});
    must({{"firma-sil", "--ad", name("M"), "--evet"}});
  }
  // What the commands find around them in this worker's process.
  void enter() const { ::setenv("XDG_CONFIG_HOME", file("ayar").c_str(), 1); }

  Step next(const Model& model, std::mt19937& random) const {
    const std::string f = name("F"), g = name("G"), u = name("U"), v = name("V");
    const int id = model.next;
    switch (random() % 28) {
      case 0:
      case 1:
      case 2:
        return companyStep(model);
      case 3:
      case 4:
      case 5:
        return userStep(model, v, f, g);
      case 6: {
        const bool full = model.rights != fullRights;
        return {{{"yetki-yaz", "--kullanici", u, "--firma", f, "-i",
                  file(full ? "haklar-tam" : "haklar-az").string()}},
                [=](Model& m) { m.rights = full ? fullRights : someRights; }};
      }
      case 7:
        return {{{"yetki-kopyala", "--kullanici", u, "--kaynak", f, "--hedef", g}},
                [](Model& m) { m.neighbour = m.rights; }};
      case 8: {
        const std::string port = model.port == "COM1" ? "COM2" : "COM1";
        return {{{"kasiyer-yaz", "--kullanici", u, "--firma", f, "-i", file(port).string()}},
                [=](Model& m) { m.port = port; }};
      }
      case 9:
        return {{{"parametre", "--ad", f, "--yaz", "PosVar=" + text(1 - model.card)}},
                [](Model& m) { m.card = 1 - m.card; }};
      case 10:
        return {{{"parametre-kopyala", "--kaynak", f, "--hedef", g, "--kolon", "PosVar"}},
                [](Model& m) { m.neighbourCard = m.card; }};
      case 11:
        return {{{"numara", "--ad", f, "--yaz", "SATFATFIS=" + text(id)}},
                [=](Model& m) { m.number = id, m.next = id + 1; }};
      case 12:
        return {{{"tanim", "satici", "--ad", f, "-i", "-"},
                 "Satici_Kodu\tSatici_Adi\nS" + text(id) + "\tA\nS" + text(id + 1) + "\tB\n"},
                [=](Model& m) {
                  m.sellers.insert({id, id + 1}), m.next = id + 2;
                }};
      case 13:
      case 14:
        return {{{"sql", "--dur", "--db", f,
                  "BEGIN TRAN INSERT INTO ISARET VALUES (" + text(id) + ") INSERT INTO " + g +
                      "..ISARET VALUES (" + text(id) + ") COMMIT"}},
                [=](Model& m) { m.rows.insert(id), m.others.insert(id), m.next = id + 1; }};
      case 15:
        return {{{"yedekle", "--canli", "--ad", f, "--hedef", file("yedek").string()}}, [](Model&) {}};
      case 16:
        return {{{"yedekle", "--ad", g, "--hedef", file("yedek").string()}}, [](Model&) {}};
      case 17: {
        const Command restore{{"geri-al", backup().string(), "--evet"}, ""};
        const auto effect = [](Model& m) { m.number = 0, m.sellers.clear(), m.rows.clear(); };
        return {restore, effect, {restore}};
      }
      case 18:
        return {{{"servis", "--kilitler", "--ad", f}}, [](Model&) {}};
      case 19:
        return {{{"sunucu-ayarla", "--dayaniklilik", random() % 2 == 0 ? "tam" : "ertelenmis"}},
                [](Model&) {}};
      case 20:
      case 21:
        if (model.moved) return {dropMoved(), [](Model& m) { m.moved = false; }, {dropMoved()}};
        return {bringMoved(), [](Model& m) { m.moved = true; }, {bringMoved()}};
      case 22:
      case 23:
        return timerStep(model);
      case 24:
      case 25:
        if (n_ != "0") return {{{"denetle", "--yenile", "--ad", g}}, [](Model&) {}};
        return {{{"offline", "--yaz", "Sube_Kodu=S" + text(id), "--yaz", "MerkezFirma=M" + text(id)}},
                [=](Model& m) { m.branch = "S" + text(id) + " M" + text(id), m.next = id + 1; }};
      case 26:
        return {{{"sunucu", "--girisde-degisir", random() % 2 == 0 ? "1" : "0"}}, [](Model&) {}};
      default:
        return {{{"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n"}, [](Model&) {}};
    }
  }

  std::string shown(const Model& model) const {
    std::string out = "X " + model.company + "\nV ";
    for (const std::string& company : model.user) out += company + " ";
    out += "\nU " + name("F") + " " + model.rights + " " + model.port + " " + name("G") + " " +
           model.neighbour + "\nPosVar " + text(model.card) + text(model.neighbourCard) + "\nnumber " +
           text(model.number) + "\nM " + (model.moved ? "1 1 1 1 " : "0 0 0 0 ") + "\nbranch " +
           model.branch + "\ntimer " + model.timer + "\nsellers ";
    for (const int seller : model.sellers) out += text(seller) + " ";
    out += "\nrows ";
    for (const int row : model.rows) out += text(row) + " ";
    out += "\nothers ";
    for (const int row : model.others) out += text(row) + " ";
    return out + "\n";
  }

  // The same as it lies in the databases. `kinds` names the shapes of a whole company.
  std::string found(engine::Session& session, const std::map<std::string, std::string>& kinds) const {
    const std::string d = "Defination_DB..";
    const auto ask = [&](const std::string& sql) {
      const Answer answer = campaign::run(session, sql);
      std::string line = answer.text;
      for (char& c : line)
        if (c == '\n' || c == '\t') c = ' ';
      return answer.number == 0 ? line : "!" + text(answer.number) + " " + answer.error;
    };
    const std::string shape = companyShape(session);
    const auto kind = kinds.find(shape);
    const auto user = [&](const std::string& name) {
      return d + "sysuslng u," + d + "sysfrmlng f," + d + "sysusfrmlng t WHERE u.sysus_nm='" + name +
             "' AND t.sysus_ID=u.sysus_ID AND f.sysfrm_ID=t.sysfrm_ID";
    };
    std::string out = "X " + (kind == kinds.end() ? shape : kind->second) + "\nV ";
    const std::string known =
        ask("SELECT sysus_ID FROM " + d + "sysuslng WHERE sysus_nm='" + name("V") + "'");
    out += ask("SELECT RTRIM(sysfrm_dbnm) FROM " + user(name("V")) + " ORDER BY sysfrm_dbnm");
    const std::string rights =
        ask("SELECT RTRIM(f.sysfrm_dbnm) FROM " + d + "Kullanici k," + user(name("V")) +
            " AND k.Kullanici_ID=u.sysus_ID AND k.Firma_ID=f.sysfrm_ID ORDER BY f.sysfrm_dbnm");
    if (!out.ends_with("V " + rights) || known.empty() != rights.empty())
      out += "but with rights in " + rights + "and number " + known;
    out += "\nU " + ask("SELECT RTRIM(f.sysfrm_dbnm),RTRIM(k.KHE),k.TerPort FROM " + d + "Kullanici k," +
                        user(name("U")) +
                        " AND k.Kullanici_ID=u.sysus_ID AND k.Firma_ID=f.sysfrm_ID AND f.sysfrm_dbnm='" +
                        name("F") + "'");
    out += ask("SELECT RTRIM(f.sysfrm_dbnm),RTRIM(k.KHE) FROM " + d + "Kullanici k," + user(name("U")) +
               " AND k.Kullanici_ID=u.sysus_ID AND k.Firma_ID=f.sysfrm_ID AND f.sysfrm_dbnm='" + name("G") +
               "'");
    out.pop_back();
    const auto card = [&](const std::string& company) {
      return ask("SELECT CONVERT(INT,PosVar) FROM " + d + "sysfrmlng WHERE sysfrm_dbnm='" + company + "'");
    };
    out += "\nPosVar " + card(name("F")).substr(0, 1) + card(name("G")).substr(0, 1);
    out += "\nnumber " + ask("SELECT CONVERT(INT,IP) FROM " + name("F") + "..IP_SATFATFIS");
    out.pop_back();
    out += "\nM " + presence(session, name("M"));
    out += "\nbranch ";
    if (n_ == "0") out += ask("SELECT RTRIM(Sube_Kodu)+' '+RTRIM(MerkezFirma) FROM " + d + "OFFLINEAYARLAR");
    if (out.ends_with(' ')) out.pop_back();
    if (out.ends_with("branch")) out += ' ';
    out += "\ntimer " + timer();
    out += "\nsellers " + ask("SELECT CONVERT(INT,SUBSTRING(Satici_Kodu,2,9)) FROM " + name("F") +
                              "..SATICI WHERE Satici_Kodu LIKE 'S%' ORDER BY 1");
    out += "\nrows " + ask("SELECT ID FROM " + name("F") + "..ISARET ORDER BY ID");
    out += "\nothers " + ask("SELECT ID FROM " + name("G") + "..ISARET ORDER BY ID");
    return out + "\n";
  }

  // Rows of a company in the catalog, of its users and of their rights, and its database.
  static std::string presence(engine::Session& session, const std::string& company) {
    const std::string d = "Defination_DB..";
    const std::string id = "(SELECT sysfrm_ID FROM " + d + "sysfrmlng WHERE sysfrm_dbnm='" + company + "')";
    std::string counts = "SELECT COUNT(*) FROM " + d + "sysfrmlng WHERE sysfrm_dbnm='" + company + "'";
    for (const char* from : {"sysusfrmlng WHERE sysfrm_ID", "Kullanici WHERE Firma_ID"})
      counts += " SELECT COUNT(*) FROM " + d + from + " IN " + id;
    counts += " SELECT COUNT(*) FROM master..sysdatabases WHERE name='" + company + "'";
    std::string out = campaign::run(session, counts).text;
    for (char& c : out)
      if (c == '\n') c = ' ';
    return out;
  }

  // What there is of company X: its rows in the catalog, its objects, some of its rows.
  std::string companyShape(engine::Session& session) const {
    const std::string x = name("X");
    std::string out = presence(session, x);
    if (out.ends_with("1 ")) {
      const Answer inside = campaign::run(
          session, "SELECT COUNT(*) FROM " + x + "..sysobjects SELECT COUNT(*) FROM " + x +
                       "..syscolumns SELECT COUNT(*) FROM " + x + "..IP_SATFATFIS SELECT COUNT(*) FROM " + x +
                       "..STOKKART SELECT COUNT(*) FROM " + x + "..FATURAKART SELECT COUNT(*) FROM " + x +
                       "..MUHKART SELECT COUNT(*) FROM " + x + "..MUHASEBEMALITABLOHAREKET");
      out += inside.text + (inside.number == 0 ? "" : "!" + text(inside.number));
    }
    for (char& c : out)
      if (c == '\n') c = ' ';
    return out;
  }

  // The hour that both units of the daily backup tell; without the one the other does nothing.
  std::string timer() const {
    const fs::path units = file("ayar") / "systemd" / "user";
    const std::string when = readAll(units / "zembera-yedek.timer"),
                      what = readAll(units / "zembera-yedek.service");
    for (const char* hour : {"07:30", "23:00"})
      if (when.find(hour + std::string(":00\n")) != std::string::npos)
        return what.ends_with("\"--sakla\" \"" + days(hour) + "\" \"--canli\"\n") ? hour
                                                                                  : "half: " + when + what;
    return when;
  }
  static std::string days(const std::string& hour) { return hour == "07:30" ? "7" : "30"; }

  Command makeCompany() const {
    return {{"firma-olustur", "--ad", name("X"), "--kod", "X" + n_, "--unvan", name("X"), "--evet"}, ""};
  }
  Command makeCharted() const {
    Command command = makeCompany();
    command.words.emplace_back("--hesap-plani");
    return command;
  }
  Command bringMoved() const {
    return {{"tasi", "--kaynak", fs::directory_iterator(file("eski"))->path().string(), "--evet"}, ""};
  }
  Command dropMoved() const { return {{"firma-sil", "--ad", name("M"), "--evet"}, ""}; }
  Command dropCompany() const { return {{"firma-sil", "--ad", name("X"), "--evet"}, ""}; }
  Command upgradeCompany() const { return {{"guncelle", "--ad", name("X")}, ""}; }
  Command fillCompany() const { return {{"ornek-veri", "--ad", name("X")}, ""}; }

  void must(const Command& command) const {
    const End end = runApart(folder_, command);
    if (end.code == 0) return;
    std::cerr << command.words[0] << ": " << end.text << "\n";
    std::exit(3);
  }

 private:
  Step companyStep(const Model& model) const {
    if (model.company.empty() && model.next % 2 == 0)
      return {makeCharted(), [](Model& m) { m.company = "charted"; }, {dropCompany(), makeCharted()}};
    if (model.company.empty())
      return {makeCompany(), [](Model& m) { m.company = "new"; }, {dropCompany(), makeCompany()}};
    if (model.company == "new")
      return {upgradeCompany(), [](Model& m) { m.company = "upgraded"; }, {upgradeCompany()}};
    if (model.company == "upgraded" && model.next % 3 == 0)
      return {fillCompany(), [](Model& m) { m.company = "filled"; }};
    return {dropCompany(), [](Model& m) { m.company.clear(); }, {dropCompany()}};
  }

  static Step userStep(const Model& model, const std::string& v, const std::string& f, const std::string& g) {
    if (model.user.empty())
      return {{{"kullanici-ekle", "--ad", v, "--firma", f}, "abcd\n"}, [=](Model& m) { m.user = {f}; }};
    if (model.user.size() == 1)
      return {{{"kullanici-degistir", "--ad", v, "--firma", f + "," + g}, ""}, [=](Model& m) {
                m.user = {f, g};
              }};
    return {{{"kullanici-sil", "--ad", v, "--evet"}, ""}, [](Model& m) { m.user.clear(); }};
  }

  Step timerStep(const Model& model) const {
    if (model.timer == "23:00")
      return {{{"yedek-zamanla", "--kaldir"}, ""}, [](Model& m) { m.timer.clear(); }};
    const std::string hour = model.timer.empty() ? "07:30" : "23:00";
    const Command set{
        {"yedek-zamanla", "--hedef", file("yedek").string(), "--saat", hour, "--sakla", days(hour)}, ""};
    return {set, [=](Model& m) { m.timer = hour; }, {set}};
  }

  fs::path backup() const {
    for (const auto& entry : fs::directory_iterator(file("ilk"))) return entry.path();
    return {};
  }
  void write(const std::string& name, const std::string& content) const { writeAll(file(name), content); }

  fs::path folder_;
  std::string n_;
};

// Another process has stopped the service for a moment, or holds what this one wants.
bool inTheWay(const std::string& told) {
  for (const char* const words :
       {"paused or stopped", "SHUTDOWN", "deadlock", "currently in use", "Kullanımda", "Başka bir yedekleme"})
    if (told.find(words) != std::string::npos) return true;
  return false;
}

[[noreturn]] void work(const fs::path& folder, const Worker& worker, Model model, unsigned seed,
                       int acknowledge) {
  worker.enter();
  std::mt19937 random(seed);
  for (;;) {
    const Step step = worker.next(model, random);
    for (End end = run(folder, step.command); end.code != 0;) {
      if (!inTheWay(end.text)) {
        std::cout << "seed " << seed << ", " << step.command.words[0] << ": " << end.text << std::endl;
        ::_exit(2);
      }
      if (step.again.empty()) end = run(folder, step.command);
      for (const Command& command : step.again) {
        const std::string before = end.text;
        do end = run(folder, command);
        while (end.code != 0 && inTheWay(end.text));
        if (end.code != 0) end.text = before + end.text;
      }
    }
    step.effect(model);
    if (::write(acknowledge, "x", 1) != 1) ::_exit(3);
  }
}

class Campaign {
 public:
  explicit Campaign(unsigned seed) : random_(seed), seed_(seed) {
    // A manager of services that agrees to everything.
    fs::create_directory(folder_ / "program");
    writeAll(folder_ / "program" / "systemctl", "#!/bin/sh\n");
    fs::permissions(folder_ / "program" / "systemctl", fs::perms::owner_all);
    ::setenv("PATH", ((folder_ / "program").string() + ":" + ::getenv("PATH")).c_str(), 1);
    Worker(folder_, 0).must({{"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n"});
    for (int w = 0; w < workers; ++w) {
      workers_.emplace_back(folder_, w);
      workers_.back().setUp();
    }
    Worker(folder_, 0)
        .must({{"sql", "--db", "Defination_DB",
                "CREATE TABLE OFFLINEAYARLAR(Sube_Kodu CHAR(10) NULL,Merkez_IP CHAR(20) NULL,"
                "Merkez_Adi CHAR(20) NULL,MerkezSa CHAR(20) NULL,MerkezSaSifre CHAR(20) NULL,"
                "MerkezFirma CHAR(20) NULL,SonTransferFirma CHAR(20) NULL,SonAlimTarih CHAR(10) "
                "NULL,SonAlimSaat CHAR(8) NULL,GonAralik INT NULL,OtoGon BIT NULL)"}});
    const Worker& first = workers_[0];
    const auto learn = [&](const char* kind) { kinds_[first.companyShape(*open(veri(), "master"))] = kind; };
    learn("");
    first.must(first.makeCompany());
    learn("new");
    first.must(first.upgradeCompany());
    learn("upgraded");
    first.must(first.fillCompany());
    learn("filled");
    first.must(first.dropCompany());
    first.must(first.makeCharted());
    learn("charted");
    first.must(first.dropCompany());
    if (kinds_.size() != 5) std::abort();
    for (int w = 0; w < workers; ++w) judge(0, w, {}, {}, false);
  }

  int round(int number) {
    for (const Worker& worker : workers_)
      for (const auto& entry : fs::directory_iterator(worker.file("yedek"))) fs::remove_all(entry.path());
    constexpr unsigned longest = 1500000;
    const auto killed =
        killWorkers(workers, longest, random_, [&](int worker, unsigned seed, int acknowledge) {
          const auto w = static_cast<std::size_t>(worker);
          work(folder_, workers_[w], models_[w], seed, acknowledge);
        });
    const fs::path copy = base_.path / "kopya";
    copyPairs(veri(), copy);
    std::vector<std::string> now, there;
    {
      auto session = open(veri(), "master"), copied = open(copy, "master");
      for (const Worker& worker : workers_) {
        now.push_back(worker.found(*session, kinds_));
        there.push_back(worker.found(*copied, kinds_));
      }
    }
    for (int w = 0; w < workers; ++w) {
      const auto at = static_cast<std::size_t>(w);
      if (!killed[at].killed) fail(number, "a worker ended by itself");
      if (now[at] != there[at]) fail(number, "the copy differs\n" + there[at] + "from\n" + now[at]);
    }
    // Any command ends what a restore or a move was about when it was killed.
    if (fs::exists(folder_ / "bakim.kayit")) now = settled();
    for (int w = 0; w < workers; ++w) {
      const auto at = static_cast<std::size_t>(w);
      judge(number, w, killed[at], now[at], true);
    }
    parameters(number);
    backups(number);
    if (number % 10 == 0)
      if (const End end = runApart(folder_, {{"denetle"}, ""}); end.code != 0) fail(number, end.text);
    return workers;
  }

  int failures() const { return failures_; }
  std::int64_t acknowledged() const { return acknowledged_; }
  const std::map<std::string, int>& counts() const { return counts_; }

 private:
  fs::path veri() const { return folder_ / "veri"; }

  std::vector<std::string> settled() {
    workers_[0].must({{"firma-listele"}, ""});
    auto session = open(veri(), "master");
    std::vector<std::string> now;
    for (const Worker& worker : workers_) now.push_back(worker.found(*session, kinds_));
    return now;
  }

  // What stands is what was acknowledged, with the broken-off step or without it.
  void judge(int number, int w, const KilledWorker& killed, std::string now, bool killedThere) {
    const auto at = static_cast<std::size_t>(w);
    const Worker& worker = workers_[at];
    Model& model = models_[at];
    if (!killedThere) {
      now = worker.found(*open(veri(), "master"), kinds_);
      if (now != worker.shown(model)) fail(number, "at the begin\n" + now + "wanted\n" + worker.shown(model));
      return;
    }
    acknowledged_ += killed.steps;
    std::mt19937 random(killed.seed);
    for (int i = 0; i < killed.steps; ++i) {
      const Step step = worker.next(model, random);
      ++counts_[step.command.words[0]];
      step.effect(model);
    }
    const Step broken = worker.next(model, random);
    Model next = model;
    broken.effect(next);
    if (now != worker.shown(model) && now != worker.shown(next) && !broken.again.empty()) {
      ++completed_;
      std::string told;
      for (const Command& command : broken.again) told += runApart(folder_, command).text;
      const std::string then = worker.found(*open(veri(), "master"), kinds_);
      if (then != worker.shown(next))
        fail(number, broken.command.words[0] + " broke off at\n" + now + "and run again left\n" + then +
                         "wanted\n" + worker.shown(next) + told);
      now = then;
    }
    if (now == worker.shown(next)) {
      model = next;
    } else if (now != worker.shown(model)) {
      std::string words;
      for (const std::string& word : broken.command.words) words += word + " ";
      fail(number, "after " + text(killed.steps) + " steps of seed " + std::to_string(killed.seed) +
                       ", killed in " + words + "\nfound\n" + now + "wanted\n" + worker.shown(model) +
                       "or\n" + worker.shown(next));
    }
    model.next += 2;
  }

  // sys.inf is whole and nobody else's, whoever wrote it last.
  void parameters(int number) {
    const fs::path file = folder_ / "sys.inf";
    const std::string content = readAll(file);
    if (content != "(yerel);sa;Parola1;0;\n" && content != "(yerel);sa;Parola1;1;\n")
      fail(number, "sys.inf: " + content);
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || (status.st_mode & 077) != 0) fail(number, "sys.inf is open");
  }

  // A folder under its final name is a whole backup.
  void backups(int number) {
    for (const Worker& worker : workers_)
      for (const auto& entry : fs::directory_iterator(worker.file("yedek"))) {
        if (entry.path().extension() == ".yarim") continue;
        const End end = runApart(folder_, {{"yedek-denetle", entry.path().string()}, ""});
        if (end.code != 0) fail(number, entry.path().string() + ": " + end.text);
        ++proved_;
      }
  }

  void fail(int round, const std::string& what) {
    ++failures_;
    std::cout << "round " << round << " of seed " << seed_ << ": " << what.substr(0, 4000) << std::endl;
  }

 public:
  int completed_ = 0, proved_ = 0;

 private:
  std::mt19937 random_;
  unsigned seed_;
  Folder base_;
  fs::path folder_ = base_.path;
  std::vector<Worker> workers_;
  std::vector<Model> models_ = std::vector<Model>(workers);
  std::map<std::string, std::string> kinds_;
  std::map<std::string, int> counts_;
  int failures_ = 0;
  std::int64_t acknowledged_ = 0;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const auto arguments = campaign::arguments(count, values, 500);
  campaign::Campaign campaign(arguments.seed);
  const int kills = campaign::runRounds(campaign, arguments.rounds);
  for (const auto& [command, times] : campaign.counts()) std::cout << command << " " << times << "\n";
  std::cout << kills << " kills, " << campaign.acknowledged() << " commands acknowledged, "
            << campaign.completed_ << " completed by running them again, " << campaign.proved_
            << " backups proved, " << campaign.failures() << " findings\n";
  return campaign.failures() == 0 ? 0 : 1;
}
