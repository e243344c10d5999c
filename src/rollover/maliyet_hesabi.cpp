// The costing of all items: their histories in the order of the replay, page by page.
#include "rollover/adimlar.h"
#include "rollover/maliyet.h"

namespace rollover {

namespace {

constexpr int sayfa = 5000;

std::optional<Para> para(const db::Value& deger) {
  if (deger.isNull()) return std::nullopt;
  return Para::sayidan(deger.real());
}

// DEVIR_HAREKET stands in the target while the replay goes on: its numbers make pages of an order for which
// the movements have no index, so that memory does not grow with them.
std::int64_t gecmisleriSirala(Baglam& b) {
  b.yap(
      "CREATE TABLE DEVIR_HAREKET (Sira INT NOT NULL IDENTITY(1,1) PRIMARY KEY, Stok_ID INT NULL, Giris REAL "
      "NULL, Cikis REAL NULL, Maliyet FLOAT NULL)");
  return b.yap(
      "INSERT INTO DEVIR_HAREKET (Stok_ID,Giris,Cikis,Maliyet) SELECT Stok_ID,Giris,Cikis,Maliyet FROM " +
      b.k("STOKHAREKET") + " WHERE " + maliyetKosulu(b) + " ORDER BY Stok_ID,Tarih,Cikis,Stok_Hareket_ID");
}

class Yurutme {
 public:
  void satir(std::int64_t stok, const MaliyetHareketi& hareket) {
    if (stok != stok_) bitir();
    stok_ = stok;
    hesap_.isle(hareket);
    ++sonuc_.hareket;
  }
  Maliyetler sonuc() {
    bitir();
    return std::move(sonuc_);
  }

 private:
  void bitir() {
    if (stok_ != 0) {
      sonuc_.birim.emplace_back(stok_, hesap_.birimMaliyet());
      sonuc_.miktar = sonuc_.miktar + hesap_.miktar();
    }
    hesap_ = {};
  }

  std::int64_t stok_ = 0;
  Maliyetlendirme_AOG hesap_;
  Maliyetler sonuc_;
};

}  // namespace

std::string maliyetKosulu(const Baglam& b) {
  return "Satir_Tipi='Mal' AND Islem_Tipi NOT LIKE 'Konsinye%' AND Stok_ID IS NOT NULL AND Tarih <= " +
         tarihSql(b.g.taraf[0].Bit_Tar);
}

const Maliyetler& maliyetler(Baglam& b) {
  if (b.maliyetler) return *b.maliyetler;
  const std::int64_t toplam = gecmisleriSirala(b);
  Yurutme yurutme;
  for (std::int64_t sira = 0; sira < toplam;) {
    const auto rows =
        b.oku("SELECT Sira,Stok_ID,Giris,Cikis,Maliyet FROM DEVIR_HAREKET WHERE Sira>" +
              std::to_string(sira) + " AND Sira<=" + std::to_string(sira + sayfa) + " ORDER BY Sira");
    for (std::int64_t i = 0; i < rows->count(); ++i)
      yurutme.satir(rows->value(i, 1).integer(),
                    {para(rows->value(i, 2)), para(rows->value(i, 3)), para(rows->value(i, 4))});
    sira += sayfa;
    b.adim(sira, toplam);
  }
  b.yap("DROP TABLE DEVIR_HAREKET");
  b.maliyetler = yurutme.sonuc();
  return *b.maliyetler;
}

}  // namespace rollover
