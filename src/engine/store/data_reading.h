// A whole data file checked while its bytes pass by once and in order: checksums and structure of the pages,
// order and uniqueness of the keys, every row against every index and its column's type. Beside them only the
// inner pages and what goes on in other pages are read, a hundredth of the file.
//
// The file must be settled and nobody may write it meanwhile. What is found here is a doubt; what exactly is
// damaged tells DBCC, which looks each entry up.
#pragma once

#include <memory>
#include <string>

#include "engine/catalog.h"
#include "engine/store/table_digest.h"

namespace engine {

namespace store {

class DataReading {
 public:
  DataReading(sqlite3* db, const std::string& alias, const DatabaseCatalog& catalog);
  ~DataReading();
  DataReading(const DataReading&) = delete;
  DataReading& operator=(const DataReading&) = delete;

  void take(const char* bytes, std::size_t count);
  DataFindings finish();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace store
}  // namespace engine
