// CREATE TABLE and ALTER TABLE.
#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {

StatementPtr SqlParser::createTable() {
  int atLine = line();
  expect("CREATE");
  expect("TABLE");
  CreateTableStatement create;
  create.name = objectName();
  expectSymbol('(');
  do {
    if (isSymbol(')') && !create.columns.empty()) break;  // a comma behind the last element is allowed
    tableElement(create.columns, create.constraints);
  } while (acceptSymbol(','));
  expectSymbol(')');
  storageOptions();
  return wrap(std::move(create), atLine);
}

StatementPtr SqlParser::alterTable() {
  int atLine = line();
  expect("ALTER");
  expect("TABLE");
  AlterTableStatement alter;
  alter.name = objectName();
  const bool told = isWord("WITH") && isAnyWord({"CHECK", "NOCHECK"}, 1);
  alter.checkRows = told ? isWord("CHECK", 1) : isWord("ADD");
  if (told) pos_ += 2;
  if (accept("ADD")) {
    do tableElement(alter.columns, alter.constraints);
    while (acceptSymbol(','));
  } else if (accept("ALTER")) {
    expect("COLUMN");
    alter.action = AlterTableStatement::Action::AlterColumn;
    alter.columns.push_back(alteredColumn());
  } else if (accept("DROP")) {
    alterDrop(alter);
  } else if (isAnyWord({"CHECK", "NOCHECK"}) && isWord("CONSTRAINT", 1)) {
    alterSwitch(alter);
  } else if (isName()) {
    unsupported("ALTER TABLE ... " + upperAscii(token().value()));
  } else {
    syntaxError();
  }
  return wrap(std::move(alter), atLine);
}

// CHECK | NOCHECK CONSTRAINT ALL | name, name
void SqlParser::alterSwitch(AlterTableStatement& alter) {
  using Action = AlterTableStatement::Action;
  alter.action = isWord("CHECK") ? Action::EnableConstraint : Action::DisableConstraint;
  pos_ += 2;
  if (accept("ALL")) return;
  do alter.dropped.push_back(name());
  while (acceptSymbol(','));
}

ColumnDefinition SqlParser::alteredColumn() {
  ColumnDefinition column;
  column.line = line();
  column.name = name();
  if (isWord("ADD") || isWord("DROP")) unsupported("ALTER COLUMN ... " + upperAscii(token().source));
  Declared declared{column.name, 1};
  column.type = type(&declared, &column.typeWord);
  if (accept("COLLATE")) column.collation = name();
  if (isWord("NULL") || (isWord("NOT") && isWord("NULL", 1))) {
    column.nullable = !accept("NOT");
    expect("NULL");
  }
  return column;
}

// DROP COLUMN a, b, COLUMN c; DROP [CONSTRAINT] x, y.
void SqlParser::alterDrop(AlterTableStatement& alter) {
  alter.action = AlterTableStatement::Action::DropConstraint;
  if (accept("COLUMN"))
    alter.action = AlterTableStatement::Action::DropColumn;
  else
    accept("CONSTRAINT");
  do {
    bool column = alter.action == AlterTableStatement::Action::DropColumn;
    if (isWord(column ? "CONSTRAINT" : "COLUMN")) unsupported("DROP of columns and constraints at once");
    accept(column ? "COLUMN" : "CONSTRAINT");
    alter.dropped.push_back(name());
  } while (acceptSymbol(','));
}

void SqlParser::tableElement(std::vector<ColumnDefinition>& columns,
                             std::vector<TableConstraint>& constraints) {
  if (startsTableConstraint())
    constraints.push_back(tableConstraint());
  else
    columns.push_back(columnDefinition(constraints, columns.size() + 1));
}

// ---- columns ----

ColumnDefinition SqlParser::columnDefinition(std::vector<TableConstraint>& constraints,
                                             std::size_t position) {
  ColumnDefinition column;
  column.line = line();
  column.name = name();
  if (isWord("AS")) unsupported("computed column");
  Declared declared{column.name, position};
  column.type = type(&declared, &column.typeWord);
  while (columnAttribute(column, constraints)) {
  }
  return column;
}

