// CREATE PROCEDURE and ALTER PROCEDURE.
#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {

StatementPtr SqlParser::createProcedure(bool alter) {
  requireFirst(alter ? "ALTER PROCEDURE" : "CREATE PROCEDURE");
  const int atLine = line();
  const std::size_t first = pos_;
  CreateProcedureStatement create;
  create.alter = alter;
  pos_ += 2;
  create.name = objectName();
  if (create.name.object.starts_with('#')) unsupported("temporary procedure");
  if (isSymbol(';')) unsupported("numbered procedure");
  procedureParameters(create);
  procedureOptions();
  expect("AS");
  inProcedure_ = true;
  statements(create.body, false);
  inProcedure_ = false;
  create.text = text_.substr(tokens_[first].offset);
  return wrap(std::move(create), atLine);
}

// [(] @name [AS] type [= value] [OUT | OUTPUT], ... [)]
void SqlParser::procedureParameters(CreateProcedureStatement& create) {
  const bool bracketed = isSymbol('(') && isKind(TokenKind::Variable, 1);
  if (bracketed) ++pos_;
  if (isKind(TokenKind::Variable)) {
    do {
      ProcedureParameter& parameter = create.parameters.emplace_back();
      parameter.name = variable();
      accept("AS");
      if (isWord("CURSOR")) unsupported("CURSOR");
      Declared declared{{}, create.parameters.size()};
      parameter.type = type(&declared, nullptr);
      if (isWord("VARYING")) unsupported("CURSOR");
      if (acceptSymbol('=')) parameter.value = execValue();
      parameter.output = accept("OUTPUT") || accept("OUT");
      if (isWord("READONLY")) unsupported("READONLY");
    } while (acceptSymbol(','));
  }
  if (bracketed) expectSymbol(')');
}

void SqlParser::procedureOptions() {
  if (accept("WITH")) {
    do {
      if (isWord("ENCRYPTION")) unsupported("WITH ENCRYPTION");
      if (isAnyWord({"EXEC", "EXECUTE"})) unsupported("EXECUTE AS");
      expect("RECOMPILE");  // plans follow the definitions anyhow
    } while (acceptSymbol(','));
  }
  if (isWord("FOR") && isWord("REPLICATION", 1)) unsupported("FOR REPLICATION");
}

}  // namespace engine
