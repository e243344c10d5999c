// What a change of a table's rows has to satisfy and what it brings with it, compiled: conditions, foreign
// keys in both directions, cascades. Asked of the temporary tables of old and new rows.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/plan.h"

namespace engine {

// A row of the query is one that breaks the rule.
struct RuleTest {
  Prepared query;
  std::vector<int> columns;  // ordinals of the table whose change asks for it; empty: any
  // What the error says behind the statement's name: 'FOREIGN KEY constraint "FK_A" ... column 'X'.'
  std::string conflict;
};

// What is to be done in a table that refers to this one.
struct RuleStep {
  std::vector<int> columns;  // as in RuleTest
  bool removes = false;      // its rows go; else they are updated
  CompiledChange change;
};

struct CompiledRules : Compiled {
  std::vector<RuleTest> own;         // of the table's own rows, first
  std::vector<RuleStep> steps;       // then what it brings with it
  std::vector<RuleTest> references;  // then who still refers to it
};

}  // namespace engine
