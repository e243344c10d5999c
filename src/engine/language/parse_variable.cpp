// DECLARE, SET and EXEC.
#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {

StatementPtr SqlParser::declareStatement() {
  int atLine = line();
  DeclareStatement declare;
  expect("DECLARE");
  if (isName()) unsupported("DECLARE CURSOR");
  do {
    if (isKind(TokenKind::Variable) && isWord("TABLE", isWord("AS", 1) ? 2 : 1)) {
      declare.tables.push_back(tableVariable());
      continue;
    }
    VariableDeclaration& declaration = declare.variables.emplace_back();
    declaration.name = variable();
    accept("AS");
    Declared declared{{}, declare.variables.size()};
    std::string word;
    declaration.type = type(&declared, &word);
    if (equalsKeyword(word, "TEXT") || equalsKeyword(word, "NTEXT"))
      fail(2739, "The text, ntext, and image data types are invalid for local variables.");
    if (acceptSymbol('=')) declaration.value = expression();
  } while (acceptSymbol(','));
  return wrap(std::move(declare), atLine);
}

// @t TABLE (columns and keys)
CreateTableStatement SqlParser::tableVariable() {
  const std::size_t first = pos_;
  CreateTableStatement create;
  create.name = tableName();
  accept("AS");
  expect("TABLE");
  expectSymbol('(');
  do {
    if (isSymbol(')') && !create.columns.empty()) break;
    if (isWord("CONSTRAINT")) syntaxError();  // nothing in a table variable has a name
    tableElement(create.columns, create.constraints);
  } while (acceptSymbol(','));
  expectSymbol(')');
  markStructural(first, pos_);
  return create;
}

StatementPtr SqlParser::setVariable() {
  int atLine = line();
  ExprPtr target = variableExpr();
  SetVariableStatement set;
  set.name = target->name;
  if (isSymbol('.')) unsupported("method call on a variable");
  if (isSymbol('=') && isWord("CURSOR", 1)) unsupported("CURSOR");
  set.value = assigned(std::move(target));
  return wrap(std::move(set), atLine);
}

// SET @v = ..; SET NOCOUNT, ANSI_NULLS ON; SET IDENTITY_INSERT t ON; SET DATEFORMAT dmy ...
StatementPtr SqlParser::setStatement() {
  int atLine = line();
  expect("SET");
  if (isKind(TokenKind::Variable)) return setVariable();
  if (!isKind(TokenKind::Word)) syntaxError();
  std::vector<SetOptionStatement> options;
  do {
    if (!isKind(TokenKind::Word)) syntaxError();
    options.emplace_back().option = upperAscii(tokens_[pos_++].source);
  } while (acceptSymbol(','));
  SetOptionStatement& option = options[0];
  if (option.option == "IDENTITY_INSERT") {
    option.table = objectName();
  } else if (option.option == "STATISTICS") {
    option.option += " " + upperAscii(name());
  } else if (option.option == "TRANSACTION") {
    expect("ISOLATION");
    expect("LEVEL");
    option.option += " ISOLATION LEVEL";
  }
  std::string value = optionValue();
  BlockStatement block;
  for (SetOptionStatement& each : options) {
    each.value = value;
    block.body.push_back(wrap(std::move(each), atLine));
  }
  if (block.body.size() == 1) return std::move(block.body[0]);
  return wrap(std::move(block), atLine);
}

// One word, number or text; READ COMMITTED and its kind are two words.
std::string SqlParser::optionValue() {
  if (isKind(TokenKind::Variable)) unsupported("SET option from a variable");
  std::string value = isSymbol('-') ? "-" : "";
  if (!value.empty()) ++pos_;
  bool reads = isWord("READ") || (isWord("REPEATABLE") && isWord("READ", 1));
  bool known = isName() || isKind(TokenKind::Literal) || isAnyWord({"ON", "OFF"}) || reads;
  if (!known) syntaxError();
  if (isKind(TokenKind::Literal)) markStructural(pos_, pos_ + 1);
  value += upperAscii(tokens_[pos_++].value());
  if (reads) {
    if (!isAnyWord({"COMMITTED", "UNCOMMITTED", "READ"})) syntaxError();
    value += " " + upperAscii(tokens_[pos_++].value());
  }
  return value;
}

// ---- procedures ----

StatementPtr SqlParser::execStatement() {
  int atLine = line();
  ++pos_;
  if (acceptSymbol('(')) {
    ExecStatement exec;
    exec.text = expression();
    expectSymbol(')');
    return wrap(std::move(exec), atLine);
  }
  if (!isKind(TokenKind::Variable)) return procedureCall();
  if (!isSymbol('=', 1)) unsupported("EXEC of a variable");
  std::string returnVariable = variable();
  expectSymbol('=');
  StatementPtr call = procedureCall();
  std::get<ExecStatement>(call->node).returnVariable = std::move(returnVariable);
  return call;
}

StatementPtr SqlParser::procedureCall() {
  ExecStatement exec;
  int atLine = line();
  exec.procedure = objectName();
  execArguments(exec);
  if (isWord("WITH") && isWord("RECOMPILE", 1)) pos_ += 2;
  return wrap(std::move(exec), atLine);
}

void SqlParser::execArguments(ExecStatement& exec) {
  bool any = isKind(TokenKind::Literal) || isKind(TokenKind::Variable) || isKind(TokenKind::GlobalVariable) ||
             isSymbol('-') || isSymbol('+') || isName() || isAnyWord({"NULL", "DEFAULT"});
  if (!any) return;
  do {
    ExecArgument& argument = exec.args.emplace_back();
    if (isKind(TokenKind::Variable) && isSymbol('=', 1)) {
      argument.name = variable();
      expectSymbol('=');
    }
    if (!accept("DEFAULT")) argument.value = execValue();
    if (!isAnyWord({"OUTPUT", "OUT"})) continue;
    if (!argument.value || argument.value->kind != Expr::Kind::Variable)
      fail(179, "Cannot use the OUTPUT option when passing a constant to a stored procedure.");
    argument.output = true;
    ++pos_;
  } while (acceptSymbol(','));
}

// A literal, a signed number, a variable, NULL, or a bare word that stands for a text.
ExprPtr SqlParser::execValue() {
  if (isName()) {
    ExprPtr word = make(Expr::Kind::Literal);
    word->literal = {LiteralKind::Text, name(), -1};
    return word;
  }
  bool sign = isSymbol('-') || isSymbol('+');
  bool number = isKind(TokenKind::Literal, sign ? 1 : 0) && !isText(sign ? 1 : 0);
  if (sign && !number) syntaxError();
  if (sign) return signedOperand(isSymbol('-') ? UnaryOp::Minus : UnaryOp::Plus);
  if (isWord("NULL")) return wordOperand();
  if (isKind(TokenKind::Variable) || isKind(TokenKind::GlobalVariable)) return variableExpr();
  if (!isKind(TokenKind::Literal)) syntaxError();
  return literal();
}

}  // namespace engine
