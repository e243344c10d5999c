// The one exception of the embedded server: a SQL Server error number and its text.
#pragma once

#include <stdexcept>
#include <string>

namespace engine {

class Error : public std::runtime_error {
 public:
  Error(int number, const std::string& text, int severity = 16, int state = 1)
      : std::runtime_error(text), number_(number), severity_(severity), state_(state) {}

  int number() const { return number_; }
  int severity() const { return severity_; }
  int state() const { return state_; }
  int line() const { return line_; }
  void setLine(int line) { line_ = line; }
  const std::string& procedure() const { return procedure_; }  // the trigger that it came up in
  void setProcedure(const std::string& name) { procedure_ = name; }

 private:
  int number_;
  int severity_;
  int state_;
  int line_ = 0;
  std::string procedure_;
};

// True for errors that end the whole batch (conversion, missing names, errors inside triggers ...);
// false for those after which SQL Server goes on with the batch's next statement
// (515, 547, 2601, 2627, 220, 8115, 8134, 8152, 544 ...).
bool endsBatch(int number);
// Undoes the open transaction as well: texts that are no number or date.
bool endsTransaction(int number);

// Errors that cross SQLite (raised inside a SQL function) travel as text of this form.
std::string encodeError(const Error& error);
// Throws the Error that `text` carries; returns when it carries none.
void rethrowEncoded(const char* text);

}  // namespace engine
