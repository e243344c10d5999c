// The company database behind a settings screen.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"
#include "session/izgara.h"
#include "session/oturum.h"

namespace settings {

// Closes Baglanti2 when open and opens it on the company's database; the reason when it cannot be had.
std::string Firma_Bagla(session::Oturum& oturum, const std::string& veritabani);

// A refused statement as a person is told it: a missing table or column names the upgrade as the way out.
std::string sqlHatasi(const db::SqlError& hata, const std::string& veritabani);

// Place of a column; one that the table lacks is the server's fault 207, as if a statement had named it.
int kolonYeri(const db::Rows& tablo, std::string_view ad);

// Number and name of each warehouse, read on Baglanti2.
std::vector<session::ListeSecenegi> Ambar_Listesi(session::Oturum& oturum);

}  // namespace settings
