// Server cursors: opened, scrolled, changed by row, closed.
#include "tds/served.h"

namespace {

using namespace tds::test;

constexpr std::uint16_t cursorOperation = 1, cursorOpen = 2, cursorFetch = 7, cursorOption = 8,
                        cursorClose = 9;
constexpr int first = 1, next = 2, previous = 4, last = 8, absolute = 16, info = 256;
constexpr int update = 1, remove = 2, insert = 4;

class CursorTest : public Served {
 protected:
  CursorTest() : client(server->port()) {
    client.open(0x74000004, "FIRMA");
    client.batch(
        "CREATE TABLE T(ID INT IDENTITY PRIMARY KEY, A VARCHAR(5)) INSERT INTO T VALUES('a') INSERT INTO T "
        "VALUES('b') INSERT INTO T VALUES('c') INSERT INTO T VALUES('d')");
  }
  std::string openOn(const std::string& query) {
    return client.rpc(
        call(cursorOpen, {nullIntParameter("", true), textParameter("", query), intParameter("", 1, true),
                          intParameter("", 4, true), nullIntParameter("", true)}));
  }
  std::string fetch(int kind, int row, int rows) {
    return client.rpc(call(cursorFetch, {handle, intParameter("", kind), intParameter("", row, kind == info),
                                         intParameter("", rows, kind == info)}));
  }
  std::string operate(int kind, int row, const std::vector<std::string>& values = {}) {
    std::vector<std::string> all = {handle, intParameter("", kind), intParameter("", row),
                                    textParameter("", "T")};
    all.insert(all.end(), values.begin(), values.end());
    return client.rpc(call(cursorOperation, all));
  }

  const std::string columns = "columns ID:int4+identity A:varchar(5) ROWSTAT:int4\n";
  static std::string rows(const std::string& text, int count) {
    return text + "doneinproc select " + std::to_string(count) + " more\nstatus 0\ndoneproc\n";
  }
  Client client;
  const std::string handle = intParameter("", 180150001);
};

TEST_F(CursorTest, ScrollsAndChanges) {
  EXPECT_EQ(openOn("SELECT ID, A FROM T ORDER BY ID"),
            columns +
                "doneinproc select more\nstatus 0\nreturn  int4 180150001\nreturn  int4 1\nreturn  int4 4\n"
                "return  int4 4\ndoneproc\n");
  const struct {
    int kind, row, count;
    std::string rows;
    int found;
  } moves[] = {
      {next, 0, 2, "row 1 'a' 1\nrow 2 'b' 1\n", 2},
      {next, 0, 2, "row 3 'c' 1\nrow 4 'd' 1\n", 2},
      {next, 0, 2, "", 0},
      {previous, 0, 2, "row 3 'c' 1\nrow 4 'd' 1\n", 2},
      {first, 0, 1, "row 1 'a' 1\n", 1},
      {previous, 0, 1, "", 0},
      {last, 0, 1, "row 4 'd' 1\n", 1},
      {absolute, 2, 1, "row 2 'b' 1\n", 1},
      {absolute, -2, 3, "row 3 'c' 1\nrow 4 'd' 1\n", 2},
  };
  for (const auto& each : moves)
    EXPECT_EQ(fetch(each.kind, each.row, each.count), rows(columns + each.rows, each.found)) << each.kind;
  EXPECT_EQ(fetch(info, 0, 0), "status 0\nreturn  int4 3\nreturn  int4 4\ndoneproc\n");

  EXPECT_EQ(operate(update, 1, {textParameter("@A", "yeni")}), "doneinproc 1 more\nstatus 0\ndoneproc\n");
  EXPECT_EQ(operate(remove, 2), "doneinproc 1 more\nstatus 0\ndoneproc\n");
  EXPECT_EQ(operate(insert, 0, {textParameter("@A", "e")}), "doneinproc 1 more\nstatus 0\ndoneproc\n");
  EXPECT_EQ(fetch(first, 0, 9),
            rows(columns + "row 1 'a' 1\nrow 2 'b' 1\nrow 3 'yeni' 1\nrow 4 'd' 2\nrow 5 'e' 1\n", 5));
  EXPECT_EQ(client.batch("SELECT A FROM T WHERE ID=3"), "columns A:varchar(5)\nrow 'yeni'\ndone select 1\n");
  EXPECT_NE(operate(update, 4, {textParameter("@A", "x")}).find("error 16934"), std::string::npos);
  EXPECT_NE(operate(update, 9, {textParameter("@A", "x")}).find("error 16931"), std::string::npos);
  EXPECT_EQ(client.rpc(call(cursorOption, {handle, intParameter("", 2), textParameter("", "ad")})),
            "status 0\ndoneproc\n");
  EXPECT_EQ(client.rpc(call(cursorClose, {handle})), "status 0\ndoneproc\n");
  EXPECT_EQ(fetch(next, 0, 1),
            "error 16916/16/1 line 0: A cursor with the given name or handle does not exist.\n"
            "doneinproc more error\ndoneproc error\n");
}

TEST_F(CursorTest, WhatHasNoKeyIsReadOnlyAndParametersAreTaken) {
  const std::string opened = client.rpc(
      call(cursorOpen, {nullIntParameter("", true), textParameter("", "SELECT A FROM T WHERE ID>@p"),
                        intParameter("", 0x1008, true), intParameter("", 4, true), nullIntParameter("", true),
                        textParameter("", "@p int"), intParameter("", 3)}));
  EXPECT_EQ(opened,
            "columns A:varchar(5) ROWSTAT:int4\ndoneinproc select more\nstatus 0\nreturn  int4 180150001\n"
            "return  int4 8\nreturn  int4 1\nreturn  int4 1\ndoneproc\n");
  EXPECT_EQ(fetch(next, 0, 5), rows("columns A:varchar(5) ROWSTAT:int4\nrow 'd' 1\n", 1));
  EXPECT_NE(operate(update, 1, {textParameter("@A", "x")}).find("error 16929"), std::string::npos);
  EXPECT_NE(openOn("UPDATE T SET A='x'").find("error 16937"), std::string::npos);
  EXPECT_NE(openOn("SELECT * FROM YOK").find("error 208"), std::string::npos);
}

}  // namespace
