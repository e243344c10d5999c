// The definition of a company database: tables, views, triggers and the order in which they are made.
// The texts lie beside this file (tables/*.tbl, views/*.sql, triggers/*.sql, order.lst) and are built
// into the program; the format of the tables is told in catalog/definition.h.
//
// A view or trigger is one line of text to the servers, exactly as others compare it. Its file is laid out to be
// read: a line break with the indentation behind it stands for one blank, wherever it is.
//
// Stage Base is what a new company gets; Upgrade is what the upgrade makes of it.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalog/definition.h"

namespace company::schema {

using catalog::ColumnDef;
using catalog::createStatement;
using catalog::Stage;
using catalog::TableDef;

// A view or a trigger.
struct ObjectDef {
  std::string name;
  std::string text;      // current text
  std::string baseText;  // the first text; equal to `text` where nothing changes
};

// In the order of the files; parsed at the first call.
const std::vector<TableDef>& tables();
const std::vector<ObjectDef>& views();
const std::vector<ObjectDef>& triggers();

// By name, ASCII case ignored; null when there is none.
const TableDef* table(std::string_view name);
const ObjectDef* view(std::string_view name);
const ObjectDef* trigger(std::string_view name);

// Names in the order of creation. In tableOrder(Upgrade), "DROP " before a name means that the table is
// dropped at this place.
const std::vector<std::string>& tableOrder(Stage stage);
const std::vector<std::string>& viewOrder(Stage stage);
const std::vector<std::string>& triggerOrder(Stage stage);

// The files as they were built in.
std::span<const catalog::EmbeddedText> embeddedTexts();

}  // namespace company::schema
