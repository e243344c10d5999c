// The parser itself, private to the parse_*.cpp files: recursive descent over the tokens of one batch, one
// file per kind of statement. Every parse function stands on the first token of what it reads and leaves
// on the first one behind it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/language/parser.h"

namespace engine {

class SqlParser {
 public:
  SqlParser(std::string_view text, const std::vector<Token>& tokens);

  Batch batch();
  ExprPtr singleExpression();
  ExprPtr singleCondition();

 private:
  using Sources = std::vector<std::unique_ptr<TableSource>>;

  // Binding strength of operators, loosest first.
  enum Level : int { Or = 1, And, Not, Comparison, Additive, Multiplicative };
  struct Operator {
    int level = 0;  // 0: no operator
    BinaryOp op = BinaryOp::Add;
    int tokens = 1;
  };

  // How many levels one construct takes of maxDepth.
  static constexpr int mostCases = 10;
  enum Cost : int { Light = 1, Heavy = 10 };
  class Nesting {
   public:
    Nesting(SqlParser& parser, int cost);
    ~Nesting();
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    SqlParser& parser_;
    int cost_;
  };

  // ---- tokens (parser.cpp) ----
  const Token& token(std::size_t ahead = 0) const;
  int line() const { return token().line; }
  bool atEnd() const { return token().kind == TokenKind::End; }
  bool isWord(std::string_view upper, std::size_t ahead = 0) const;
  bool isAnyWord(std::initializer_list<std::string_view> uppers, std::size_t ahead = 0) const;
  bool isSymbol(char symbol, std::size_t ahead = 0) const;
  bool isName(std::size_t ahead = 0) const;  // a quoted word, or a word that is not reserved
  bool isText(std::size_t ahead = 0) const;  // a text literal
  bool isKind(TokenKind kind, std::size_t ahead = 0) const { return token(ahead).kind == kind; }
  bool isIntegerLiteral() const;
  bool opensQuery() const;  // brackets, if any, and SELECT
  bool accept(std::string_view upper);
  bool acceptSymbol(char symbol);
  void expect(std::string_view upper);
  void expectSymbol(char symbol);
  std::string name();
  std::string variable();
  ObjectName objectName();
  ObjectName tableName();  // an object, or a table variable
  std::vector<std::string> nameParts(std::size_t most);
  std::vector<std::string> bracketedNames();
  std::int64_t integer();                                    // with its sign; structural
  void skipBrackets();                                       // a bracketed run whose content does not matter
  std::string sourceSince(std::size_t first) const;          // text of the tokens from index `first` to here
  void markStructural(std::size_t first, std::size_t last);  // literals among tokens [first, last)
  void nameMissing(std::size_t at) const;  // throws when the token belongs to a construct that is not there
  [[noreturn]] void syntaxError(std::size_t ahead = 0) const;
  [[noreturn]] void fail(int number, const std::string& text) const;
  [[noreturn]] void unsupported(std::string_view construct) const;

  // ---- statements (parser.cpp) ----
  StatementPtr statement();
  void statements(std::vector<StatementPtr>& list, bool untilEnd);
  StatementPtr nestedStatement();  // the body of IF and WHILE
  template <typename Node>
  StatementPtr wrap(Node&& node, int atLine) {
    auto result = std::make_unique<Statement>();
    result->line = atLine;
    result->node = std::forward<Node>(node);
    return result;
  }
  StatementPtr unsupportedStatement();

