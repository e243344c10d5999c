// Repairs of rows that the upgrade runs when it finds or makes the need for them.
#pragma once

#include <string>
#include <vector>

#include "company/upgrade/sema_goruntusu.h"
#include "company/upgrade/yurutucu.h"

namespace company::upgrade {

// Statements that write the depth of every ledger account: the number of dots in its code. The chart
// loader gives all its accounts level 1 instead; both stand as they are.
std::vector<std::string> Hesap_Seviyesi_Hesapla(Yurutucu& yurutucu);

// Statements that name the other warehouse on both sides of every warehouse transfer. A transfer whose
// incoming slip is missing gets none on the outgoing side; one without a warehouse names none.
std::vector<std::string> Karsi_Ambar_Doldur(Yurutucu& yurutucu);

// Moves card collections that belong to no sale from POSHAREKET to CARIHAREKET, their ledger links with
// them, in one transaction; those that the server refuses stay.
void Kredi_Tahsilat_Tasi(Yurutucu& yurutucu, const SemaGoruntusu& sema);

// Writes Personel_ID of each person into the salesman of the same code.
void saticilariBagla(Yurutucu& yurutucu);

}  // namespace company::upgrade
