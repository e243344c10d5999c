// The tree that the parser makes of a batch. Pure data: no names are resolved, no types known.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "engine/value.h"

namespace engine {

struct Expr;
struct SelectStatement;
struct Statement;
using ExprPtr = std::unique_ptr<Expr>;
using SelectPtr = std::unique_ptr<SelectStatement>;
using StatementPtr = std::unique_ptr<Statement>;

// Where the tables of a session lie: #temporary ones and the @variables of its batches.
inline constexpr const char* temporaryDatabase = "tempdb";

// database.owner.object; absent parts are empty, but for the database of temporary tables. `line` is 1-based
// within the batch.
struct ObjectName {
  std::string database;
  std::string owner;
  std::string object;
  int line = 0;
};

enum class Quantifier : std::uint8_t { Any, All };  // SOME is ANY

struct WhenClause {
  ExprPtr when;  // value (simple CASE) or condition (searched CASE)
  ExprPtr then;
};

// OVER (PARTITION BY .. ORDER BY .. frame). Its expressions stand behind the function's own in Expr::args.
struct WindowClause {
  std::size_t arguments = 0, partitions = 0;  // what is left is the order
  std::vector<bool> descending;               // of each term of the order
  std::string frame;                          // ROWS BETWEEN .. AND ..; empty when none is written
  bool operator==(const WindowClause&) const = default;
};

struct Expr {
  enum class Kind : std::uint8_t {
    Literal,         // literal
    Column,          // qualifier parts + name
    Variable,        // name with its @
    GlobalVariable,  // name with its @@
    Unary,           // unary, left
    Binary,          // binary, left, right
    IsNull,          // left, negated
    Between,         // left, args[0], args[1], negated
    InList,          // left, args, negated
    InSelect,        // left, select, negated
    Quantified,      // left, binary, quantifier, select
    Exists,          // select
    Like,            // left, right, args[0] = ESCAPE if present, negated
    Case,            // left (null for searched), whens, right = ELSE or null
    Function,        // name, args; distinct, star for COUNT(*); datepart names stay Column exprs;
                     // UPDATE(column) of triggers is a predicate; CURRENT_TIMESTAMP, USER: no args
    Convert,         // type, left, args[0] = style if present (CONVERT)
    Cast,            // type, left
    Scalar,          // select
    Collate,         // left, name = collation
    Star,            // * or qualifier.*
    Default,         // the keyword DEFAULT in VALUES or SET
    Window,          // name(args) OVER (window); its args are followed by those of the window
  };

