// Lines of text as a result set, so that lists are written the same way as everything else.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"

namespace cli {

class MetinSatirlari : public db::Rows {
 public:
  MetinSatirlari(std::span<const std::string_view> basliklar,
                 const std::vector<std::vector<std::string>>& satirlar)
      : satirlar_(satirlar) {
    for (const std::string_view baslik : basliklar) {
      db::FieldInfo field;
      field.name = baslik;
      fields_.push_back(std::move(field));
    }
  }
  const std::vector<db::FieldInfo>& fields() const override { return fields_; }
  std::int64_t count() const override { return static_cast<std::int64_t>(satirlar_.size()); }
  db::Value value(std::int64_t row, int column) const override {
    return satirlar_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
  }

 private:
  std::vector<db::FieldInfo> fields_;
  const std::vector<std::vector<std::string>>& satirlar_;
};

}  // namespace cli
