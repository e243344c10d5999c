// DBCC CHECKDB, DBCC CHECKTABLE and ALTER DATABASE .. SET PAGE_VERIFY: calls of procedures of the server's
// own under other words.
#include "engine/language/sql_parser.h"

namespace engine {

namespace {
constexpr std::string_view options[] = {"ALL_ERRORMSGS",  "EXTENDED_LOGICAL_CHECKS", "NO_INFOMSGS", "TABLOCK",
                                        "PHYSICAL_ONLY", "DATA_PURITY"};
}

// DBCC CHECKDB [(database | 0 [, NOINDEX])] [WITH option, ...]
StatementPtr SqlParser::dbccStatement() {
  const int atLine = line();
  expect("DBCC");
  ExecStatement exec;
  const bool table = isWord("CHECKTABLE");
  if (!table && !isWord("CHECKDB")) unsupported("DBCC " + std::string(token(0).source));
  ++pos_;
  exec.procedure.object = table ? "dbcc checktable" : "dbcc checkdb";
  if (acceptSymbol('(')) {
    execArguments(exec);
    expectSymbol(')');
  }
  if (!accept("WITH")) return wrap(std::move(exec), atLine);
  do {
    bool known = false;
    for (const std::string_view option : options) known = known || isWord(option);
    if (!known) unsupported("DBCC WITH " + std::string(token(0).source));
    if (isWord("NO_INFOMSGS")) {
      ExecArgument& quiet = exec.args.emplace_back();
      quiet.name = "@no_infomsgs";
      quiet.value = make(Expr::Kind::Literal);
      quiet.value->literal = {LiteralKind::Text, "1", -1};
    }
    ++pos_;
  } while (acceptSymbol(','));
  return wrap(std::move(exec), atLine);
}

// ALTER DATABASE database SET PAGE_VERIFY CHECKSUM
StatementPtr SqlParser::alterDatabase() {
  const int atLine = line();
  expect("ALTER");
  expect("DATABASE");
  ExecStatement exec;
  exec.procedure.object = "alter database page_verify";
  ExecArgument& database = exec.args.emplace_back();
  database.value = make(Expr::Kind::Literal);
  database.value->literal = {LiteralKind::Text, name(), -1};
  expect("SET");
  if (!isWord("PAGE_VERIFY") || !isWord("CHECKSUM", 1)) unsupported("ALTER DATABASE");
  pos_ += 2;
  return wrap(std::move(exec), atLine);
}

}  // namespace engine
