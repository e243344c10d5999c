// DBCC CHECKDB, DBCC CHECKTABLE, KILL and ALTER DATABASE .. SET PAGE_VERIFY: calls of procedures of the
// server's own under other words.
#include "engine/language/sql_parser.h"

namespace engine {

namespace {
constexpr std::string_view options[] = {"ALL_ERRORMSGS", "EXTENDED_LOGICAL_CHECKS", "NO_INFOMSGS",
                                        "TABLOCK",       "PHYSICAL_ONLY",           "DATA_PURITY"};
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

// KILL number
StatementPtr SqlParser::killStatement() {
  const int atLine = line();
  expect("KILL");
  ExecStatement exec;
  exec.procedure.object = "kill";
  if (!isIntegerLiteral()) syntaxError();
  exec.args.emplace_back().value = literal();
  if (isWord("WITH")) unsupported("KILL WITH STATUSONLY");
  return wrap(std::move(exec), atLine);
}

// ALTER DATABASE database SET PAGE_VERIFY CHECKSUM
// ALTER DATABASE database SET DELAYED_DURABILITY = FORCED | DISABLED
StatementPtr SqlParser::alterDatabase() {
  const int atLine = line();
  expect("ALTER");
  expect("DATABASE");
  ExecStatement exec;
  const auto add = [&](const std::string& text) {
    ExecArgument& argument = exec.args.emplace_back();
    argument.value = make(Expr::Kind::Literal);
    argument.value->literal = {LiteralKind::Text, text, -1};
  };
  add(name());
  expect("SET");
  if (isWord("PAGE_VERIFY") && isWord("CHECKSUM", 1)) {
    exec.procedure.object = "alter database page_verify";
    pos_ += 2;
    return wrap(std::move(exec), atLine);
  }
  if (!accept("DELAYED_DURABILITY")) unsupported("ALTER DATABASE");
  expectSymbol('=');
  if (!isWord("FORCED") && !isWord("DISABLED")) unsupported("DELAYED_DURABILITY");
  exec.procedure.object = "alter database delayed_durability";
  add(isWord("FORCED") ? "1" : "0");
  ++pos_;
  return wrap(std::move(exec), atLine);
}

}  // namespace engine
