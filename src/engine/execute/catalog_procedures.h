// The procedures by which drivers look into the catalog, as batches over the system tables.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace engine {

struct CatalogProcedure {
  const char* name;
  std::array<const char*, 7> parameters;  // NVARCHAR variables of the batch, NULL where not given
  std::string batch;
  bool firstRequired = false;
};

// By ASCII folding; null: not one of them.
const CatalogProcedure* findCatalogProcedure(const std::string& name);

}  // namespace engine
