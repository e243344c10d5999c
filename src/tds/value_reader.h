// Parameters as a client sends them.
#pragma once

#include <string>

#include "engine/server.h"
#include "tds/bytes.h"
#include "tds/login.h"

namespace tds {

struct TypedValue {
  engine::Type type;
  engine::Datum value;  // in the form of the type
};

// A type's description with the value behind it. Throws ProtocolError, and Error 8009 for types that the
// server does not have (XML, tables, sql_variant and those of users) or for more bytes than it keeps.
TypedValue readValue(ByteReader& from);

// "int", "nvarchar(4000)", "varchar(max)", "decimal(18,2)" as a declaration of parameters has them; Error
// 2715.
engine::Type parseType(std::string_view text);

}  // namespace tds
