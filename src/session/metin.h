// Text services that every screen shares. All texts are UTF-8; the rules are Turkish.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace session {

// Upper case by Turkish rules: i gives İ, ı gives I. User names and SQL logins pass here before they are
// stored or compared.
std::string Buyuk_Harf(std::string_view text);
// The same for one typed key of the type-to-search boxes.
std::string Buyuk_Harf_Arama(std::string_view text);

// The scrambler of user passwords, on code page 1254: character code c at position i (from 1) becomes
// c * 2 + i, and back. Empty when a character is not in the code page or a result does not fit a byte;
// Turkish letters always end there.
std::optional<std::string> Sifrele(std::string_view text);
std::optional<std::string> Sifre_Coz(std::string_view text);

// Without blanks at both ends; other white space stays.
std::string Trim(std::string_view text);

// Line ends, tabs and what else has no sign: no title or name holds them.
bool denetimKarakteriVar(std::string_view text);

// Month names by number 1 to 12; empty for any other.
std::string Ay_Adi(int n);

// The successor of a code: digits, capitals and small letters (Turkish alphabet) each step within their
// own sequence and carry to the left at its end. Characters of no sequence are passed over. Past the
// front the code starts again ("99" gives "00"). Empty for an empty text.
std::string Kod_Artir(std::string_view code);

// Column `index` (from 0) of a list entry with "|" between columns, cut at its first tab; empty when the
// entry has no such column.
std::string Liste_Metni(std::string_view entry, int index);

}  // namespace session
