// Writing a row of rights, for the editor and for what writes rights without it. Inside a transaction on
// Baglanti; a failure is thrown.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "rights/yetki_duzeni.h"

namespace rights {

// Opens the user's row in a company for writing; false, with the reason shown, when there is none.
bool satiriAc(session::Oturum& oturum, db::Recordset& kayitlar, const std::string& firmaId,
              const std::string& kullanici);
// Writes columns of the row that `kayitlar` has open, in one UPDATE: a recordset's own writing would ask SQL
// Server for the table's columns and key first. Other programs made the catalog: a column that it does not
// have is left out. False, with the reason shown, when the row has gone meanwhile.
using KolonDegerleri = std::vector<std::pair<std::string_view, db::Value>>;
bool satiriYaz(session::Oturum& oturum, const db::Recordset& kayitlar, const KolonDegerleri& degerler);
// Null leaves the table as it is.
void yerYetkileriniYaz(session::Oturum& oturum, const std::string& firma, const std::string& kullanici,
                       const Yerler* ambarlar, const Yerler* isyerleri);

}  // namespace rights
