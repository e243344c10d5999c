#include "rights/islem.h"

#include <cstdlib>

#include "catalog/katalog.h"
#include "platform/code_page.h"
#include "session/statements.h"

namespace rights {

using session::Oturum;

namespace {

constexpr int kilitZamani = 1222;  // the server's number for a lock that did not come in time

void goster(Oturum& oturum, std::string_view yapilamadi, const db::SqlError& hata) {
  oturum.Son_Hata = std::to_string(hata.number()) + " : " + hata.what();
  const char* kilitli =
      "\nBilgiler başka bir program tarafından kilitlenmiş; lütfen biraz sonra yeniden deneyiniz.";
  oturum.kutular->message(
      std::string(yapilamadi) + (hata.serverNumber() == kilitZamani ? kilitli : "\n" + oturum.Son_Hata),
      session::Icon::Stop);
}

}  // namespace

bool katalogaBaglan(Oturum& oturum) {
  return hatayiGoster(oturum, "Tanım veritabanına bağlanılamadı.", [&] {
    session::Katalog_Bagla(oturum, std::string(katalogAdi));
    return true;
  });
}

bool hatayiGoster(Oturum& oturum, std::string_view yapilamadi, const std::function<bool()>& is) {
  try {
    return is();
  } catch (const db::SqlError& hata) {
    goster(oturum, yapilamadi, hata);
    return false;
  }
}

bool tekIslem(Oturum& oturum, std::string_view yapilamadi, const std::function<bool()>& is) {
  try {
    oturum.Baglanti->execute(islemBasi);
    if (is()) {
      oturum.Baglanti->execute("COMMIT TRAN");
      return true;
    }
    oturum.Kayitlar.close();
    session::Sorgu_Ac(oturum, oturum.Kayitlar, "IF @@TRANCOUNT>0 ROLLBACK TRAN");
  } catch (const db::SqlError& hata) {
    oturum.Kayitlar.close();
    // Silently: with the link the transaction is gone, too.
    session::Sorgu_Ac(oturum, oturum.Kayitlar, "IF @@TRANCOUNT>0 ROLLBACK TRAN");
    goster(oturum, yapilamadi, hata);
  }
  return false;
}

int kolonGenisligi(std::string_view tablo, std::string_view kolon) {
  for (const catalog::TableDef& table : catalog::catalogTables()) {
    const catalog::ColumnDef* column = table.name == tablo ? table.column(kolon) : nullptr;
    if (!column) continue;
    const std::size_t bracket = column->type.find('(');
    return bracket == std::string::npos ? 0 : std::atoi(column->type.c_str() + bracket + 1);
  }
  return 0;
}

std::string sigmazHatasi(std::string_view tablo, std::string_view kolon, std::string_view yazi,
                         const std::string& metin) {
  const auto sayfa = platform::encode1254Exactly(metin);
  const int genislik = kolonGenisligi(tablo, kolon);
  if (!sayfa) return std::string(yazi) + " Türkçe kod sayfasında (1254) olmayan karakter içeriyor.";
  if (genislik > 0 && sayfa->size() > static_cast<std::size_t>(genislik))
    return std::string(yazi) + " en çok " + std::to_string(genislik) + " karakter olabilir.";
  return "";
}

}  // namespace rights
