#include "catalog/create_database.h"

#include "db/value.h"

namespace catalog {

std::string dataFile(const std::string& name, const std::string& folder) {
  return folder + "\\" + name + ".mdf";
}

std::string createDatabaseStatement(const std::string& name, const std::string& folder) {
  const std::string file = db::escape(folder) + "\\" + db::escape(name);
  return "CREATE DATABASE " + name + " ON ( NAME = " + name + ",FILENAME = '" + file +
         ".mdf', SIZE = 10, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )  LOG ON ( NAME = '" + db::escape(name) +
         "_log',  FILENAME = '" + file + "_log.ldf', SIZE = 5MB, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )";
}

}  // namespace catalog
