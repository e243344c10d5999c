// A server of its own with two upgraded companies, KAYNAK for 2012 and HEDEF for 2013.
#pragma once

#include <functional>

#include "bench/bare.h"
#include "catalog/sunucu_hazirla.h"
#include "company/firma_karti.h"
#include "company/upgrade/guncelle.h"
#include "db/drivers.h"
#include "rollover/devir.h"
#include "session/statements.h"
#include "session/yerel_ortam.h"
#include "support/izleyen_surucu.h"

namespace bench {

struct Silent : session::Boxes, session::Progress {
  void message(const std::string& text, session::Icon, std::string_view) override {
    std::fprintf(stderr, "%s\n", text.c_str());
  }
  bool ask(const std::string&, session::Icon, std::string_view) override { return true; }
  void text(const std::string&) override {}
  void step(std::int64_t, std::int64_t) override {}
  void whole(std::int64_t, std::int64_t) override {}
  void pump() override {}
};

inline double processorOf(const std::function<void()>& work) {
  const double before = processorSeconds();
  work();
  return processorSeconds() - before;
}

template <class Surucu>
struct DevirOrtami {
  DevirOrtami() {
    surucu.local("(yerel)")->create("sa", "gizli");
    o.surucu = &surucu;
    o.kutular = &silent;
    o.ilerleme = &silent;
    o.saat = &saat;
    o.platform = &platform;
    o.Server_Adi = "(yerel)";
    o.SQL_Login = "sa";
    o.SQL_Sifre = "gizli";
    o.Tanim_DB_Versiyon = o.Firma_DB_Versiyon = "2012.002";
    catalog::Sunucu_Hazirla(o, {"Korvena", "abc", ""});
    o.Veri_Klasoru = o.Baglanti->query("SELECT sysdtyl FROM sysDTYL")->value(0, 0).trimmed();
    firmaYap("KAYNAK", "00001", "2012");
    firmaYap("HEDEF", "00002", "2013");
  }
  rollover::DevirGirdisi girdi() {
    rollover::DevirGirdisi g;
    rollover::Firma_Kayit_Getir(o, "KAYNAK", g.taraf[0]);
    rollover::Firma_Kayit_Getir(o, "HEDEF", g.taraf[1]);
    return g;
  }

  const Folder temporary;
  Surucu surucu{db::makeConnectionFactory(temporary.path)};
  Silent silent;
  session::YerelSaat saat;
  session::YerelPlatform platform{temporary.path};
  session::Oturum o;

 private:
  void firmaYap(const std::string& ad, const std::string& kod, const std::string& yil) {
    o.Yeni_Kayit = true;
    company::FirmaKarti kart;
    kart.Firma_Adi = kart.Firma_Unvani = ad;
    kart.Firma_Kodu = kod;
    kart.Bas_Tar = "01/01/" + yil;
    kart.Bit_Tar = "31/12/" + yil;
    company::Kaydet(o, kart);
    company::upgrade::Veritabani_Guncelle(o, ad);
  }
};

}  // namespace bench