// One attribute, in whatever order they come; false when none follows.
bool SqlParser::columnAttribute(ColumnDefinition& column, std::vector<TableConstraint>& constraints) {
  if (accept("COLLATE")) {
    column.collation = name();
    return true;
  }
  if (isWord("IDENTITY")) {
    identityClause(column);
    return true;
  }
  if (isWord("ROWGUIDCOL")) unsupported("ROWGUIDCOL");
  if (!accept("CONSTRAINT")) return columnConstraint(column, constraints, {});
  std::string constraintName = name();
  if (!columnConstraint(column, constraints, std::move(constraintName))) syntaxError();
  return true;
}

bool SqlParser::columnConstraint(ColumnDefinition& column, std::vector<TableConstraint>& constraints,
                                 std::string constraintName) {
  if (isWord("NULL") || isWord("NOT")) {
    column.nullable = !accept("NOT");
    expect("NULL");
  } else if (isWord("DEFAULT")) {
    columnDefault(column, std::move(constraintName));
  } else if (isAnyWord({"PRIMARY", "UNIQUE"})) {
    columnKey(column, std::move(constraintName));
  } else if (isWord("CHECK")) {
    TableConstraint& check = constraints.emplace_back();
    check.name = std::move(constraintName);
    checkConstraint(check);
  } else if (isAnyWord({"REFERENCES", "FOREIGN"})) {
    if (accept("FOREIGN")) expect("KEY");
    TableConstraint& key = constraints.emplace_back();
    key.kind = TableConstraint::Kind::ForeignKey;
    key.name = std::move(constraintName);
    key.columns.push_back({column.name, false});
    referencesClause(key);
  } else {
    return false;
  }
  return true;
}

void SqlParser::columnDefault(ColumnDefinition& column, std::string defaultName) {
  expect("DEFAULT");
  std::size_t first = pos_;
  column.defaultValue = expression();
  column.defaultText = sourceSince(first);
  column.defaultName = std::move(defaultName);
  if (isWord("WITH") && isWord("VALUES", 1)) {
    pos_ += 2;
    column.withValues = true;
  }
}

void SqlParser::columnKey(ColumnDefinition& column, std::string keyName) {
  if (accept("PRIMARY")) {
    expect("KEY");
    column.primaryKey = true;
  } else {
    expect("UNIQUE");
    column.unique = true;
  }
  column.keyName = std::move(keyName);
  clusteredWord(column.clustered, column.nonclustered);
  storageOptions();
}

void SqlParser::identityClause(ColumnDefinition& column) {
  expect("IDENTITY");
  column.identity = true;
  if (acceptSymbol('(')) {
    column.seed = integer();
    expectSymbol(',');
    column.step = integer();
    expectSymbol(')');
  }
  if (isWord("NOT") && isWord("FOR", 1)) {
    pos_ += 2;
    expect("REPLICATION");
  }
}

// ---- constraints ----

bool SqlParser::startsTableConstraint() const {
  return isAnyWord({"CONSTRAINT", "PRIMARY", "UNIQUE", "DEFAULT", "CHECK", "FOREIGN"});
}

TableConstraint SqlParser::tableConstraint() {
  TableConstraint constraint;
  if (accept("CONSTRAINT")) constraint.name = name();
  if (isAnyWord({"PRIMARY", "UNIQUE"})) {
    keyConstraint(constraint);
  } else if (accept("DEFAULT")) {
    constraint.kind = TableConstraint::Kind::Default;
    std::size_t first = pos_;
    constraint.value = expression();
    constraint.text = sourceSince(first);
    expect("FOR");
    constraint.forColumn = name();
  } else if (isWord("CHECK")) {
    checkConstraint(constraint);
  } else {
    expect("FOREIGN");
    expect("KEY");
    constraint.kind = TableConstraint::Kind::ForeignKey;
    for (std::string& column : bracketedNames()) constraint.columns.push_back({std::move(column), false});
    referencesClause(constraint);
  }
  return constraint;
}

