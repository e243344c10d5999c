// What the binder asks before it lets a statement touch a database or an object. Whoever runs statements for
// a login answers; without anybody to ask everything is allowed.
#pragma once

#include <cstdint>
#include <string>

namespace engine {

enum class Action : std::uint8_t { Select, Insert, Update, Delete };

class Access {
 public:
  virtual ~Access() = default;
  // Throws 916 when the login is nobody in the database.
  virtual void enter(const std::string& database) = 0;
  // Throws 229 when it may not do that with the table or view.
  virtual void need(const std::string& database, const std::string& object, Action action) = 0;
  // The same for reading a system table.
  virtual void needSystem(const std::string& database, const std::string& table) = 0;
};

}  // namespace engine
