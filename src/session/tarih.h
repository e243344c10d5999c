// Date and time fields.
#pragma once

#include <string>
#include <string_view>

#include "db/value.h"
#include "session/ports.h"

namespace session {

// Result of leaving a date or time field. `hata` holds the text that goes into a box without icon; the
// field's text is then empty.
struct AlanSonucu {
  std::string metin;
  std::string hata;
};

// Rebuilds day/month/year out of the digits of the text. `uzun` set: a separator only between parts that
// are present; otherwise both separators always stand once there is a digit. No month-length check.
AlanSonucu tarihAlani(std::string_view text, bool uzun);
AlanSonucu saatAlani(std::string_view text);
// The same with the box shown; the empty text means that the field is to be refused.
std::string Tarih_Alan_Dogrula(Boxes& kutular, std::string_view text, bool uzun);
std::string Saat_Alan_Dogrula(Boxes& kutular, std::string_view text);

// The masked date field: called after each change with the text and the caret (in characters). Two digits
// end day and month, and so does a typed separator ("1/" gives "01/"); digits never move from one part to
// another. YYYY-MM-DD is turned round. Behind a completed part the caret moves past the new "/" unless the
// key was backspace or delete (`silme`).
struct MaskeSonucu {
  std::string metin;
  int imlec = 0;
};
MaskeSonucu tarihMaskesi(std::string_view text, int imlec, bool silme);

// The parts of one digit with their nought in front, for a field that is left or read: "1/02/2012".
std::string tarihTamamla(std::string_view text);

// DD/MM/YYYY that names a day of the calendar.
bool tarihMi(std::string_view text);
// Reads DD/MM/YYYY (also with "." or "-"); false when it is no day of the calendar.
bool tarihOku(std::string_view text, db::DateTime& tarih);
std::string tarihYaz(const db::DateTime& tarih);  // DD/MM/YYYY

// The Monday of the date's week; when that lies in the year before, stepped on week by week into the
// date's own year. `adim` counts these steps.
struct HaftaBasi {
  db::DateTime tarih;
  int adim = 0;
};
HaftaBasi Hafta_Basi(const db::DateTime& tarih);

}  // namespace session
