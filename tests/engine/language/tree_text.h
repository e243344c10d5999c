// Trees as short text, so that tests compare whole statements at once.
#pragma once

#include <string>

#include "engine/language/ast.h"

namespace engine::test {

std::string show(const Expr& expr);
std::string show(const ExprPtr& expr);  // "" for null
std::string show(const SelectStatement& select);
std::string show(const TableSource& source);
std::string show(const ObjectName& name);

}  // namespace engine::test
