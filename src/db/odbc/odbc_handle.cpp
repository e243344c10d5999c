#include "db/odbc/odbc_handle.h"

#include <unicode/unistr.h>

#include <algorithm>

namespace db {

OdbcHandle::OdbcHandle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  if (!succeeded(SQLAllocHandle(type, parent, &handle_))) handle_ = SQL_NULL_HANDLE;
}

std::vector<Diagnostic> OdbcHandle::diagnostics() const {
  constexpr SQLSMALLINT mostRecords = 1000;
  std::vector<Diagnostic> out;
  std::vector<SQLWCHAR> buffer(8192);
  for (SQLSMALLINT record = 1; record <= mostRecords; ++record) {
    SQLWCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    const SQLRETURN code = SQLGetDiagRecW(type_, handle_, record, state, &native, buffer.data(),
                                          static_cast<SQLSMALLINT>(buffer.size()), &length);
    if (!succeeded(code)) return out;
    const auto kept = std::min(static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0)), buffer.size() - 1);
    out.push_back({fromWide(state, 5), native, fromWide(buffer.data(), kept)});
  }
  return out;
}

WideText::WideText(std::string_view utf8) {
  const auto text =
      icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int>(utf8.size())));
  text_.assign(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

std::string fromWide(const SQLWCHAR* text, std::size_t size) {
  if (std::all_of(text, text + size, [](SQLWCHAR unit) { return unit < 0x80; })) return {text, text + size};
  std::string out;
  icu::UnicodeString(reinterpret_cast<const char16_t*>(text), static_cast<int>(size)).toUTF8String(out);
  return out;
}

}  // namespace db
