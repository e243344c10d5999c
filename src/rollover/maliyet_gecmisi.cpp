#include "rollover/maliyet_gecmisi.h"

#include "catalog/katalog.h"
#include "rollover/baglam.h"
#include "rollover/maliyet.h"
#include "session/statements.h"

namespace rollover {

namespace {

std::optional<Para> para(const db::Value& deger) {
  if (deger.isNull()) return std::nullopt;
  return Para::sayidan(deger.real());
}

std::string noktali(const db::Value& deger) {
  const std::string t = deger.text();  // YYYY-MM-DD ...
  return t.size() < 10 ? "" : t.substr(8, 2) + "." + t.substr(5, 2) + "." + t.substr(0, 4);
}

void oku(session::Oturum& oturum, const std::string& bitis, MaliyetGecmisi& g) {
  db::Connection& c = *oturum.Baglanti;
  const auto kart = c.query("SELECT Stok_ID,Stok_Kod,Stok_Ad FROM " + g.firma +
                            ".dbo.STOKKART WHERE Stok_Kod=" + tirnakli(g.stokKod) + " ORDER BY Stok_ID");
  if (!kart || kart->count() == 0) {
    g.hata = "Stok kartı bulunamadı: " + g.stokKod;
    return;
  }
  g.stokKod = kart->value(0, 1).trimmed();
  g.stokAd = kart->value(0, 2).trimmed();
  const auto rows =
      c.query("SELECT Tarih,Fis_No,Islem_Tipi,Ambar_No,Giris,Cikis,Maliyet FROM " + g.firma +
              ".dbo.STOKHAREKET WHERE Stok_ID=" + kart->value(0, 0).text() +
              " AND Satir_Tipi='Mal' AND Islem_Tipi NOT LIKE 'Konsinye%' AND Tarih <= " + tarihSql(bitis) +
              " ORDER BY Tarih,Cikis,Stok_Hareket_ID");
  Maliyetlendirme_AOG hesap;
  for (std::int64_t i = 0; rows && i < rows->count(); ++i) {
    const MaliyetHareketi h{para(rows->value(i, 4)), para(rows->value(i, 5)), para(rows->value(i, 6))};
    hesap.isle(h);
    g.satirlar.push_back({noktali(rows->value(i, 0)), rows->value(i, 1).trimmed(),
                          rows->value(i, 2).trimmed(), static_cast<int>(rows->value(i, 3).integer()),
                          h.giris.value_or(Para{}), h.cikis.value_or(Para{}), h.maliyet.value_or(Para{}),
                          hesap.miktar(), hesap.deger(), hesap.birimMaliyet()});
  }
}

}  // namespace

MaliyetGecmisi Maliyet_Gecmisi(session::Oturum& oturum, const std::string& firmaAdi,
                               const std::string& stokKod) {
  MaliyetGecmisi g;
  g.firma = firmaAdi;
  g.stokKod = stokKod;
  try {
    if (!oturum.Baglanti || oturum.Baglanti->state() != db::State::Open ||
        oturum.Baglanti->parts().database != catalog::catalogDatabase)
      session::Katalog_Bagla(oturum, std::string(catalog::catalogDatabase));
    DevirTarafi taraf;
    if (!Firma_Kayit_Getir(oturum, firmaAdi, taraf) || taraf.Bit_Tar.empty()) {
      g.hata = "Firma bulunamadı: " + firmaAdi;
      return g;
    }
    g.firma = taraf.Firma_Adi;
    oku(oturum, taraf.Bit_Tar, g);
  } catch (const db::SqlError& hata) {
    g.hata = hata.what();
  }
  return g;
}

}  // namespace rollover
