// Turkish_CI_AS: the order and equality of every text of the server. Case-insensitive by Turkish rules
// (i is İ, ı is I), accent-sensitive (ş is not s), trailing blanks ignored. Pure, thread-safe.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace engine {

inline constexpr const char* collationName = "Turkish_CI_AS";
inline constexpr const char* sqliteCollation = "TRCI";  // its name in SQLite, see registerFunctions

inline constexpr const char* sqliteNames = "TRNAME";  // the rule of names there, see compareNames

// Negative, zero or positive, as the first sorts before, with or after the second.
int compareText(std::string_view left, std::string_view right);
bool equalText(std::string_view left, std::string_view right);

// The same for names of databases, objects, columns, users and logins, which differ where their ASCII
// letters do, case aside, and in every other character (i is I, and is not İ).
int compareNames(std::string_view left, std::string_view right);

// Upper and lower case by Turkish rules, character by character; length in characters stays.
std::string upperText(std::string_view text);
std::string lowerText(std::string_view text);
char32_t upperCharacter(char32_t character);
char32_t lowerCharacter(char32_t character);
// Upper case without trailing blanks: a key under which equal texts of the code page meet.
std::string foldKey(std::string_view text);

// LIKE: %, _, [a-z] by collation, [^..]; `escape` is one character. Trailing blanks of the pattern
// count, those of the text may be left over. Throws nothing: a broken pattern matches nothing.
bool likeMatch(std::string_view text, std::string_view pattern, std::optional<char32_t> escape = {});

// 1-based character position of `needle` in `text` from the character `start` (1-based); 0: none.
std::int64_t findText(std::string_view needle, std::string_view text, std::int64_t start = 1);
// 1-based character position of the first match of a LIKE pattern with its outer %; 0: none.
std::int64_t findPattern(std::string_view pattern, std::string_view text);
// Every occurrence of `from` (by collation) replaced.
std::string replaceText(std::string_view text, std::string_view from, std::string_view to);

}  // namespace engine
