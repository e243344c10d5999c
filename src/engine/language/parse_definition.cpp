// CREATE, ALTER and DROP of everything but tables.
#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {

StatementPtr SqlParser::createStatement() {
  std::size_t first = pos_;
  StatementPtr result;
  if (isWord("TABLE", 1))
    result = createTable();
  else if (isWord("VIEW", 1))
    result = createView(false);
  else if (isWord("TRIGGER", 1))
    result = createTrigger(false);
  else if (isAnyWord({"PROC", "PROCEDURE"}, 1))
    result = createProcedure(false);
  else if (isWord("DATABASE", 1))
    result = createDatabase();
  else if (isAnyWord({"UNIQUE", "CLUSTERED", "NONCLUSTERED", "INDEX"}, 1))
    result = createIndex();
  else if (isKind(TokenKind::Word, 1))
    unsupported("CREATE " + upperAscii(token(1).source));
  else
    syntaxError(1);
  markStructural(first, pos_);
  return result;
}

StatementPtr SqlParser::alterStatement() {
  std::size_t first = pos_;
  StatementPtr result;
  if (isWord("TABLE", 1))
    result = alterTable();
  else if (isWord("VIEW", 1))
    result = createView(true);
  else if (isWord("TRIGGER", 1))
    result = createTrigger(true);
  else if (isAnyWord({"PROC", "PROCEDURE"}, 1))
    result = createProcedure(true);
  else if (isWord("DATABASE", 1))
    result = alterDatabase();
  else if (isKind(TokenKind::Word, 1))
    unsupported("ALTER " + upperAscii(token(1).source));
  else
    syntaxError(1);
  markStructural(first, pos_);
  return result;
}

StatementPtr SqlParser::dropStatement() {
  static constexpr std::pair<std::string_view, ObjectKind> kinds[] = {
      {"TABLE", ObjectKind::Table},      {"VIEW", ObjectKind::View},
      {"TRIGGER", ObjectKind::Trigger},  {"INDEX", ObjectKind::Index},
      {"PROC", ObjectKind::Procedure},   {"PROCEDURE", ObjectKind::Procedure},
      {"DATABASE", ObjectKind::Database}};
  int atLine = line();
  DropStatement drop;
  bool found = false;
  for (const auto& [word, kind] : kinds) {
    if (!isWord(word, 1)) continue;
    drop.kind = kind;
    found = true;
  }
  if (!found && !isKind(TokenKind::Word, 1)) syntaxError(1);
  if (!found) unsupported("DROP " + upperAscii(token(1).source));
  pos_ += 2;
  do {
    if (drop.kind == ObjectKind::Index) {
      drop.names.push_back(droppedIndex());
    } else if (drop.kind == ObjectKind::Database) {
      ObjectName& database = drop.names.emplace_back();
      database.line = line();
      database.object = name();
    } else {
      drop.names.push_back(objectName());
    }
  } while (acceptSymbol(','));
  return wrap(std::move(drop), atLine);
}

// `table.index` or `index ON table`; the table becomes the owner.
ObjectName SqlParser::droppedIndex() {
  ObjectName result;
  result.line = line();
  std::vector<std::string> parts = nameParts(4);
  result.object = std::move(parts.back());
  parts.pop_back();
  if (accept("ON")) {
    if (!parts.empty()) syntaxError();
    parts = nameParts(3);
  } else if (parts.empty()) {
    fail(159, "Must specify the table name and index name for the DROP INDEX statement.");
  }
  result.owner = std::move(parts.back());
  if (parts.size() == 3) result.database = std::move(parts[0]);
  if (result.owner.starts_with('#')) result.database = temporaryDatabase;
  return result;
}

StatementPtr SqlParser::createIndex() {
  int atLine = line();
  CreateIndexStatement create;
  bool nonclustered = false;
  expect("CREATE");
  create.unique = accept("UNIQUE");
  clusteredWord(create.clustered, nonclustered);
  expect("INDEX");
  create.name = name();
  expect("ON");
  create.table = objectName();
  create.columns = indexColumns();
  if (isWord("INCLUDE") && isSymbol('(', 1)) {
    ++pos_;
    bracketedNames();
  }
  if (isWord("WHERE")) unsupported("CREATE INDEX ... WHERE");
  storageOptions();
  return wrap(std::move(create), atLine);
}

// ---- views and triggers: the rest of the batch is theirs ----

void SqlParser::requireFirst(std::string_view what) const {
  for (std::size_t i = 0; i < pos_; ++i)
    if (tokens_[i].source != ";")
      fail(111, "'" + std::string(what) + "' must be the first statement in a query batch.");
}

