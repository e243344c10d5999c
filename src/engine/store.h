// Floor `store`: the only one that touches files. Data files and companions, the handle of a session with its
// attached databases and transactions, identity values, and the state that processes on one folder share.
#pragma once

#include "engine/store/companion.h"
#include "engine/store/database_file.h"
#include "engine/store/file_names.h"
#include "engine/store/instance.h"
#include "engine/store/integrity.h"
#include "engine/store/storage.h"
