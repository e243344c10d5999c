#include "rollover/kanit_maliyeti.h"

#include <cmath>

namespace rollover {

namespace {

constexpr double olcek = 10'000;

std::int64_t onBinde(double deger) {
  return std::llrint(deger * olcek);
}

// Of 64 bits of mantissa none is lost; a half goes to the even one.
std::int64_t carpim(std::int64_t a, std::int64_t b) {
  return std::llrint(static_cast<long double>(a) * static_cast<long double>(b) /
                     static_cast<long double>(olcek));
}

}  // namespace

// The day decides before the item: every item's average moves on as the days go by.
KanitMaliyeti::KanitMaliyeti(Baglam& b) {
  b.akit("SELECT Stok_ID,Giris,Cikis,Maliyet FROM " + b.k("STOKHAREKET") +
             " WHERE Satir_Tipi='Mal' AND LEFT(Islem_Tipi,8)<>'Konsinye' AND Tarih<=" +
             tarihSql(b.g.taraf[0].Bit_Tar) + " ORDER BY Tarih,Cikis,Stok_Hareket_ID",
         [&](const db::Rows& rows, std::int64_t i) {
           const db::Value stok = rows.value(i, 0), giris = rows.value(i, 1), cikis = rows.value(i, 2),
                           maliyet = rows.value(i, 3);
           if (stok.isNull() || giris.isNull() || cikis.isNull()) return;  // moves nothing
           const std::int64_t birim = maliyet.isNull() ? 0 : onBinde(maliyet.real());
           isle(kalemler_[stok.integer()], onBinde(giris.real()) - onBinde(cikis.real()),
                maliyet.isNull() ? nullptr : &birim);
         });
}

void KanitMaliyeti::isle(Kalem& kalem, std::int64_t net, const std::int64_t* maliyet) {
  kalem.miktar += net;
  kalem.deger += carpim(net, net <= 0 ? kalem.birim : maliyet != nullptr ? *maliyet : 0);
  if (net <= 0) return;
  if (kalem.miktar > 0)
    kalem.birim = onBinde(static_cast<double>(kalem.deger) / static_cast<double>(kalem.miktar));
  else
    kalem.birim = maliyet != nullptr ? *maliyet : 0;
  if (kalem.birim < 0) kalem.birim = 0;
}

Para KanitMaliyeti::degeri(std::int64_t stok, Para miktar) const {
  const auto at = kalemler_.find(stok);
  return {at == kalemler_.end() ? 0 : carpim(miktar.birim, at->second.birim)};
}

}  // namespace rollover
