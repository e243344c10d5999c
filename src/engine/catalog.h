// Floor `catalog`: what exists in a database, read from and written to the zb_ tables through an open
// connection, and the same seen as sysobjects, syscolumns ... A catalog is immutable once it is built. Opens
// no file.
#pragma once

#include "engine/catalog/catalog.h"
#include "engine/catalog/catalog_rows.h"
#include "engine/catalog/sqlite_util.h"
#include "engine/catalog/system_tables.h"
