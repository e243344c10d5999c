// SET IMPLICIT_TRANSACTIONS as two clients see it, of whom the first commits by hand.
#include "engine/session_fixture.h"

namespace engine::test {

namespace {

class ImplicitTransactions : public SessionTest {
 protected:
  struct Turn {
    char who;  // a commits by hand, b does not wait for locks
    std::string batch, printed;
  };
  void take(const std::vector<Turn>& turns) {
    for (const Turn& turn : turns)
      EXPECT_EQ(run(turn.who == 'a' ? *session : *other, turn.batch), turn.printed) << turn.batch << "\n"
                                                                                    << message;
  }
  std::unique_ptr<Session> other = open("FIRMA");
};

TEST_F(ImplicitTransactions, BeginWithWhatReadsOrChanges) {
  const std::string count = " SELECT @@TRANCOUNT";
  take({
      {'a', "CREATE TABLE T(A INT)", ""},
      {'b', "SET LOCK_TIMEOUT 0", ""},
      {'a', "SET IMPLICIT_TRANSACTIONS ON DECLARE @a INT SET @a=1 PRINT 'x' USE FIRMA" + count, "# x\n0\n"},
      {'a', "COMMIT", "!3902\n"},
      // A reader holds up nobody, and sees at each statement what is committed.
      {'a', "SELECT COUNT(*) FROM T" + count, "0\n1\n"},
      {'b', "INSERT INTO T VALUES(1)", ""},
      {'a', "SELECT A FROM T" + count, "1\n1\n"},
      {'a', "INSERT INTO T VALUES(2)" + count, "1\n"},
      {'b', "INSERT INTO T VALUES(3)", "!1222\n"},
      {'a', "ROLLBACK" + count, "0\n"},
      {'b', "SELECT A FROM T", "1\n"},
      {'a', "UPDATE T SET A=4 COMMIT" + count, "0\n"},
      {'b', "SELECT A FROM T", "4\n"},
      {'a', "SELECT A FROM T COMMIT" + count, "4\n0\n"},
      {'a', "BEGIN TRAN" + count + " COMMIT" + count + " COMMIT" + count, "2\n1\n0\n"},
      {'a', "CREATE TABLE U(A INT)" + count + " ROLLBACK SELECT OBJECT_ID('U')", "1\nNULL\n"},
      {'a', "SELECT A INTO U FROM T" + count + " ROLLBACK SELECT OBJECT_ID('U')", "1\nNULL\n"},
      {'a', "SELECT A FROM T SAVE TRAN x INSERT INTO T VALUES(9) ROLLBACK TRAN x SELECT A FROM T ROLLBACK",
       "4\n4\n"},
  });
}

TEST_F(ImplicitTransactions, ReadersKeepALockWhenTheyAskForIt) {
  take({
      {'a', "CREATE TABLE T(A INT) INSERT INTO T VALUES(4) SET IMPLICIT_TRANSACTIONS ON", ""},
      {'b', "SET LOCK_TIMEOUT 0", ""},
      {'a', "SELECT a.A FROM T a WITH (ROWLOCK, UPDLOCK) JOIN T b ON a.A=b.A", "4\n"},
      {'b', "UPDATE T SET A=5", "!1222\n"},
      {'a', "ROLLBACK SELECT A FROM T WITH (NOLOCK)", "4\n"},
      {'b', "UPDATE T SET A=5", ""},
      {'a', "ROLLBACK SET TRANSACTION ISOLATION LEVEL REPEATABLE READ SELECT A FROM T", "5\n"},
      {'b', "UPDATE T SET A=6", "!1222\n"},
      {'a', "COMMIT SET TRANSACTION ISOLATION LEVEL READ COMMITTED SELECT A FROM T", "5\n"},
      {'b', "UPDATE T SET A=6", ""},
      {'a', "COMMIT", ""},
  });
}

TEST_F(ImplicitTransactions, EndWithTheirSettingAndWithTheSession) {
  take({
      {'a', "CREATE TABLE T(A INT) SET IMPLICIT_TRANSACTIONS ON INSERT INTO T VALUES(1)", ""},
      // What is open stays open.
      {'a', "SET IMPLICIT_TRANSACTIONS OFF SELECT @@TRANCOUNT COMMIT", "1\n"},
      {'a', "INSERT INTO T VALUES(2) SELECT @@TRANCOUNT", "0\n"},
      {'a', "SET IMPLICIT_TRANSACTIONS ON INSERT INTO T VALUES(3)", ""},
  });
  session->reset(false);
  session->execute("USE FIRMA", last);
  take({{'a', "INSERT INTO T VALUES(4) SELECT @@TRANCOUNT SELECT A FROM T", "0\n1\n2\n4\n"}});
}

}  // namespace

}  // namespace engine::test