  // ---- parse_expression.cpp ----
  ExprPtr expression();
  ExprPtr condition();
  ExprPtr operators(int level);
  ExprPtr leading(int level);
  ExprPtr signedOperand(UnaryOp op);
  ExprPtr primary(int level);
  ExprPtr bracketed(int level);
  ExprPtr literal();
  ExprPtr nameOrCall();
  ExprPtr variableExpr();
  Operator peekOperator() const;
  ExprPtr binary(BinaryOp op, ExprPtr left, ExprPtr right);
  ExprPtr make(Expr::Kind kind) const;
  ExprPtr finish(ExprPtr expr) const;  // sets the height, bounded
  void requirePredicate(const Expr& expr) const;
  // ---- parse_predicate.cpp ----
  ExprPtr predicate(ExprPtr left, const Operator& op);
  ExprPtr comparison(ExprPtr left, const Operator& op);
  ExprPtr inPredicate(ExprPtr left);
  ExprPtr betweenPredicate(ExprPtr left);
  ExprPtr likePredicate(ExprPtr left);
  ExprPtr isNullPredicate(ExprPtr left);
  ExprPtr existsPredicate();
  // ---- parse_function.cpp ----
  ExprPtr wordOperand();
  ExprPtr caseExpr();
  ExprPtr castExpr();
  ExprPtr choiceExpr();
  ExprPtr convertExpr();
  ExprPtr call(std::string name);
  ExprPtr over(ExprPtr call);  // parse_window.cpp, with the next ones
  void windowFrame(WindowClause& window);
  struct FrameBound {
    int place = 0;  // in order along the rows
    std::string text;
  };
  FrameBound frameBound(bool rows);
  ExprPtr updatePredicate();
  // ---- parse_type.cpp ----
  // Where CHAR alone is CHAR(1): the n-th column or variable of a declaration. Else the target of a
  // conversion, where it is CHAR(30).
  struct Declared {
    std::string_view column;  // empty for a variable
    std::size_t position = 0;
  };
  struct Sized {
    std::string_view word;
    int most;
    TypeId longId;
    const Declared* declared;
  };
  Type type(const Declared* declared, std::string* word = nullptr);
  std::string typeSpelling(std::string& written);
  [[noreturn]] void unknownType(const std::string& spelled, const std::string& written,
                                const Declared* declared) const;
  void floatingType(Type& type);
  void sizedType(Type& type, const Sized& sized);
  void scaledType(Type& type, const Declared* declared);
  [[noreturn]] void badSize(std::int64_t size) const;

  // ---- parse_select.cpp ----
  SelectPtr selectStatement();
  SelectPtr subquery();  // with its brackets
  ExprPtr scalar(SelectPtr select);
  void unions(SelectStatement& select);
  void intersections(SelectStatement& select);
  void addTerm(SelectStatement& select, SetOp op, bool bindsIntersections);
  SelectPtr queryTerm();
  SelectCore core();
  void coreClauses(SelectCore& core, std::size_t first);
  ExprPtr topClause(bool* percent);
  SelectItem selectItem();
  bool starItem(SelectItem& item);
  std::string itemAlias();
  void orderBy(SelectStatement& select);
  void queryOptions(std::optional<int>& maxRecursion);
  std::vector<ExprPtr> expressions();
  // ---- parse_common.cpp ----
  StatementPtr commonTableStatement();
  std::vector<CommonTable> commonTables();
  CommonTable commonTable();
  void splitRecursion(CommonTable& table);
  // ---- parse_source.cpp ----
  Sources sources();
  std::unique_ptr<TableSource> joined();
  std::unique_ptr<TableSource> joinTail(std::unique_ptr<TableSource> left, bool untilOn);
  std::unique_ptr<TableSource> source();
  std::unique_ptr<TableSource> bracketedSource();
  std::unique_ptr<TableSource> tableSource();
  bool joinKind(JoinKind& kind);
  bool startsJoin() const;
  bool tableHints();

  // ---- parse_data.cpp ----
  StatementPtr selectNode();
  StatementPtr insertStatement();
  StatementPtr updateStatement();
  StatementPtr deleteStatement();
  StatementPtr truncateStatement();
  std::vector<ExprPtr> valuesRow();
  ExprPtr valueOrDefault();
  Assignment assignment();
  ExprPtr assigned(ExprPtr target);
  ExprPtr whereClause();

