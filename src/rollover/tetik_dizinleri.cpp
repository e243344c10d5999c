// A card that is overwritten makes its trigger look for its rows in every movement table of the target, one
// card after another, and the schema has no index for that. While many cards are overwritten such indexes
// stand, inside the run's transaction; what the triggers write is the same with them.
#include <array>

#include "rollover/kopya.h"

namespace rollover {

namespace {

struct TetikDizini {
  std::string_view kart, tablo, kolon;
};
constexpr std::array<TetikDizini, 31> dizinler = {{
    {"STOKKART", "STOKHAREKET", "Stok_ID"},
    {"STOKKART", "FATURAHAREKET", "Stok_ID"},
    {"STOKKART", "AMBTRS", "Stok_ID"},
    {"STOKKART", "ENVANTER", "Stok_ID"},
    {"STOKKART", "SIPARISHAREKET", "Stok_ID"},
    {"STOKKART", "RECETEKART", "Stok_ID"},
    {"STOKKART", "RECETEHAREKET", "Stok_ID"},
    {"CARIKART", "ACILIS", "Cari_ID"},
    {"CARIKART", "KASAHAREKET", "Cari_ID"},
    {"CARIKART", "SIPARISKART", "Cari_ID"},
    {"CARIKART", "SIPARISHAREKET", "Cari_ID"},
    {"CARIKART", "STOKHAREKETKART", "Cari_ID"},
    {"CARIKART", "STOKHAREKET", "Cari_ID"},
    {"CARIKART", "BANKAHAREKET", "Cari_ID"},
    {"CARIKART", "BORDRO", "Cari_ID"},
    {"CARIKART", "CEKKART", "Cari_ID"},
    {"CARIKART", "CEK", "Cari_ID"},
    {"CARIKART", "CEK", "Cek_ID"},
    {"CARIKART", "CEKDURUM", "Bordro_ID"},
    {"CARIKART", "SENETKART", "Cari_ID"},
    {"CARIKART", "SENET", "Cari_ID"},
    {"CARIKART", "SENET", "Senet_ID"},
    {"CARIKART", "SENETDURUM", "Bordro_ID"},
    {"CARIKART", "CARIHAREKET", "Cari_ID"},
    {"CARIKART", "FATURAKART", "Cari_ID"},
    {"CARIKART", "FATURAHAREKET", "Cari_ID"},
    {"CARIKART", "POSHAREKET", "Cari_ID"},
    // Triggers of the movements keep the payments.
    {"CARIKART", "ODEMEHAREKET", "Islem_ID"},
    {"CEK", "ODEMEHAREKET", "Islem_ID"},
    {"SENET", "ODEMEHAREKET", "Islem_ID"},
    {"POSHAREKET", "ODEMEHAREKET", "Islem_ID"},
}};

template <class Deyim>
void hepsi(Baglam& b, std::string_view kart, const Deyim& deyim) {
  std::string batch;
  for (const TetikDizini& d : dizinler)
    if (d.kart == kart && b.hedefte(d.tablo))
      batch += deyim(std::string(d.tablo), std::string(d.kolon)) + "\n";
  if (!batch.empty()) b.yap(batch);
}

}  // namespace

void tetikDizinleriKur(Baglam& b, std::string_view kart) {
  hepsi(b, kart, [](const std::string& tablo, const std::string& kolon) {
    return "CREATE INDEX DEVIR_" + kolon + " ON " + tablo + " (" + kolon + ")";
  });
}

void tetikDizinleriKaldir(Baglam& b, std::string_view kart) {
  hepsi(b, kart, [](const std::string& tablo, const std::string& kolon) {
    return "DROP INDEX " + tablo + ".DEVIR_" + kolon;
  });
}

}  // namespace rollover
