// A company's life on a server of the network, named in sys.inf by host and port: what lies there in the end
// is row for row what the same commands leave on the embedded server.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <map>

#include "campaigns/campaign.h"
#include "db/drivers.h"
#include "support/komut_satiri.h"
#include "tds/server.h"

namespace {

namespace fs = std::filesystem;

using Tables = std::map<std::string, std::vector<std::string>>;

// The lines of a text, sorted.
std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  std::sort(lines.begin(), lines.end());
  return lines;
}

// What may differ between two lives: the times and the days at which rows were entered, as they are shown.
std::vector<std::string> momentsBetween(std::time_t begin, std::time_t end) {
  std::vector<std::string> moments;
  constexpr std::time_t minute = 60;
  for (std::time_t at = begin - begin % minute; at <= end; at += minute) {
    char text[40];
    std::tm parts{};
    localtime_r(&at, &parts);
    std::strftime(text, sizeof text, "Jan  1 1900 %l:%M%p", &parts);
    moments.emplace_back(text);
    std::strftime(text, sizeof text, "%b %e %Y 12:00AM", &parts);
    if (std::find(moments.begin(), moments.end(), text) == moments.end()) moments.emplace_back(text);
  }
  return moments;
}

void replaceAll(std::string& text, const std::string& what, const std::string& by) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
}

// All rows of all tables of a database.
Tables tablesOf(const fs::path& folder, const std::string& database,
                const std::vector<std::string>& moments) {
  const auto session = campaign::open(folder, database);
  const auto ask = [&](const std::string& query) {
    auto answer = campaign::run(*session, query);
    EXPECT_EQ(answer.error, "") << query;
    for (const std::string& moment : moments) replaceAll(answer.text, moment, "(now)");
    replaceAll(answer.text, folder.string(), "(folder)");
    return linesOf(answer.text);
  };
  Tables tables;
  for (const std::string& name : ask("SELECT RTRIM(name) FROM sysobjects WHERE xtype='U'"))
    tables[name] = ask("SELECT * FROM [" + name + "]");
  tables["(views and triggers)"] = ask("SELECT name,xtype FROM sysobjects WHERE xtype IN ('V','TR')");
  return tables;
}

// Everything from the first start to the second year, on the server of that name.
void live(support::KomutSatiri& cli, const std::string& server) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> steps = {
      {{"kur", "--sunucu", server}, "Parola1\nabcdefgh\n"},
      {{"firma-olustur", "--ad", "A2012", "--kod", "00001", "--unvan", "Şık Ticaret", "--baslangic",
        "01/01/2012", "--bitis", "31/12/2012"},
       ""},
      {{"guncelle", "--ad", "A2012"}, ""},
      {{"ornek-veri", "--ad", "A2012"}, ""},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "A2013", "--evet"}, ""},
      {{"guncelle", "--ad", "A2013"}, ""},
  };
  for (const auto& [words, input] : steps)
    ASSERT_EQ(cli.calistir(words, input), 0) << server << " " << words[0] << "\n" << cli.out << cli.err;
}

TEST(UzakSunucu, HoldsTheSameRowsAsTheOwnOne) {
  const std::time_t begin = std::time(nullptr);
  support::KomutSatiri own{db::makeConnectionFactory}, remote{db::makeConnectionFactory};
  live(own, "(yerel)");
  const fs::path folder = remote.dizin / "sunucu";
  {
    tds::Options options;
    options.port = 0;
    tds::Server listener(engine::Server::create(folder, "sa", "Parola1"), options);
    live(remote, "127.0.0.1," + std::to_string(listener.port()));
  }
  const auto moments = momentsBetween(begin, std::time(nullptr));
  for (const char* const database : {"A2012", "A2013", "Defination_DB"}) {
    const Tables should = tablesOf(own.dizin / "veri", database, moments),
                 is = tablesOf(folder, database, moments);
    ASSERT_GT(should.size(), 1u);
    for (const auto& [name, rows] : should) {
      ASSERT_TRUE(is.contains(name)) << database << " " << name;
      const auto& found = is.at(name);
      EXPECT_EQ(found.size(), rows.size()) << database << " " << name;
      const auto differs = std::mismatch(rows.begin(), rows.end(), found.begin(), found.end());
      if (differs.first != rows.end() && differs.second != found.end()) {
        ADD_FAILURE() << database << " " << name << "\n"
                      << *differs.second << "\ninstead of\n"
                      << *differs.first;
      }
    }
    EXPECT_EQ(is.size(), should.size()) << database;
  }
}

}  // namespace