  // ---- parse_table.cpp ----
  StatementPtr createTable();
  StatementPtr alterTable();
  void tableElement(std::vector<ColumnDefinition>& columns, std::vector<TableConstraint>& constraints);
  ColumnDefinition columnDefinition(std::vector<TableConstraint>& constraints, std::size_t position);
  bool columnAttribute(ColumnDefinition& column, std::vector<TableConstraint>& constraints);
  bool columnConstraint(ColumnDefinition& column, std::vector<TableConstraint>& constraints,
                        std::string constraintName);
  void columnKey(ColumnDefinition& column, std::string keyName);
  void columnDefault(ColumnDefinition& column, std::string defaultName);
  void identityClause(ColumnDefinition& column);
  bool startsTableConstraint() const;
  TableConstraint tableConstraint();
  void keyConstraint(TableConstraint& constraint);
  void checkConstraint(TableConstraint& constraint);
  void referencesClause(TableConstraint& constraint);
  KeyAction keyAction();
  void notForReplication();
  void alterSwitch(AlterTableStatement& alter);
  std::vector<IndexColumn> indexColumns();
  void clusteredWord(bool& clustered, bool& nonclustered);
  void storageOptions();  // WITH FILLFACTOR.., WITH (..), ON filegroup: read and dropped
  void alterDrop(AlterTableStatement& alter);
  ColumnDefinition alteredColumn();
  // ---- parse_definition.cpp ----
  StatementPtr createStatement();
  StatementPtr alterStatement();
  StatementPtr dropStatement();
  StatementPtr createIndex();
  StatementPtr createView(bool alter);
  StatementPtr createTrigger(bool alter);
  void triggerEvents(CreateTriggerStatement& trigger);
  // ---- procedures (parse_procedure.cpp) ----
  StatementPtr createProcedure(bool alter);
  void procedureParameters(CreateProcedureStatement& create);
  void procedureOptions();
  void requireFirst(std::string_view what) const;
  ObjectName droppedIndex();
  StatementPtr createDatabase();
  std::vector<DatabaseFile> databaseFiles();
  DatabaseFile databaseFile();
  std::string fileValue();

  // ---- parse_control.cpp ----
  StatementPtr beginStatement();
  StatementPtr blockStatement();
  StatementPtr tryStatement();
  StatementPtr ifStatement();
  StatementPtr whileStatement();
  StatementPtr breakStatement();
  StatementPtr continueStatement();
  StatementPtr returnStatement();
  StatementPtr printStatement();
  StatementPtr raiserrorStatement();
  StatementPtr throwStatement();
  ExprPtr constantOrVariable(bool text);
  StatementPtr commitStatement();
  StatementPtr rollbackStatement();
  StatementPtr saveStatement();
  StatementPtr transaction(TransactionAction action, bool wordNeeded);
  StatementPtr useStatement();
  StatementPtr dbccStatement();
  StatementPtr killStatement();
  StatementPtr alterDatabase();
  // ---- parse_variable.cpp ----
  StatementPtr declareStatement();
  CreateTableStatement tableVariable();
  StatementPtr setStatement();
  StatementPtr setVariable();
  std::string optionValue();
  StatementPtr execStatement();
  StatementPtr procedureCall();
  void execArguments(ExecStatement& exec);
  ExprPtr execValue();

  std::string_view text_;
  const std::vector<Token>& tokens_;
  std::vector<char> reserved_;   // per token
  std::vector<int> ordinals_;    // per token: literals before it
  std::vector<int> closing_;     // per token: index of the bracket that closes this one, or -1
  std::vector<int> structural_;  // ordinals
  std::size_t pos_ = 0;
  int depth_ = 0;
  bool mayStore_ = false;  // the SELECT that comes is a statement of its own and may have INTO
  int cases_ = 0;          // CASE around the expression being parsed
  bool inProcedure_ = false;
  int catches_ = 0;  // CATCH around the statement being parsed
  int loops_ = 0;    // WHILE around the statement being parsed
  int tallest_ = 0;  // height of the tallest expression of the select being parsed
};

}  // namespace engine
