#include "company/upgrade/eksik.h"

#include <algorithm>
#include <array>

#include "company/schema/schema.h"

namespace company::upgrade {

namespace {

// Dropped by the upgrade and not made again.
bool kalkar(const std::string& tablo) {
  const auto& sira = schema::tableOrder(schema::Stage::Upgrade);
  return std::ranges::find(sira, "DROP " + tablo) != sira.end() &&
         std::ranges::find(sira, tablo) == sira.end();
}

}  // namespace

SemaEksigi semaEksigi(const SemaGoruntusu& sema) {
  SemaEksigi eksik;
  for (const auto& tablo : schema::tables()) {
    if (kalkar(tablo.name)) continue;
    if (!sema.nesneVar(tablo.name, "U")) {
      ++eksik.tablolar;
      continue;
    }
    eksik.kolonlar += std::ranges::count_if(tablo.columns, [&](const catalog::ColumnDef& kolon) {
      if (kolon.dropped) return false;
      // As the column is, not as the upgrade asks for it: some it asks for anew each time.
      const TipBoy tip = tipBoy(kolon.type);
      const KolonDurumu* durum = sema.kolon(tablo.name, kolon.name);
      return !durum || durum->type != tip.type || durum->length != tip.length;
    });
  }
  const auto yok = [&](const char* tip) {
    return [&sema, tip](const std::string& ad) { return !sema.nesneVar(ad, tip); };
  };
  eksik.gorunumler = std::ranges::count_if(schema::viewOrder(schema::Stage::Upgrade), yok("V")) +
                     std::ranges::count_if(schema::triggerOrder(schema::Stage::Upgrade), yok("TR"));
  return eksik;
}

std::string eksikYazisi(const SemaEksigi& eksik) {
  const std::array<std::pair<std::int64_t, const char*>, 3> satirlar = {
      {{eksik.tablolar, " tablo"}, {eksik.kolonlar, " kolon"}, {eksik.gorunumler, " görünüm"}}};
  std::string metin;
  for (const auto& [sayi, ad] : satirlar)
    if (sayi > 0) metin += (metin.empty() ? "" : ", ") + std::to_string(sayi) + ad;
  return metin.empty() ? metin : metin + " eksik";
}

std::optional<SemaEksigi> Sema_Eksigi_Oku(const session::OturumDegerleri& oturum, const std::string& firma) {
  try {
    const auto baglanti = oturum.surucu->make(oturum.Server_Adi);
    baglanti->open({oturum.Server_Adi, oturum.SQL_Login, oturum.SQL_Sifre,
                    std::string(session::katalogVeritabani), false});
    return semaEksigi(SemaGoruntusu::oku(*baglanti, firma));
  } catch (const db::SqlError&) {
    return std::nullopt;
  }
}

}  // namespace company::upgrade
