// The costing of all items: their histories in the order of the replay, as they come from the server.
#include "rollover/adimlar.h"
#include "rollover/maliyet.h"

namespace rollover {

namespace {

std::optional<Para> para(const db::Value& deger) {
  if (deger.isNull()) return std::nullopt;
  return Para::sayidan(deger.real());
}

class Yurutme {
 public:
  void satir(std::int64_t stok, const MaliyetHareketi& hareket) {
    if (stok != stok_) bitir();
    stok_ = stok;
    hesap_.isle(hareket);
  }
  Maliyetler sonuc() {
    bitir();
    return std::move(sonuc_);
  }

 private:
  void bitir() {
    if (stok_ != 0) sonuc_.birim.emplace_back(stok_, hesap_.birimMaliyet());
    hesap_ = {};
  }

  std::int64_t stok_ = 0;
  Maliyetlendirme_AOG hesap_;
  Maliyetler sonuc_;
};

}  // namespace

Maliyetler maliyetler(Baglam& b) {
  Yurutme yurutme;
  b.akit("SELECT Stok_ID,Giris,Cikis,Maliyet FROM " + b.k("STOKHAREKET") +
             " WHERE Satir_Tipi='Mal' AND Islem_Tipi NOT LIKE 'Konsinye%' AND Stok_ID IS NOT NULL AND Tarih "
             "<= " +
             tarihSql(b.g.taraf[0].Bit_Tar) + " ORDER BY Stok_ID,Tarih,Cikis,Stok_Hareket_ID",
         [&](const db::Rows& rows, std::int64_t i) {
           yurutme.satir(rows.value(i, 0).integer(),
                         {para(rows.value(i, 1)), para(rows.value(i, 2)), para(rows.value(i, 3))});
         });
  return yurutme.sonuc();
}

}  // namespace rollover
