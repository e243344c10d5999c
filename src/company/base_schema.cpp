#include "company/base_schema.h"

#include <cstdio>
#include <vector>

#include "company/schema/schema.h"
#include "session/statements.h"

namespace company {

namespace {

using schema::Stage;
using schema::TableDef;
using session::Oturum;

struct Step {
  std::string name;  // shown while it runs
  std::vector<std::string> statements;
};

Step tableStep(const TableDef& table, const db::DateTime& now) {
  Step step{table.name, {createStatement(table, Stage::Base)}};
  for (const std::string& row : table.firstRows) {
    step.statements.push_back(isaretleriDoldur(row, now));
  }
  step.statements.insert(step.statements.end(), table.indexes.begin(), table.indexes.end());
  return step;
}

std::vector<Step> steps(const db::DateTime& now) {
  std::vector<Step> all;
  for (const std::string& name : schema::tableOrder(Stage::Base)) {
    all.push_back(tableStep(*schema::table(name), now));
  }
  for (const std::string& name : schema::viewOrder(Stage::Base)) {
    all.push_back({name, {schema::view(name)->baseText}});
  }
  for (const std::string& name : schema::triggerOrder(Stage::Base)) {
    all.push_back({name, {schema::trigger(name)->baseText}});
  }
  return all;
}

std::string formatted(const char* format, int a, int b, int c) {
  char text[40];
  std::snprintf(text, sizeof text, format, a, b, c);
  return text;
}

void replaceAll(std::string& text, std::string_view what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
}

}  // namespace

std::string kayitTarihi(const db::DateTime& now) {
  return formatted("%02d/%02d/%04d", now.month, now.day, now.year);
}

std::string kayitSaati(const db::DateTime& now) {
  return formatted("%02d:%02d:%02d", now.hour, now.minute, now.second);
}

std::string isaretleriDoldur(std::string statement, const db::DateTime& now) {
  replaceAll(statement, "<date>", kayitTarihi(now));
  replaceAll(statement, "<time>", kayitSaati(now));
  return statement;
}

SemaYazimi Firma_Tablolari_Olustur(Oturum& oturum) {
  const std::vector<Step> all = steps(oturum.saat->now());
  const auto total = static_cast<std::int64_t>(all.size());
  std::int64_t done = 0;
  for (const Step& step : all) {
    if (oturum.ilerleme->cancelled()) {
      return SemaYazimi::Vazgecildi;
    }
    oturum.ilerleme->text(step.name);
    for (const std::string& statement : step.statements) {
      // Hundreds of boxes, two per statement, would tell no more than the first pair.
      if (!session::Sorgu_Ac_Surer(oturum, oturum.Kayitlar, statement)) {
        return SemaYazimi::Kesildi;
      }
    }
    oturum.ilerleme->step(++done, total);
    oturum.ilerleme->whole(done, total);
    oturum.ilerleme->pump();
  }
  oturum.ilerleme->text("");
  return SemaYazimi::Tamam;
}

}  // namespace company
