#include "engine/catalog/system_table_build.h"

namespace engine::system_table {

SystemTable make(const char* name, bool masterOnly, const Fields& fields, const std::string& from) {
  SystemTable table;
  table.name = name;
  table.masterOnly = masterOnly;
  for (const auto& field : fields) {
    table.columns.push_back({field.name, field.type, field.nullable});
    table.query += table.query.empty() ? "SELECT " : ", ";
    table.query += field.expression;
    if (isCharacter(field.type.id))
      table.query += std::string(" COLLATE ") + (field.type == nameType ? sqliteNames : sqliteCollation);
    table.query += std::string(" AS \"") + field.name + "\"";
  }
  table.query += " FROM " + from;
  return table;
}

const char* const typeRows =
    "(VALUES('text',35,35,16,0,0),('tinyint',48,48,1,3,0),('smallint',52,52,2,5,0),"
    "('int',56,56,4,10,0),('smalldatetime',58,58,4,16,0),('real',59,59,4,24,0),"
    "('money',60,60,8,19,4),('datetime',61,61,8,23,3),('float',62,62,8,53,0),"
    "('ntext',99,99,16,0,0),('bit',104,104,1,1,0),('decimal',106,106,17,38,38),"
    "('numeric',108,108,17,38,38),('smallmoney',122,122,4,10,4),('bigint',127,127,8,19,0),"
    "('varbinary',165,165,8000,0,0),('varchar',167,167,8000,0,0),('binary',173,173,8000,0,0),"
    "('char',175,175,8000,0,0),('nvarchar',231,231,8000,0,0),('sysname',231,256,256,0,0),"
    "('nchar',239,239,8000,0,0))";

}  // namespace engine::system_table