  Kind kind = Kind::Literal;
  int line = 0;
  int height = 1;  // of this tree, subqueries included; bounded, so that it may be walked by recursion
  Literal literal;
  std::string database, owner, table;  // qualifier of Column and Star, empty when absent
  std::string name;
  UnaryOp unary = UnaryOp::Minus;
  BinaryOp binary = BinaryOp::Add;
  Quantifier quantifier = Quantifier::Any;
  bool negated = false;
  bool distinct = false;
  bool star = false;
  Type type;
  ExprPtr left;
  ExprPtr right;
  std::vector<ExprPtr> args;
  std::vector<WhenClause> whens;
  SelectPtr select;
  std::unique_ptr<WindowClause> window;
};

// ---- SELECT ----

enum class JoinKind : std::uint8_t { Inner, Left, Right, Full, Cross };

struct TableSource {
  enum class Kind : std::uint8_t { Table, Derived, Join };
  Kind kind = Kind::Table;
  int line = 0;
  ObjectName name;                         // Table
  bool keepsLock = false;                  // Table: by a hint such as (UPDLOCK); others are read and dropped
  SelectPtr select;                        // Derived
  std::string alias;                       // Table, Derived; empty when absent
  std::vector<std::string> columnAliases;  // Derived: AS t(a, b)
  JoinKind join = JoinKind::Inner;         // Join
  std::unique_ptr<TableSource> left, right;
  ExprPtr on;  // null for Cross
};

struct SelectItem {
  ExprPtr expr;          // Star for * and t.*
  std::string alias;     // from `alias=expr`, `expr AS alias`, `expr alias`
  std::string variable;  // `@a = expr`: an assignment, with its @
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

enum class SetOp : std::uint8_t { Union, UnionAll, Except, Intersect };

// One SELECT core.
struct SelectCore {
  bool distinct = false;
  ExprPtr top;  // TOP n, TOP (expr)
  bool topPercent = false;
  std::vector<SelectItem> items;
  std::optional<ObjectName> into;
  std::vector<std::unique_ptr<TableSource>> from;  // commas
  ExprPtr where;
  std::vector<ExprPtr> groupBy;
  ExprPtr having;
};

// name (columns) AS (select). Of a recursive one `select` is the anchor, and `recursive` has the SELECTs that
// name it in their FROM, each once.
struct CommonTable {
  std::string name;
  std::vector<std::string> columns;  // empty: as the query names them
  SelectPtr select, recursive;
};

struct SelectStatement {
  std::vector<CommonTable> with;
  std::optional<int> maxRecursion;  // OPTION (MAXRECURSION n); 0: without limit
  std::vector<SelectCore> cores;    // at least one; joined left to right by setOps
  std::vector<SetOp> setOps;        // cores.size() - 1
  std::vector<OrderItem> orderBy;
  int height = 1;  // of its tallest expression
  // A bracketed core such as (SELECT .. UNION SELECT ..) UNION ALL .. is a core that selects * from a
  // Derived source without alias; so is an INTERSECT behind UNION or EXCEPT, which binds stronger.
};

// ---- data ----

struct InsertStatement {
  std::vector<CommonTable> with;
  ObjectName target;
  std::vector<std::string> columns;          // empty: all
  std::vector<std::vector<ExprPtr>> values;  // VALUES rows, or
  SelectPtr select;                          // INSERT ... SELECT, or
  bool defaultValues = false;                // DEFAULT VALUES
};

struct Assignment {
  std::string column;    // empty when only a variable is set
  std::string variable;  // SET @v = col = expr, SET @v = expr
  ExprPtr value;
};

struct UpdateStatement {
  std::vector<CommonTable> with;
  std::optional<int> maxRecursion;
  ObjectName target;  // table, or an alias of `from`
  ExprPtr top;
  std::vector<Assignment> set;
  std::vector<std::unique_ptr<TableSource>> from;
  ExprPtr where;
};

struct DeleteStatement {
  std::vector<CommonTable> with;
  std::optional<int> maxRecursion;
  ObjectName target;
  ExprPtr top;
  std::vector<std::unique_ptr<TableSource>> from;
  ExprPtr where;
};

struct TruncateStatement {
  ObjectName table;
};

// ---- definitions ----

struct IndexColumn {
  std::string name;
  bool descending = false;
};

struct ColumnDefinition {
  std::string name;
  Type type;
  std::string typeWord;          // as written, for messages
  std::optional<bool> nullable;  // absent: neither NULL nor NOT NULL was written
  bool identity = false;
  std::int64_t seed = 1, step = 1;
  ExprPtr defaultValue;
  std::string defaultText;  // source text of the default, without outer blanks
  std::string defaultName;  // CONSTRAINT name of the default
  bool withValues = false;  // ADD c .. NULL DEFAULT x WITH VALUES: existing rows get the default too
  std::string collation;
  bool primaryKey = false, unique = false, clustered = false, nonclustered = false;
  std::string keyName;  // CONSTRAINT name of the key
  int line = 0;
};

struct TableConstraint {
  enum class Kind : std::uint8_t { PrimaryKey, Unique, Default, Check, ForeignKey };
  Kind kind = Kind::PrimaryKey;
  std::string name;
  bool clustered = false, nonclustered = false;
  std::vector<IndexColumn> columns;
  ExprPtr value;          // Default, Check
  std::string text;       // source text of value
  std::string forColumn;  // Default ... FOR column
  ObjectName references;  // ForeignKey
  std::vector<std::string> referencedColumns;
  KeyAction onDelete = KeyAction::NoAction, onUpdate = KeyAction::NoAction;
};

struct CreateTableStatement {
  ObjectName name;
  std::vector<ColumnDefinition> columns;
  std::vector<TableConstraint> constraints;
};

struct AlterTableStatement {
  enum class Action : std::uint8_t {
    Add,
    AlterColumn,
    DropColumn,
    DropConstraint,
    EnableConstraint,  // CHECK CONSTRAINT
    DisableConstraint  // NOCHECK CONSTRAINT
  };
  ObjectName name;
  Action action = Action::Add;
  std::vector<ColumnDefinition> columns;     // Add; AlterColumn has exactly one
  std::vector<TableConstraint> constraints;  // Add
  std::vector<std::string> dropped;  // DropColumn, DropConstraint; Enable.., DisableConstraint: none for ALL
  bool checkRows = true;             // WITH CHECK, which goes without saying for Add alone
};

struct CreateIndexStatement {
  std::string name;
  ObjectName table;
  bool unique = false, clustered = false;
  std::vector<IndexColumn> columns;
};

enum class ObjectKind : std::uint8_t { Table, View, Trigger, Procedure, Index, Database };

struct DropStatement {
  ObjectKind kind = ObjectKind::Table;
  std::vector<ObjectName> names;  // Index: owner = table (table.index form); Database: object
};

struct DatabaseFile {
  std::string logicalName, path, size, maxSize, growth;
};

struct CreateDatabaseStatement {
  std::string name;
  std::vector<DatabaseFile> data, log;
  bool forAttach = false;
  std::string collation;
};

struct CreateViewStatement {
  bool alter = false;
  ObjectName name;
  std::vector<std::string> columns;
  SelectPtr select;
  bool checkOption = false;
  std::string text;  // whole statement as written, from CREATE or ALTER to the end of the batch
};

struct CreateTriggerStatement {
  bool alter = false;
  ObjectName name;
  ObjectName table;
  bool onInsert = false, onUpdate = false, onDelete = false;
  std::vector<StatementPtr> body;
  std::string text;
};

struct ProcedureParameter {
  std::string name;  // with @
  Type type;
  ExprPtr value;  // default, a constant; null for none
  bool output = false;
};

struct CreateProcedureStatement {
  bool alter = false;
  ObjectName name;
  std::vector<ProcedureParameter> parameters;
  std::vector<StatementPtr> body;
  std::string text;
};

// ---- control ----

struct VariableDeclaration {
  std::string name;  // with @
  Type type;
  ExprPtr value;  // DECLARE @a INT = 1
};

struct DeclareStatement {
  std::vector<VariableDeclaration> variables;
  std::vector<CreateTableStatement> tables;  // DECLARE @t TABLE (..)
};
struct SetVariableStatement {
  std::string name;
  ExprPtr value;
};
// SET NOCOUNT ON, SET DATEFORMAT mdy, SET IDENTITY_INSERT t ON ...
struct SetOptionStatement {
  std::string option;  // upper case
  std::string value;   // as written, upper case ("ON", "OFF", "DMY")
  ObjectName table;    // IDENTITY_INSERT
};
struct IfStatement {
  ExprPtr condition;
  StatementPtr then, otherwise;
};
struct WhileStatement {
  ExprPtr condition;
  StatementPtr body;
};
struct BlockStatement {
  std::vector<StatementPtr> body;
};
struct BreakStatement {};
struct ContinueStatement {};
struct ReturnStatement {
  ExprPtr value;  // in procedures; null for none
};
struct PrintStatement {
  ExprPtr value;
};
struct RaiserrorStatement {
  std::vector<ExprPtr> args;  // message, severity, state, arguments
  bool setError = false;      // WITH SETERROR
};
struct ThrowStatement {
  ExprPtr number, message, state;  // constants or variables; null: what the CATCH around it has caught
};
struct TryStatement {
  std::vector<StatementPtr> body, handler;
};
enum class TransactionAction : std::uint8_t { Begin, Commit, Rollback, Save };
struct TransactionStatement {
  TransactionAction action = TransactionAction::Begin;
  std::string name;
};
struct UseStatement {
  std::string database;
};
struct ExecArgument {
  std::string name;  // @name = value; empty when by position
  ExprPtr value;     // null for DEFAULT
  bool output = false;
};
// EXEC procedure args. A bare procedure name as the first statement of a batch is an EXEC too.
struct ExecStatement {
  ObjectName procedure;
  std::vector<ExecArgument> args;
  ExprPtr text;                // EXEC ('...')
  std::string returnVariable;  // EXEC @r = procedure
};

struct Statement {
  int line = 0;
  std::variant<SelectPtr, InsertStatement, UpdateStatement, DeleteStatement, TruncateStatement,
               CreateTableStatement, AlterTableStatement, CreateIndexStatement, DropStatement,
               CreateDatabaseStatement, CreateViewStatement, CreateTriggerStatement, CreateProcedureStatement,
               DeclareStatement, SetVariableStatement, SetOptionStatement, IfStatement, WhileStatement,
               BlockStatement, BreakStatement, ContinueStatement, ReturnStatement, PrintStatement,
               RaiserrorStatement, ThrowStatement, TryStatement, TransactionStatement, UseStatement,
               ExecStatement>
      node;
};

struct Batch {
  std::vector<StatementPtr> statements;
  // Ordinals of literals whose value shaped the tree (lengths, styles, ORDER BY positions, defaults,
  // texts of views and triggers): a cached plan fits only a batch with the same values there.
  std::vector<int> structural;
  int literalCount = 0;
};

}  // namespace engine
