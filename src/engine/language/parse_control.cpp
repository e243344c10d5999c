// Control of flow, messages and transactions.
#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {

StatementPtr SqlParser::beginStatement() {
  if (isAnyWord({"TRAN", "TRANSACTION"}, 1)) return transaction(TransactionAction::Begin, true);
  if (isWord("TRY", 1)) return tryStatement();
  if (isWord("CATCH", 1)) syntaxError(1);
  if (isWord("DISTRIBUTED", 1)) unsupported("BEGIN DISTRIBUTED");
  return blockStatement();
}

StatementPtr SqlParser::blockStatement() {
  Nesting nesting(*this, Heavy);
  int atLine = line();
  BlockStatement block;
  expect("BEGIN");
  statements(block.body, true);
  if (block.body.empty()) syntaxError();
  expect("END");
  return wrap(std::move(block), atLine);
}

// BEGIN TRY .. END TRY BEGIN CATCH .. END CATCH, with nothing in between. The CATCH may be empty.
StatementPtr SqlParser::tryStatement() {
  Nesting nesting(*this, Heavy);
  int atLine = line();
  TryStatement result;
  pos_ += 2;
  statements(result.body, true);
  if (result.body.empty()) syntaxError();
  for (const std::string_view word : {"END", "TRY", "BEGIN", "CATCH"}) expect(word);
  ++catches_;
  statements(result.handler, true);
  --catches_;
  expect("END");
  expect("CATCH");
  return wrap(std::move(result), atLine);
}

StatementPtr SqlParser::ifStatement() {
  int atLine = line();
  IfStatement result;
  expect("IF");
  result.condition = condition();
  result.then = nestedStatement();
  std::size_t semicolons = 0;
  while (isSymbol(';', semicolons)) ++semicolons;
  if (isWord("ELSE", semicolons)) {
    pos_ += semicolons + 1;
    result.otherwise = nestedStatement();
  }
  return wrap(std::move(result), atLine);
}

StatementPtr SqlParser::whileStatement() {
  int atLine = line();
  WhileStatement result;
  expect("WHILE");
  result.condition = condition();
  ++loops_;
  result.body = nestedStatement();
  --loops_;
  return wrap(std::move(result), atLine);
}

StatementPtr SqlParser::breakStatement() {
  if (loops_ == 0) fail(135, "Cannot use a BREAK statement outside the scope of a WHILE statement.");
  int atLine = line();
  ++pos_;
  return wrap(BreakStatement{}, atLine);
}

StatementPtr SqlParser::continueStatement() {
  if (loops_ == 0) fail(136, "Cannot use a CONTINUE statement outside the scope of a WHILE statement.");
  int atLine = line();
  ++pos_;
  return wrap(ContinueStatement{}, atLine);
}

StatementPtr SqlParser::returnStatement() {
  int atLine = line();
  expect("RETURN");
  bool value = isKind(TokenKind::Literal) || isKind(TokenKind::Variable) ||
               isKind(TokenKind::GlobalVariable) || isSymbol('-') || isSymbol('+') ||
               (isSymbol('(') && !opensQuery()) || isAnyWord({"NULL", "CASE", "CONVERT"}) ||
               (isName() && isSymbol('(', 1));
  if (value && !inProcedure_)
    fail(178, "A RETURN statement with a return value cannot be used in this context.");
  ReturnStatement result;
  if (value) result.value = expression();
  return wrap(std::move(result), atLine);
}

StatementPtr SqlParser::printStatement() {
  int atLine = line();
  expect("PRINT");
  return wrap(PrintStatement{expression()}, atLine);
}

StatementPtr SqlParser::raiserrorStatement() {
  int atLine = line();
  RaiserrorStatement raise;
  expect("RAISERROR");
  if (isKind(TokenKind::Literal)) unsupported("RAISERROR without brackets");
  expectSymbol('(');
  raise.args = expressions();
  expectSymbol(')');
  if (raise.args.size() < 3) syntaxError();
  if (accept("WITH")) {
    do {
      if (!isAnyWord({"LOG", "NOWAIT", "SETERROR"})) syntaxError();
      raise.setError = raise.setError || isWord("SETERROR");
      ++pos_;
    } while (acceptSymbol(','));
  }
  return wrap(std::move(raise), atLine);
}

// Without arguments it throws what the CATCH around it has caught.
StatementPtr SqlParser::throwStatement() {
  int atLine = line();
  expect("THROW");
  const bool again = !isKind(TokenKind::Literal) && !isKind(TokenKind::Variable);
  if (again && catches_ > 0) return wrap(ThrowStatement{}, atLine);
  if (again)
    fail(10704,
         "To rethrow an error, a THROW statement must be used inside a CATCH block. Insert the THROW "
         "statement inside a CATCH block, or add error parameters to the THROW statement.");
  ThrowStatement result;
  result.number = constantOrVariable(false);
  expectSymbol(',');
  result.message = constantOrVariable(true);
  expectSymbol(',');
  result.state = constantOrVariable(false);
  return wrap(std::move(result), atLine);
}

ExprPtr SqlParser::constantOrVariable(bool text) {
  if (isKind(TokenKind::Variable)) return variableExpr();
  if (text ? !isText() : !isIntegerLiteral()) syntaxError();
  return literal();
}

// ---- transactions ----

StatementPtr SqlParser::commitStatement() {
  return transaction(TransactionAction::Commit, false);
}
StatementPtr SqlParser::rollbackStatement() {
  return transaction(TransactionAction::Rollback, false);
}
StatementPtr SqlParser::saveStatement() {
  return transaction(TransactionAction::Save, true);
}

StatementPtr SqlParser::transaction(TransactionAction action, bool wordNeeded) {
  int atLine = line();
  TransactionStatement result;
  result.action = action;
  ++pos_;
  if (isAnyWord({"TRAN", "TRANSACTION"})) {
    ++pos_;
    if (isKind(TokenKind::Variable))
      unsupported("transaction name in a variable");
    else if (isName())
      result.name = name();
    else if (action == TransactionAction::Save)
      syntaxError();
  } else if (wordNeeded) {
    syntaxError();
  } else {
    accept("WORK");
  }
  return wrap(std::move(result), atLine);
}

StatementPtr SqlParser::useStatement() {
  int atLine = line();
  if (inProcedure_) fail(154, "a USE database statement is not allowed in a procedure, function or trigger.");
  expect("USE");
  return wrap(UseStatement{name()}, atLine);
}

}  // namespace engine
