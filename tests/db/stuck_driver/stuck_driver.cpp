// An ODBC driver that does nothing but fail: each call for a batch and its results takes the next letter of
// the batch's text, and the last one for ever. The driver manager itself ends a batch whose first call fails.
//   o  success, a row count of 1      d  the driver's own failure, HY000 without a number
//   s  the server's failure 2627      .  no more results
#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

// One at a time is enough for a test.
std::string script;
std::size_t at = 0;
char present = 'o';

SQLRETURN next() {
  present = script.empty() ? '.' : script[std::min(at++, script.size() - 1)];
  return present == 'o' ? SQL_SUCCESS : present == '.' ? SQL_NO_DATA : SQL_ERROR;
}

}  // namespace

extern "C" {

SQLRETURN SQLAllocHandle(SQLSMALLINT, SQLHANDLE, SQLHANDLE* out) {
  static int handle;
  *out = &handle;
  return SQL_SUCCESS;
}
SQLRETURN SQLFreeHandle(SQLSMALLINT, SQLHANDLE) {
  return SQL_SUCCESS;
}
SQLRETURN SQLFreeStmt(SQLHSTMT, SQLUSMALLINT) {
  return SQL_SUCCESS;
}
SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}
SQLRETURN SQLSetConnectAttr(SQLHDBC, SQLINTEGER, SQLPOINTER, SQLINTEGER) {
  return SQL_SUCCESS;
}
SQLRETURN SQLDriverConnect(SQLHDBC, SQLHWND, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLSMALLINT*,
                           SQLUSMALLINT) {
  return SQL_SUCCESS;
}
SQLRETURN SQLDisconnect(SQLHDBC) {
  return SQL_SUCCESS;
}
SQLRETURN SQLExecDirect(SQLHSTMT, SQLCHAR* text, SQLINTEGER length) {
  script.assign(reinterpret_cast<const char*>(text), length < 0
                                                         ? std::strlen(reinterpret_cast<const char*>(text))
                                                         : static_cast<std::size_t>(length));
  at = 0;
  return next();
}
SQLRETURN SQLMoreResults(SQLHSTMT) {
  return next();
}
SQLRETURN SQLNumResultCols(SQLHSTMT, SQLSMALLINT* columns) {
  *columns = 0;
  return SQL_SUCCESS;
}
SQLRETURN SQLRowCount(SQLHSTMT, SQLLEN* rows) {
  *rows = present == 'o' ? 1 : -1;
  return SQL_SUCCESS;
}
// The driver manager asks for records only where there are fields too.
SQLRETURN SQLGetDiagField(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT,
                          SQLSMALLINT*) {
  return SQL_NO_DATA;
}
SQLRETURN SQLGetDiagRec(SQLSMALLINT, SQLHANDLE, SQLSMALLINT record, SQLCHAR* state, SQLINTEGER* native,
                        SQLCHAR* text, SQLSMALLINT room, SQLSMALLINT* length) {
  if (record > 1 || (present != 'd' && present != 's')) return SQL_NO_DATA;
  const std::string words = present == 'd' ? "[Driver]Unknown error" : "[Driver][SQL Server]Duplicate key";
  std::strcpy(reinterpret_cast<char*>(state), present == 'd' ? "HY000" : "23000");
  *native = present == 'd' ? 0 : 2627;
  const std::size_t kept =
      std::min(words.size(), static_cast<std::size_t>(std::max<SQLSMALLINT>(room, 1)) - 1);
  std::memcpy(text, words.data(), kept);
  text[kept] = 0;
  *length = static_cast<SQLSMALLINT>(words.size());
  return SQL_SUCCESS;
}

}  // extern "C"
