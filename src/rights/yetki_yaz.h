// Writing a row of rights, for the editor and for what writes rights without it. Inside a transaction on
// Baglanti; a failure is thrown.
#pragma once

#include "rights/yetki_duzeni.h"

namespace rights {

// Opens the user's row in a company for writing; false, with the reason shown, when there is none.
bool satiriAc(session::Oturum& oturum, db::Recordset& kayitlar, const std::string& firmaId,
              const std::string& kullanici);
void kolonlariKoy(db::Recordset& kayitlar, const YetkiSatiri& satir);
// Null leaves the table as it is.
void yerYetkileriniYaz(session::Oturum& oturum, const std::string& firma, const std::string& kullanici,
                       const Yerler* ambarlar, const Yerler* isyerleri);

}  // namespace rights
