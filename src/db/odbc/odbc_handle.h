// Owned ODBC handles and what they have to say.
#pragma once

#ifdef _WIN32
#include <windows.h>
#endif
// After it, where there is one.
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace db {

struct Diagnostic {
  std::string state;  // SQLSTATE, five characters
  int native = 0;     // the server's number
  std::string text;

  friend bool operator==(const Diagnostic&, const Diagnostic&) = default;
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

// UTF-8 text in the form of the wide calls. Those alone carry every character whatever the locale: for
// narrow ones the driver manager and the driver each assume an encoding of their own.
class WideText {
 public:
  explicit WideText(std::string_view utf8);
  SQLWCHAR* data() { return reinterpret_cast<SQLWCHAR*>(text_.data()); }
  SQLSMALLINT size() const { return static_cast<SQLSMALLINT>(text_.size()); }
  SQLINTEGER longSize() const { return static_cast<SQLINTEGER>(text_.size()); }

 private:
  std::u16string text_;
};

std::string fromWide(const SQLWCHAR* text, std::size_t size);

}  // namespace db