StatementPtr SqlParser::createView(bool alter) {
  requireFirst(alter ? "ALTER VIEW" : "CREATE VIEW");
  int atLine = line();
  std::size_t first = pos_;
  CreateViewStatement create;
  create.alter = alter;
  pos_ += 2;
  create.name = objectName();
  if (create.name.object.starts_with('#'))
    fail(4103, "'" + create.name.object + "': Temporary views are not allowed.");
  if (isSymbol('(')) create.columns = bracketedNames();
  if (accept("WITH")) {
    do {
      if (!isAnyWord({"ENCRYPTION", "SCHEMABINDING", "VIEW_METADATA"})) syntaxError();
      ++pos_;
    } while (acceptSymbol(','));
  }
  expect("AS");
  std::vector<CommonTable> with;
  if (isWord("WITH")) with = commonTables();
  create.select = selectStatement();
  create.select->with = std::move(with);
  if (isWord("WITH") && isWord("CHECK", 1)) {
    pos_ += 2;
    expect("OPTION");
    create.checkOption = true;
  }
  while (acceptSymbol(';')) {
  }
  if (!atEnd()) syntaxError();
  create.text = text_.substr(tokens_[first].offset);
  return wrap(std::move(create), atLine);
}

StatementPtr SqlParser::createTrigger(bool alter) {
  requireFirst(alter ? "ALTER TRIGGER" : "CREATE TRIGGER");
  int atLine = line();
  std::size_t first = pos_;
  CreateTriggerStatement create;
  create.alter = alter;
  pos_ += 2;
  create.name = objectName();
  expect("ON");
  if (isWord("ALL") || isWord("DATABASE")) unsupported("CREATE TRIGGER ON " + upperAscii(token().source));
  create.table = objectName();
  if (create.table.object.starts_with('#')) unsupported("CREATE TRIGGER on a temporary table");
  if (accept("WITH")) expect("ENCRYPTION");
  triggerEvents(create);
  expect("AS");
  statements(create.body, false);
  if (create.body.empty()) syntaxError();
  create.text = text_.substr(tokens_[first].offset);
  return wrap(std::move(create), atLine);
}

void SqlParser::triggerEvents(CreateTriggerStatement& trigger) {
  if (isWord("INSTEAD")) unsupported("INSTEAD OF");
  if (!accept("FOR")) expect("AFTER");
  do {
    if (accept("INSERT"))
      trigger.onInsert = true;
    else if (accept("UPDATE"))
      trigger.onUpdate = true;
    else if (accept("DELETE"))
      trigger.onDelete = true;
    else
      syntaxError();
  } while (acceptSymbol(','));
  if (isWord("NOT") && isWord("FOR", 1) && isWord("REPLICATION", 2)) pos_ += 3;
}

// ---- databases ----

StatementPtr SqlParser::createDatabase() {
  int atLine = line();
  CreateDatabaseStatement create;
  pos_ += 2;
  create.name = name();
  if (accept("ON")) {
    accept("PRIMARY");
    create.data = databaseFiles();
  }
  if (isWord("LOG") && isWord("ON", 1)) {
    pos_ += 2;
    create.log = databaseFiles();
  }
  if (accept("COLLATE")) create.collation = name();
  if (accept("FOR")) {
    if (isWord("LOAD")) unsupported("FOR LOAD");
    expect("ATTACH");
    create.forAttach = true;
  }
  return wrap(std::move(create), atLine);
}

std::vector<DatabaseFile> SqlParser::databaseFiles() {
  std::vector<DatabaseFile> files;
  do {
    if (isWord("FILEGROUP")) unsupported("FILEGROUP");
    files.push_back(databaseFile());
  } while (acceptSymbol(','));
  return files;
}

DatabaseFile SqlParser::databaseFile() {
  static constexpr std::pair<std::string_view, std::string DatabaseFile::*> keys[] = {
      {"NAME", &DatabaseFile::logicalName},
      {"FILENAME", &DatabaseFile::path},
      {"SIZE", &DatabaseFile::size},
      {"MAXSIZE", &DatabaseFile::maxSize},
      {"FILEGROWTH", &DatabaseFile::growth}};
  DatabaseFile file;
  expectSymbol('(');
  do {
    std::string DatabaseFile::*target = nullptr;
    for (const auto& [word, member] : keys)
      if (isWord(word)) target = member;
    if (!target) syntaxError();
    ++pos_;
    expectSymbol('=');
    file.*target = fileValue();
  } while (acceptSymbol(','));
  expectSymbol(')');
  return file;
}

// A name, a text, UNLIMITED, or a size such as 10, 5MB, 10%.
std::string SqlParser::fileValue() {
  if (isText()) return tokens_[pos_++].value();
  if (!isIntegerLiteral()) return name();
  std::string size = tokens_[pos_++].value();
  if (isAnyWord({"KB", "MB", "GB", "TB"}) || isSymbol('%')) size += tokens_[pos_++].value();
  return size;
}

}  // namespace engine
