// A good card, and a server that knows no company yet and answers as the card's save needs it.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "company/kart_alanlari.h"
#include "company/plan_dosyasi.h"
#include "support/fakes.h"
#include "support/firma_karti.h"

namespace kart_testi {

inline company::FirmaKarti gecerliKart() {
  auto kart = support::firmaKarti("ORNEK2012");
  kart.Firma_Unvani = "Örnek Ticaret";
  return kart;
}

// The new row's id is 7.
struct KartSunucusu : support::FakeSurroundings {
  KartSunucusu() {
    std::vector<std::string> names;
    for (const auto& alan : company::kartAlanlari()) {
      names.emplace_back(alan.column);
    }
    for (const auto& [column, value] : company::yeniFirmaDegerleri()) {
      names.emplace_back(column);
    }
    for (const char* name : {"KilitBasTarih", "KilitBitTarih", "DBVRSYN", "YR_DT"}) {
      names.emplace_back(name);
    }
    server.rows("Select * from sysfrmlng", names, {});
    server.rows("SELECT sysfrm_ID FROM sysfrmlng", {"sysfrm_ID"}, {{7}});
    server.rows("SELECT * FROM sysuslng", {"sysus_nm", "sysus"}, {{"KORVENA        ", "ÃÆÉ"}});
    oturum.Yeni_Kayit = true;
    oturum.Tanim_DB_Versiyon = "2012.002";
    oturum.Veri_Klasoru = "/nowhere";
  }
  void bilinen(int nesneler = 5) {
    server.rows("sysdatabases where name", {"name"}, {{"ORNEK2012"}});
    server.rows("master.dbo.sysdatabases WHERE dbid", {"name"}, {{"Ornek2012"}});
    server.rows("master.dbo.sysprocesses", {"n"}, {{nesneler}});
  }
  // The server knows an empty database that no list shows.
  void sahipsiz() { bilinen(0); }
  void eskiSatir() { server.rows("THEN 'AYNI'", {"a", "b", "c"}, {{3, "ornek2012", "YOK"}}); }
  // Found once the row has been written.
  void yeniSatir() {
    server.rows("THEN 'AYNI'", {"a", "b", "c"}, {{7, "ORNEK2012", ""}});
    server.rows("THEN 'AYNI'", {"a", "b", "c"}, {}, 1);
  }
  void varOlan() {
    oturum.Yeni_Kayit = false;
    oturum.Secili_ID = 3;
    oturum.Eski_Firma_Adi = " ORNEK2012 ";
    std::vector<std::string> names;
    for (const auto& alan : company::kartAlanlari()) names.emplace_back(alan.column);
    std::vector<db::Value> row(names.size(), db::Value("x"));
    server.rows("Select * from sysfrmlng WHERE", names, {row});
  }
  void plan() {
    platform.folder = ZEMBERA_DATA;
    server.rows("SELECT Rapor_ID", {"Rapor_ID"}, {{4}});
    auto columns = company::maliTabloKolonlari();
    columns.push_back("Rapor_ID");
    server.rows("MUHASEBEMALITABLOHAREKET ", columns, {});
    server.rows("SELECT * FROM ORNEK2012.dbo.MUHKART",
                {"MHesap_Kod", "Ana_Hesap_Kod", "MHesap_Ad", "HesapSeviyesi", "Doviz_ID", "Aktif",
                 "Bakiye_Tipi", "Hesap_Tipi", "Kullanici_ID", "Ekleme_Tarihi", "Degistirme_Tarihi",
                 "Ekleme_Saati", "Degistirme_Saati", "Degistiren_Kullanici"},
                {});
  }
  bool sent(std::string_view part) const { return first(part) != server.statements.size(); }
  std::size_t first(std::string_view part) const {
    return static_cast<std::size_t>(
        std::find_if(server.statements.begin(), server.statements.end(),
                     [&](const std::string& s) { return s.find(part) != std::string::npos; }) -
        server.statements.begin());
  }
};

}  // namespace kart_testi