void SqlParser::keyConstraint(TableConstraint& constraint) {
  if (accept("PRIMARY")) {
    expect("KEY");
  } else {
    expect("UNIQUE");
    constraint.kind = TableConstraint::Kind::Unique;
  }
  clusteredWord(constraint.clustered, constraint.nonclustered);
  constraint.columns = indexColumns();
  storageOptions();
}

void SqlParser::checkConstraint(TableConstraint& constraint) {
  expect("CHECK");
  constraint.kind = TableConstraint::Kind::Check;
  notForReplication();
  expectSymbol('(');
  std::size_t first = pos_;
  constraint.value = condition();
  constraint.text = sourceSince(first);
  expectSymbol(')');
}

void SqlParser::referencesClause(TableConstraint& constraint) {
  expect("REFERENCES");
  constraint.references = objectName();
  if (isSymbol('(')) constraint.referencedColumns = bracketedNames();
  while (isWord("ON") && isAnyWord({"DELETE", "UPDATE"}, 1)) {
    KeyAction& action = isWord("DELETE", 1) ? constraint.onDelete : constraint.onUpdate;
    pos_ += 2;
    action = keyAction();
  }
  notForReplication();
}

KeyAction SqlParser::keyAction() {
  if (accept("CASCADE")) return KeyAction::Cascade;
  if (accept("SET")) {
    const bool null = isWord("NULL");
    if (!null && !isWord("DEFAULT")) syntaxError();
    ++pos_;
    return null ? KeyAction::SetNull : KeyAction::SetDefault;
  }
  expect("NO");
  expect("ACTION");
  return KeyAction::NoAction;
}

// There is no replication, so that it says nothing.
void SqlParser::notForReplication() {
  if (isWord("NOT") && isWord("FOR", 1) && isWord("REPLICATION", 2)) pos_ += 3;
}

void SqlParser::clusteredWord(bool& clustered, bool& nonclustered) {
  if (accept("CLUSTERED"))
    clustered = true;
  else if (accept("NONCLUSTERED"))
    nonclustered = true;
}

std::vector<IndexColumn> SqlParser::indexColumns() {
  std::vector<IndexColumn> columns;
  expectSymbol('(');
  do {
    IndexColumn& column = columns.emplace_back();
    column.name = name();
    column.descending = accept("DESC");
    if (!column.descending) accept("ASC");
  } while (acceptSymbol(','));
  expectSymbol(')');
  return columns;
}

// How pages are filled and where they lie has no meaning here; IGNORE_DUP_KEY would have one.
void SqlParser::storageOptions() {
  if (isWord("WITH") && isSymbol('(', 1)) {
    for (std::size_t ahead = 2; !isSymbol(')', ahead) && !isKind(TokenKind::End, ahead); ++ahead)
      if (isWord("IGNORE_DUP_KEY", ahead) && isWord("ON", ahead + 2)) unsupported("IGNORE_DUP_KEY");
    ++pos_;
    skipBrackets();
  } else if (isWord("WITH") && isAnyWord({"FILLFACTOR", "PAD_INDEX", "STATISTICS_NORECOMPUTE"}, 1)) {
    do {
      pos_ += 2;
      if (acceptSymbol('=')) integer();
    } while (isSymbol(',') && isAnyWord({"FILLFACTOR", "PAD_INDEX", "STATISTICS_NORECOMPUTE"}, 1));
  } else if (isWord("WITH") && isWord("IGNORE_DUP_KEY", 1)) {
    unsupported("IGNORE_DUP_KEY");
  }
  while ((isWord("ON") || isWord("TEXTIMAGE_ON")) && (isName(1) || isText(1) || isWord("PRIMARY", 1))) {
    markStructural(pos_, pos_ + 2);
    pos_ += 2;
  }
}

}  // namespace engine
