#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 1> options = {{bicimTsv}};

constexpr std::string_view statement =
    "SELECT sysfrm_dbnm AS Ad,sysfrm_kd AS Kod,sysfrm_nm AS Unvan,CONVERT(CHAR(10),Mali_Yil_Baslangic,103) "
    "AS "
    "Baslangic,CONVERT(CHAR(10),Mali_Yil_Bitis,103) AS Bitis FROM sysfrmlng ORDER BY sysfrm_kd,sysfrm_dbnm";

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const auto rows = komut.oturum.Baglanti->query(statement);
  if (rows) sonucYaz(ortam, *rows, bicim);
  return tamam;
}

}  // namespace

const Komut& firmaListeleKomutu() {
  static const Komut command{"firma-listele", "Katalogdaki firmaları listeler", "", options, run};
  return command;
}

}  // namespace cli
