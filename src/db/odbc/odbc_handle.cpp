#include "db/odbc/odbc_handle.h"

#include <algorithm>

namespace db {

OdbcHandle::OdbcHandle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  if (!succeeded(SQLAllocHandle(type, parent, &handle_))) handle_ = SQL_NULL_HANDLE;
}

std::vector<Diagnostic> OdbcHandle::diagnostics() const {
  std::vector<Diagnostic> out;
  std::string buffer(8192, '\0');
  for (SQLSMALLINT record = 1;; ++record) {
    SQLCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN code = SQLGetDiagRec(type_, handle_, record, state, &native, odbcText(buffer),
                                         static_cast<SQLSMALLINT>(buffer.size()), &length);
    if (!succeeded(code)) return out;
    const auto kept = std::min(static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0)), buffer.size() - 1);
    out.push_back({reinterpret_cast<char*>(state), native, buffer.substr(0, kept)});
  }
}

}  // namespace db
