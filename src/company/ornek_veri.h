// Fills a company with believable data: what the suite's programs would have written in a year of work, with
// their columns, type strings, numbers and counters, and through the database's own triggers.
//
// Scale 1: about 500 stock items in three warehouses, 300 current accounts, four cash boxes, three banks with
// card agreements, 2,000 invoices and slips with lines, payments, cheques and notes in every state, orders
// open and closed, ledger slips. Everything but the definitions grows linearly with the scale; memory by what
// stands on each card alone, some 8 kB a unit.
#pragma once

#include <cstdint>
#include <string>

#include "company/ornek/secenekler.h"
#include "session/oturum.h"

namespace company {

struct OrnekVeriSonucu {
  std::string hata;        // empty when all went well
  bool yarida = false;     // with an error: something had been written before
  std::int64_t satir = 0;  // rows written, those of the triggers not counted
};

// Writes into the database `firmaAdi`, whose period the catalog tells. Refuses a company that the catalog
// does not know and one that has stock cards already. Leaves Baglanti on the database.
OrnekVeriSonucu Ornek_Veri_Yaz(session::Oturum& oturum, const std::string& firmaAdi,
                               const OrnekVeriSecenekleri& secenekler, const OrnekDinleyici& dinleyici = {});

}  // namespace company
