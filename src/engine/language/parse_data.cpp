// Statements that write rows.
#include "engine/language/sql_parser.h"

namespace engine {

StatementPtr SqlParser::selectNode() {
  int atLine = line();
  mayStore_ = true;
  return wrap(selectStatement(), atLine);
}

StatementPtr SqlParser::insertStatement() {
  int atLine = line();
  InsertStatement insert;
  expect("INSERT");
  if (isWord("TOP")) unsupported("INSERT TOP");
  accept("INTO");
  insert.target = tableName();
  if (isWord("WITH")) tableHints();
  if (isSymbol('(') && !opensQuery()) {
    expectSymbol('(');
    do insert.columns.push_back(std::move(nameParts(4).back()));
    while (acceptSymbol(','));
    expectSymbol(')');
  }
  if (isWord("OUTPUT")) unsupported("OUTPUT");
  if (isAnyWord({"EXEC", "EXECUTE"})) unsupported("INSERT ... EXEC");
  if (accept("DEFAULT")) {
    expect("VALUES");
    insert.defaultValues = true;
  } else if (accept("VALUES")) {
    do insert.values.push_back(valuesRow());
    while (acceptSymbol(','));
  } else {
    insert.select = selectStatement();
  }
  return wrap(std::move(insert), atLine);
}

std::vector<ExprPtr> SqlParser::valuesRow() {
  std::vector<ExprPtr> row;
  expectSymbol('(');
  do row.push_back(valueOrDefault());
  while (acceptSymbol(','));
  expectSymbol(')');
  return row;
}

ExprPtr SqlParser::valueOrDefault() {
  if (!isWord("DEFAULT")) return expression();
  ExprPtr result = make(Expr::Kind::Default);
  ++pos_;
  return result;
}

StatementPtr SqlParser::updateStatement() {
  int atLine = line();
  UpdateStatement update;
  expect("UPDATE");
  if (isWord("STATISTICS")) unsupported("UPDATE STATISTICS");
  if (isWord("TOP")) update.top = topClause(nullptr);
  update.target = tableName();
  tableHints();
  expect("SET");
  do update.set.push_back(assignment());
  while (acceptSymbol(','));
  if (isWord("OUTPUT")) unsupported("OUTPUT");
  if (accept("FROM")) update.from = sources();
  update.where = whereClause();
  queryOptions(update.maxRecursion);
  return wrap(std::move(update), atLine);
}

// column = expr, @v = expr, @v = column = expr; also with += and its kind.
Assignment SqlParser::assignment() {
  Assignment result;
  ExprPtr target;
  if (isKind(TokenKind::Variable)) {
    target = variableExpr();
    result.variable = target->name;
    if (!(isSymbol('=') && isName(1) && isSymbol('=', 2))) {
      result.value = assigned(std::move(target));
      return result;
    }
    expectSymbol('=');
  }
  if (!isName()) syntaxError();
  if (isSymbol('(', 1)) syntaxError(1);
  target = nameOrCall();
  result.column = target->name;
  if (isSymbol('=') && isWord("DEFAULT", 1)) {
    ++pos_;
    result.value = valueOrDefault();
  } else {
    result.value = assigned(std::move(target));
  }
  return result;
}

// The value behind `target =`; `target += x` is target + x.
ExprPtr SqlParser::assigned(ExprPtr target) {
  if (acceptSymbol('=')) return expression();
  Operator op = peekOperator();
  if (op.level < Additive || !isSymbol('=', 1)) syntaxError();
  pos_ += 2;
  ExprPtr value = binary(op.op, std::move(target), expression());
  tallest_ = std::max(tallest_, value->height);
  return value;
}

StatementPtr SqlParser::deleteStatement() {
  int atLine = line();
  DeleteStatement remove;
  expect("DELETE");
  if (isWord("TOP")) remove.top = topClause(nullptr);
  accept("FROM");
  remove.target = tableName();
  tableHints();
  if (isWord("OUTPUT")) unsupported("OUTPUT");
  if (accept("FROM")) remove.from = sources();
  remove.where = whereClause();
  queryOptions(remove.maxRecursion);
  return wrap(std::move(remove), atLine);
}

StatementPtr SqlParser::truncateStatement() {
  int atLine = line();
  expect("TRUNCATE");
  expect("TABLE");
  return wrap(TruncateStatement{objectName()}, atLine);
}

}  // namespace engine
