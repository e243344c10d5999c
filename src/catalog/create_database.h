// CREATE DATABASE as this system writes it, for the catalog and for companies alike.
#pragma once

#include <string>

namespace catalog {

// Data file of 10 MB and log of 5 MB in `folder`, both unlimited and growing by 10 MB; no collation named.
// Neither text may hold an apostrophe unescaped: they are escaped here.
std::string createDatabaseStatement(const std::string& name, const std::string& folder);

// folder\name.mdf, as it is shown and as the server is told.
std::string dataFile(const std::string& name, const std::string& folder);

}  // namespace catalog
