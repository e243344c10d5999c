#include "engine/language/tree_text.h"

namespace engine::test {
namespace {

const char* const binarySigns[] = {"+", "-",  "*", "/",  "%", "&",  "|",   "^",
                                   "=", "<>", "<", "<=", ">", ">=", "AND", "OR"};

template <typename List, typename Show>
std::string join(const List& list, Show one) {
  std::string text;
  for (const auto& each : list) text += (text.empty() ? "" : ", ") + one(each);
  return text;
}

std::string showAll(const std::vector<ExprPtr>& list) {
  return join(list, [](const ExprPtr& each) { return show(*each); });
}

std::string showLiteral(const Literal& literal) {
  static const char* const prefixes[] = {"NULL", "", "d", "f", "$", "'", "N'", "0x"};
  bool text = literal.kind == LiteralKind::Text || literal.kind == LiteralKind::NText;
  return prefixes[static_cast<int>(literal.kind)] + literal.text + (text ? "'" : "");
}

std::string showCase(const Expr& e) {
  std::string text = "CASE(" + show(e.left);
  for (const WhenClause& w : e.whens) text += " WHEN " + show(w.when) + " THEN " + show(w.then);
  return text + (e.right ? " ELSE " + show(e.right) : "") + ")";
}

std::string qualified(const Expr& e, const std::string& last) {
  std::string text;
  if (!e.database.empty()) text += e.database + ".";
  if (!e.database.empty() || !e.owner.empty()) text += e.owner + ".";
  if (!e.table.empty()) text += e.table + ".";
  return text + last;
}

std::string showCall(const Expr& e) {
  return e.name + "(" + (e.star ? "*" : "") + (e.distinct ? "DISTINCT " : "") + showAll(e.args) + ")";
}

std::string showCore(const SelectCore& core) {
  std::string text = core.distinct ? "SELECT DISTINCT " : "SELECT ";
  if (core.top) text += "TOP " + show(core.top) + (core.topPercent ? "% " : " ");
  text += join(core.items, [](const SelectItem& item) {
    return (item.variable.empty() ? "" : item.variable + ":=") + show(item.expr) +
           (item.alias.empty() ? "" : " AS " + item.alias);
  });
  if (core.into) text += " INTO " + show(*core.into);
  if (!core.from.empty()) text += " FROM " + join(core.from, [](const auto& each) { return show(*each); });
  if (core.where) text += " WHERE " + show(core.where);
  if (!core.groupBy.empty()) text += " GROUP " + showAll(core.groupBy);
  if (core.having) text += " HAVING " + show(core.having);
  return text;
}

}  // namespace

std::string show(const ExprPtr& expr) {
  return expr ? show(*expr) : "";
}

std::string show(const Expr& e) {
  std::string no = e.negated ? "NOT " : "";
  switch (e.kind) {
    case Expr::Kind::Literal:
      return showLiteral(e.literal);
    case Expr::Kind::Column:
      return qualified(e, e.name);
    case Expr::Kind::Star:
      return qualified(e, "*");
    case Expr::Kind::Variable:
    case Expr::Kind::GlobalVariable:
      return e.name;
    case Expr::Kind::Unary: {
      static const char* const signs[] = {"-", "+", "~", "NOT "};
      return "(" + std::string(signs[static_cast<int>(e.unary)]) + show(e.left) + ")";
    }
    case Expr::Kind::Binary:
      return "(" + show(e.left) + " " + binarySigns[static_cast<int>(e.binary)] + " " + show(e.right) + ")";
    case Expr::Kind::IsNull:
      return "(" + show(e.left) + " IS " + no + "NULL)";
    case Expr::Kind::Between:
      return "(" + show(e.left) + " " + no + "BETWEEN " + show(e.args[0]) + " AND " + show(e.args[1]) + ")";
    case Expr::Kind::InList:
      return "(" + show(e.left) + " " + no + "IN [" + showAll(e.args) + "])";
    case Expr::Kind::InSelect:
      return "(" + show(e.left) + " " + no + "IN {" + show(*e.select) + "})";
    case Expr::Kind::Quantified:
      return "(" + show(e.left) + " " + binarySigns[static_cast<int>(e.binary)] +
             (e.quantifier == Quantifier::Any ? " ANY {" : " ALL {") + show(*e.select) + "})";
    case Expr::Kind::Exists:
      return "EXISTS {" + show(*e.select) + "}";
    case Expr::Kind::Like:
      return "(" + show(e.left) + " " + no + "LIKE " + show(e.right) +
             (e.args.empty() ? "" : " ESCAPE " + show(e.args[0])) + ")";
    case Expr::Kind::Case:
      return showCase(e);
    case Expr::Kind::Function:
      return showCall(e);
    case Expr::Kind::Convert:
      return "CONVERT(" + describe(e.type) + ", " + show(e.left) +
             (e.args.empty() ? "" : ", " + show(e.args[0])) + ")";
    case Expr::Kind::Cast:
      return "CAST(" + show(e.left) + " AS " + describe(e.type) + ")";
    case Expr::Kind::Scalar:
      return "{" + show(*e.select) + "}";
    case Expr::Kind::Collate:
      return "(" + show(e.left) + " COLLATE " + e.name + ")";
    case Expr::Kind::Window:
      return showCall(e) + " OVER(" + std::to_string(e.window->arguments) + "," +
             std::to_string(e.window->partitions) + " " + e.window->frame + ")";
    case Expr::Kind::Default:
      return "DEFAULT";
  }
  return "?";
}

std::string show(const ObjectName& name) {
  std::string text;
  if (!name.database.empty()) text += name.database + ".";
  if (!name.database.empty() || !name.owner.empty()) text += name.owner + ".";
  return text + name.object;
}

std::string show(const TableSource& source) {
  static const char* const joins[] = {" JOIN ", " LEFT ", " RIGHT ", " FULL ", " CROSS "};
  std::string alias = source.alias.empty() ? "" : " " + source.alias;
  switch (source.kind) {
    case TableSource::Kind::Table:
      return show(source.name) + alias;
    case TableSource::Kind::Derived:
      return "{" + show(*source.select) + "}" + alias +
             (source.columnAliases.empty() ? "" : "(" + join(source.columnAliases, [](const std::string& s) {
                                                    return s;
                                                  }) + ")");
    case TableSource::Kind::Join:
      return "(" + show(*source.left) + joins[static_cast<int>(source.join)] + show(*source.right) +
             (source.on ? " ON " + show(source.on) : "") + ")";
  }
  return "?";
}

std::string show(const SelectStatement& select) {
  static const char* const setWords[] = {" UNION ", " UNION ALL ", " EXCEPT ", " INTERSECT "};
  std::string text;
  for (const CommonTable& table : select.with)
    text += (text.empty() ? "WITH " : ", ") + table.name + " AS {" + show(*table.select) +
            (table.recursive ? " RECURSIVE " + show(*table.recursive) : "") + "}";
  text += (text.empty() ? "" : " ") + showCore(select.cores[0]);
  for (std::size_t i = 1; i < select.cores.size(); ++i)
    text += setWords[static_cast<int>(select.setOps[i - 1])] + showCore(select.cores[i]);
  if (!select.orderBy.empty())
    text += " ORDER " + join(select.orderBy, [](const OrderItem& item) {
              return show(item.expr) + (item.descending ? " DESC" : "");
            });
  return text;
}

}  // namespace engine::test
