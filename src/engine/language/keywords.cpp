#include "engine/language/keywords.h"

#include <algorithm>
#include <array>

namespace engine {
namespace {

constexpr char fold(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Sorted, so that the words of one letter are found by binary search.
constexpr std::string_view reservedWords[] = {"ADD",
                                              "ALL",
                                              "ALTER",
                                              "AND",
                                              "ANY",
                                              "AS",
                                              "ASC",
                                              "AUTHORIZATION",
                                              "BACKUP",
                                              "BEGIN",
                                              "BETWEEN",
                                              "BREAK",
                                              "BROWSE",
                                              "BULK",
                                              "BY",
                                              "CASCADE",
                                              "CASE",
                                              "CHECK",
                                              "CHECKPOINT",
                                              "CLOSE",
                                              "CLUSTERED",
                                              "COALESCE",
                                              "COLLATE",
                                              "COLUMN",
                                              "COMMIT",
                                              "COMPUTE",
                                              "CONSTRAINT",
                                              "CONTAINS",
                                              "CONTAINSTABLE",
                                              "CONTINUE",
                                              "CONVERT",
                                              "CREATE",
                                              "CROSS",
                                              "CURRENT",
                                              "CURRENT_DATE",
                                              "CURRENT_TIME",
                                              "CURRENT_TIMESTAMP",
                                              "CURRENT_USER",
                                              "CURSOR",
                                              "DATABASE",
                                              "DBCC",
                                              "DEALLOCATE",
                                              "DECLARE",
                                              "DEFAULT",
                                              "DELETE",
                                              "DENY",
                                              "DESC",
                                              "DISK",
                                              "DISTINCT",
                                              "DISTRIBUTED",
                                              "DOUBLE",
                                              "DROP",
                                              "DUMP",
                                              "ELSE",
                                              "END",
                                              "ERRLVL",
                                              "ESCAPE",
                                              "EXCEPT",
                                              "EXEC",
                                              "EXECUTE",
                                              "EXISTS",
                                              "EXIT",
                                              "EXTERNAL",
                                              "FETCH",
                                              "FILE",
                                              "FILLFACTOR",
                                              "FOR",
                                              "FOREIGN",
                                              "FREETEXT",
                                              "FREETEXTTABLE",
                                              "FROM",
                                              "FULL",
                                              "FUNCTION",
                                              "GOTO",
                                              "GRANT",
                                              "GROUP",
                                              "HAVING",
                                              "HOLDLOCK",
                                              "IDENTITY",
                                              "IDENTITYCOL",
                                              "IDENTITY_INSERT",
                                              "IF",
                                              "IN",
                                              "INDEX",
                                              "INNER",
                                              "INSERT",
                                              "INTERSECT",
                                              "INTO",
                                              "IS",
                                              "JOIN",
                                              "KEY",
                                              "KILL",
                                              "LEFT",
                                              "LIKE",
                                              "LINENO",
                                              "LOAD",
                                              "MERGE",
                                              "NATIONAL",
                                              "NOCHECK",
                                              "NONCLUSTERED",
                                              "NOT",
                                              "NULL",
                                              "NULLIF",
                                              "OF",
                                              "OFF",
                                              "OFFSETS",
                                              "ON",
                                              "OPEN",
                                              "OPENDATASOURCE",
                                              "OPENQUERY",
                                              "OPENROWSET",
                                              "OPENXML",
                                              "OPTION",
                                              "OR",
                                              "ORDER",
                                              "OUTER",
                                              "OVER",
                                              "PERCENT",
                                              "PIVOT",
                                              "PLAN",
                                              "PRIMARY",
                                              "PRINT",
                                              "PROC",
                                              "PROCEDURE",
                                              "PUBLIC",
                                              "RAISERROR",
                                              "READ",
                                              "READTEXT",
                                              "RECONFIGURE",
                                              "REFERENCES",
                                              "REPLICATION",
                                              "RESTORE",
                                              "RESTRICT",
                                              "RETURN",
                                              "REVERT",
                                              "REVOKE",
                                              "RIGHT",
                                              "ROLLBACK",
                                              "ROWCOUNT",
                                              "ROWGUIDCOL",
                                              "RULE",
                                              "SAVE",
                                              "SCHEMA",
                                              "SECURITYAUDIT",
                                              "SELECT",
                                              "SESSION_USER",
                                              "SET",
                                              "SETUSER",
                                              "SHUTDOWN",
                                              "SOME",
                                              "STATISTICS",
                                              "SYSTEM_USER",
                                              "TABLE",
                                              "TABLESAMPLE",
                                              "TEXTSIZE",
                                              "THEN",
                                              "TO",
                                              "TOP",
                                              "TRAN",
                                              "TRANSACTION",
                                              "TRIGGER",
                                              "TRUNCATE",
                                              "TRY_CONVERT",
                                              "TSEQUAL",
                                              "UNION",
                                              "UNIQUE",
                                              "UNPIVOT",
                                              "UPDATE",
                                              "UPDATETEXT",
                                              "USE",
                                              "USER",
                                              "VALUES",
                                              "VARYING",
                                              "VIEW",
                                              "WAITFOR",
                                              "WHEN",
                                              "WHERE",
                                              "WHILE",
                                              "WITH",
                                              "WRITETEXT"};
static_assert(std::ranges::is_sorted(reservedWords));

// Index of the first reserved word of each letter, A to Z, and the end.
constexpr auto firstOfLetter = [] {
  std::array<std::size_t, 27> first{};
  for (std::size_t letter = 0; letter <= 26; ++letter) {
    std::size_t i = 0;
    while (i < std::size(reservedWords) && reservedWords[i][0] < static_cast<char>('A' + letter)) ++i;
    first[letter] = i;
  }
  return first;
}();

}  // namespace

bool equalsKeyword(std::string_view word, std::string_view upper) {
  if (word.size() != upper.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (fold(word[i]) != upper[i]) return false;
  return true;
}

std::string upperAscii(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), fold);
  return result;
}

bool isReserved(std::string_view word) {
  if (word.empty()) return false;
  char first = fold(word[0]);
  if (first < 'A' || first > 'Z') return false;
  std::size_t letter = static_cast<std::size_t>(first - 'A');
  for (std::size_t i = firstOfLetter[letter]; i < firstOfLetter[letter + 1]; ++i)
    if (equalsKeyword(word, reservedWords[i])) return true;
  return false;
}

}  // namespace engine
