// Owned ODBC handles and what they have to say.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <utility>
#include <vector>

namespace db {

struct Diagnostic {
  std::string state;  // SQLSTATE, five characters
  int native = 0;     // the server's number
  std::string text;
};

class OdbcHandle {
 public:
  OdbcHandle() = default;
  OdbcHandle(SQLSMALLINT type, SQLHANDLE parent);  // null when the driver manager has no room
  OdbcHandle(OdbcHandle&& other) noexcept { swap(other); }
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    swap(other);
    return *this;
  }
  ~OdbcHandle() {
    if (handle_ != SQL_NULL_HANDLE) SQLFreeHandle(type_, handle_);
  }

  SQLHANDLE get() const { return handle_; }
  // Everything that the last call on the handle left, errors and informational messages alike.
  std::vector<Diagnostic> diagnostics() const;

 private:
  void swap(OdbcHandle& other) {
    std::swap(type_, other.type_);
    std::swap(handle_, other.handle_);
  }
  SQLSMALLINT type_ = 0;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

// A result as ODBC calls count it: with or without informational messages.
inline bool succeeded(SQLRETURN code) {
  return code == SQL_SUCCESS || code == SQL_SUCCESS_WITH_INFO;
}

inline SQLCHAR* odbcText(const std::string& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));
}

}  // namespace db
