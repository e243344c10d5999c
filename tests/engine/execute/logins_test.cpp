#include "engine/execute/logins.h"

#include "engine/store/login_guard.h"
#include "engine/store_fixture.h"

namespace engine::test {

class LoginTest : public StoreTest {
 protected:
  int error(const std::function<void()>& action) { return errorNumber(action, &text); }
  std::string text;
  Storing s{*server};
  Store& store = s.store;
};

TEST_F(LoginTest, NameAndPasswordFailAlike) {
  EXPECT_EQ(verifyLogin(store, "SA", password), "sa");
  EXPECT_EQ(error([&] { verifyLogin(store, "sa", "parola1"); }), 18456);
  const std::string wrongPassword = text;
  EXPECT_EQ(error([&] { verifyLogin(store, "yok", password); }), 18456);
  EXPECT_EQ(wrongPassword, "Login failed for user 'sa'.");
  EXPECT_EQ(text, "Login failed for user 'yok'.");
  EXPECT_EQ(error([&] { verifyLogin(store, "sa", ""); }), 18456);
}

TEST_F(LoginTest, LoginsComeChangeAndGo) {
  addLogin(store, "AYŞE", "eski'1");
  EXPECT_EQ(error([&] { addLogin(store, "ayŞe", "x"); }), 15025);
  EXPECT_EQ(error([&] { addLogin(store, "", "x"); }), 15004);
  EXPECT_EQ(error([&] { addLogin(store, "B", "x", "yok"); }), 15010);
  EXPECT_EQ(verifyLogin(store, "AYŞE", "eski'1"), "AYŞE");
  EXPECT_EQ(error([&] { changePassword(store, "AYŞE", "yanlis", "yeni"); }), 15211);
  EXPECT_EQ(text.find("yanlis"), std::string::npos);
  EXPECT_EQ(error([&] { changePassword(store, "YOK", "x", "yeni"); }), 15007);
  changePassword(store, "AYŞE", "eski'1", "yeni");
  EXPECT_EQ(error([&] { verifyLogin(store, "AYŞE", "eski'1"); }), 18456);
  EXPECT_EQ(verifyLogin(store, "AYŞE", "yeni"), "AYŞE");
  changePassword(store, "AYŞE", std::nullopt, "zorla");
  EXPECT_EQ(verifyLogin(store, "AYŞE", "zorla"), "AYŞE");
  EXPECT_EQ(error([&] { dropLogin(store, "YOK"); }), 15007);
  EXPECT_EQ(error([&] { dropLogin(store, "sa"); }), 15405);
  dropLogin(store, "ayŞE");
  EXPECT_EQ(error([&] { verifyLogin(store, "AYŞE", "zorla"); }), 18456);
}

TEST_F(LoginTest, PasswordsLieOnlyAsHashes) {
  addLogin(store, "B", "COKGIZLI");
  verifyLogin(store, "B", "COKGIZLI");
  server->stop();
  for (const auto& entry : std::filesystem::directory_iterator(server->folder()))
    EXPECT_EQ(readAll(entry.path()).find("COKGIZLI"), std::string::npos) << entry.path();
}

TEST_F(LoginTest, ServerRoles) {
  addLogin(store, "B", "x");
  EXPECT_EQ(error([&] { setServerRole(store, "B", "kral", true); }), 15402);
  EXPECT_EQ(error([&] { setServerRole(store, "C", "sysadmin", true); }), 15007);
  EXPECT_FALSE(isServerRoleMember(store, "B", "sysadmin"));
  setServerRole(store, "b", "SysAdmin", true);
  setServerRole(store, "b", "sysadmin", true);
  EXPECT_TRUE(isServerRoleMember(store, "B", "SYSADMIN"));
  setServerRole(store, "B", "sysadmin", false);
  EXPECT_FALSE(isServerRoleMember(store, "B", "sysadmin"));
}

TEST_F(LoginTest, UsersAndRolesOfADatabase) {
  s.define("CREATE DATABASE A");
  addLogin(store, "B", "x");
  EXPECT_FALSE(hasAccess(store, "A", "B"));
  EXPECT_TRUE(hasAccess(store, "master", "B"));
  EXPECT_TRUE(hasAccess(store, "A", "sa"));
  EXPECT_EQ(error([&] { addUser(store, "A", "YOK", "YOK"); }), 15007);
  addUser(store, "A", "B", "B");
  EXPECT_TRUE(hasAccess(store, "A", "b"));
  EXPECT_EQ(userOf(store, "A", "B"), "B");
  EXPECT_EQ(userOf(store, "A", "sa"), "dbo");
  EXPECT_EQ(error([&] { addUser(store, "A", "B", "B"); }), 15023);
  EXPECT_EQ(error([&] { addUser(store, "A", "B", "C"); }), 15063);
  for (const char* role : {"db_owner", "db_accessadmin", "db_securityadmin", "db_ddladmin",
                           "db_backupoperator", "db_datareader", "db_datawriter"})
    setRole(store, "A", role, "B", true);
  EXPECT_EQ(error([&] { setRole(store, "A", "db_yok", "B", true); }), 15014);
  EXPECT_EQ(error([&] { setRole(store, "A", "db_owner", "YOK", true); }), 15410);
  setRole(store, "A", "db_owner", "B", false);
  EXPECT_EQ(error([&] { dropLogin(store, "B"); }), 15175);
  EXPECT_EQ(error([&] { dropUser(store, "A", "dbo"); }), 15181);
  EXPECT_EQ(error([&] { dropUser(store, "A", "db_owner"); }), 15008);
  dropUser(store, "A", "b");
  EXPECT_EQ(error([&] { dropUser(store, "A", "B"); }), 15008);
  dropLogin(store, "B");
  s.context.database = "A";
  EXPECT_EQ(s.values("SELECT count(*) FROM @.zb_members WHERE uid>=5"), "0");
}

// The guard with a clock that only notes how long it would have waited.
struct NotedGuard {
  std::vector<std::int64_t> pauses;
  std::vector<std::string> checked;  // hashes, one per slow verification
  LoginGuard guard{{[this](std::chrono::milliseconds time) { pauses.push_back(time.count()); },
                    [this](const std::string& hash, std::string_view password) {
                      checked.push_back(hash);
                      return hash == password;
                    }}};
};

TEST_F(LoginTest, FailuresSlowDownUntilASuccess) {
  NotedGuard noted;
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(noted.guard.verify("b", "yanlis", "dogru"));
  EXPECT_EQ(noted.pauses, (std::vector<std::int64_t>{125, 250, 500, 1000, 2000, 4000, 4000}));
  noted.pauses.clear();
  EXPECT_FALSE(noted.guard.verify("c", "yanlis", "dogru"));
  EXPECT_TRUE(noted.pauses.empty());
  EXPECT_TRUE(noted.guard.verify("b", "dogru", "dogru"));
  EXPECT_EQ(noted.pauses, std::vector<std::int64_t>{4000});
  EXPECT_FALSE(noted.guard.verify("b", "yanlis", "dogru"));
  EXPECT_EQ(noted.pauses.size(), 1U);
  // What passed is remembered for this hash alone, and costs neither work nor time.
  const auto work = noted.checked.size();
  EXPECT_TRUE(noted.guard.verify("b", "dogru", "dogru"));
  EXPECT_EQ(noted.checked.size(), work);
  EXPECT_FALSE(noted.guard.verify("b", "dogru", "baska"));
}

TEST_F(LoginTest, AnUnknownNameCostsWhatAWrongPasswordCosts) {
  NotedGuard known, unknown;
  for (int i = 0; i < 6; ++i) {
    EXPECT_FALSE(known.guard.verify("b", "yanlis", hashPassword("dogru")));
    EXPECT_FALSE(unknown.guard.verify("b", "yanlis", ""));
  }
  EXPECT_EQ(known.pauses, unknown.pauses);
  ASSERT_EQ(known.checked.size(), unknown.checked.size());
  // The same algorithm with the same costs, under a salt of its own.
  const auto costs = [](const std::string& hash) {
    return hash.substr(0, hash.rfind('$', hash.rfind('$') - 1));
  };
  EXPECT_EQ(costs(known.checked[0]), costs(unknown.checked[0]));
  EXPECT_TRUE(known.checked[0].starts_with("$argon2id$")) << known.checked[0];
  EXPECT_NE(known.checked[0], known.checked[1]);
  // Nothing that could be guessed lets an unknown name in.
  EXPECT_FALSE(unknown.guard.verify("b", unknown.checked[0], ""));
}

TEST_F(LoginTest, DatabaseSummaries) {
  s.define("CREATE DATABASE A");
  EXPECT_EQ(summarizeDatabases(store).size(), 2U);
  const auto one = summarizeDatabases(store, "a");
  ASSERT_EQ(one.size(), 1U);
  EXPECT_EQ(one[0].name, "A");
  EXPECT_NE(one[0].size.find(" MB"), std::string::npos);
  EXPECT_EQ(error([&] { summarizeDatabases(store, "yok"); }), 15010);
}

}  // namespace engine::test
