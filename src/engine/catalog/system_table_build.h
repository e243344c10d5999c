// What the files with the texts of system tables and views share, private to them.
#pragma once

#include <string>
#include <vector>

#include "engine/catalog/system_tables.h"
#include "engine/value/collation.h"

namespace engine::system_table {

inline Type plain(TypeId id) {
  return {id, 0, 0, 0};
}
inline Type sized(TypeId id, int length) {
  return {id, static_cast<std::uint16_t>(length), 0, 0};
}

inline const Type sysname = nameType;
inline const Type bit = plain(TypeId::Bit);
inline const Type integer = plain(TypeId::Int);
inline const Type small = plain(TypeId::SmallInt);
inline const Type tiny = plain(TypeId::TinyInt);
inline const Type datetime = plain(TypeId::DateTime);
inline const Type sid = sized(TypeId::VarBinary, 85);
inline const Type code = sized(TypeId::Char, 2);
inline const Type word = sized(TypeId::NVarChar, 60);
inline const Type longName = sized(TypeId::NVarChar, 260);
inline const Type chunk = sized(TypeId::NVarChar, 4000);
inline const Type definition = plain(TypeId::NText);

struct Field {
  const char* name;
  Type type;
  std::string expression;
  bool nullable = false;
};
using Fields = std::vector<Field>;
inline Fields operator+(Fields left, const Fields& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

// A table or view over `from`; its name is folded.
SystemTable make(const char* name, bool masterOnly, const Fields& fields, const std::string& from);

// The name of the database that a text stands for.
inline constexpr const char* databaseName =
    "(SELECT b.name FROM d1.zb_databases b WHERE 'd'||b.id||'.'='@.')";
// The types as VALUES: name, xtype, xusertype, bytes, digits, places.
extern const char* const typeRows;

std::vector<SystemTable> buildSysViews();
std::vector<SystemTable> buildServerViews();
std::vector<SystemTable> buildInformationSchema();

}  // namespace engine::system_table
