// The floor of a rollover: the rows that a run wrote into an empty company, written once more by set-based
// statements, each prepared and run once, in the bare storage library. They come from the source's file, not
// from the finished target: cards and documents by INSERT ... SELECT with a look-up by code for each
// reference, openings from GROUP BY over the source's movements, unit costs from one ordered read of the
// movements. No server, no triggers, no proof, no progress, no types to check; codes compare by their bytes.
// The few rows of small tables and of those that triggers fill are copied from the target as they are.
#pragma once

#include <functional>
#include <map>
#include <set>

#include "bench/bare.h"
#include "rollover/maliyet.h"

namespace bench {

class DevirTabani {
 public:
  explicit DevirTabani(const std::filesystem::path& folder)
      : hedef_(folder / "veri" / "HEDEF.mdf"), to_(folder / "taban.db") {
    for (const auto& tablo : tablesOf(hedef_)) {
      tablolar_.insert(tablo);
      for (const auto& tanim : definitionsOf(hedef_, tablo)) to_.run(tanim);
    }
    to_.run("ATTACH '" + (folder / "veri" / "KAYNAK.mdf").string() + "' AS k");
    to_.run("ATTACH '" + (folder / "veri" / "HEDEF.mdf").string() + "' AS h");
    to_.run("CREATE TEMP TABLE maliyet (Stok_ID INTEGER PRIMARY KEY, M REAL)");
  }

  // Processor time in seconds.
  double olc() {
    const double once = processorSeconds();
    to_.run("BEGIN");
    yaz();
    to_.run("COMMIT");
    return processorSeconds() - once;
  }

  // Where rows and sums differ from those of the run; empty when they do not.
  std::string farklar() {
    std::string out;
    for (const std::string& tablo : tablolar_) esit("SELECT COUNT(*) FROM %.\"" + tablo + "\"", tablo, out);
    esit("SELECT ROUND(SUM(Tutar),4) FROM %.STOKHAREKET", "STOKHAREKET.Tutar", out);
    esit("SELECT ROUND(SUM(Maliyet),4) FROM %.STOKHAREKET", "STOKHAREKET.Maliyet", out);
    esit("SELECT ROUND(SUM(BTutar-ATutar),2) FROM %.ACILIS", "ACILIS tutarları", out);
    esit("SELECT SUM(Vade) FROM %.ACILIS", "ACILIS.Vade", out);
    esit("SELECT ROUND(SUM(BTutar-ATutar),2) FROM %.BANKAHAREKET", "BANKAHAREKET tutarları", out);
    for (const char* const kolon : {"STOKKART.KDVGrup_ID", "CARIKART.MHesap_ID", "CEKKART.Cari_ID",
                                    "CEK.Cari_ID", "SIPARISHAREKET.Stok_ID", "STOKFIYAT.Stok_ID"}) {
      const std::string ad = kolon;
      const auto nokta = ad.find('.');
      esit("SELECT SUM(" + ad.substr(nokta + 1) + ") FROM %." + ad.substr(0, nokta), ad, out);
    }
    return out;
  }

 private:
  void esit(std::string sql, const std::string& ad, std::string& out) {
    const auto yer = sql.find('%');
    const auto bizim = to_.texts(std::string(sql).replace(yer, 1, "main"));
    const auto onun = to_.texts(sql.replace(yer, 1, "h"));
    if (bizim != onun) out += ad + ": " + bizim.at(0) + ", " + onun.at(0) + "\n";
  }

  void deyim(const std::string& sql) {
    sqlite3_stmt* s = to_.prepare(sql);
    to_.once(s);
    sqlite3_finalize(s);
  }

  // The target's id of the source's id in `kolon`.
  static std::string kod(const std::string& tablo, const std::string& kimlik, const std::string& anahtar,
                         const std::string& kolon) {
    return "IFNULL((SELECT x.\"" + kimlik + "\" FROM k." + tablo + " r,main." + tablo + " x WHERE r.\"" +
           kimlik + "\"=" + kolon + " AND x." + anahtar + "=r." + anahtar + " LIMIT 1),IFNULL(" + kolon +
           ",0))";
  }
  static std::string referans(const std::string& kolon, bool belge) {
    const std::string s = "s.\"" + kolon + "\"";
    if (kolon == "Satici_ID") return kod("SATICI", "Satici_ID", "Satici_Kodu", s);
    if (kolon == "Doviz_ID") return kod("DOVIZTANIM", "Doviz_ID", "Doviz_Kod", s);
    if (kolon == "KDVGrup_ID") return kod("KDVGRUPLARI", "Grup_ID", "Departman_No", s);
    if (kolon == "Odeme_Plan_ID") return kod("SABLONKART", "Sablon_ID", "Sablon_Kod", s);
    if (kolon.find("MHesap_ID") != std::string::npos && kolon != "Ana_Hesap_ID" && !belge)
      return kod("MUHKART", "MHesap_ID", "MHesap_Kod", s);
    if (!belge) return s;
    if (kolon == "Cari_ID") return kod("CARIKART", "Cari_ID", "Cari_Kod", s);
    if (kolon == "Stok_ID") return kod("STOKKART", "Stok_ID", "Stok_Kod", s);
    if (kolon == "Hesap_ID") return kod("HESAPKART", "Hesap_ID", "Hesap_No", s);
    if (kolon == "Kasa_ID") return kod("KASAKART", "Kasa_ID", "Kasa_Kod", s);
    return s;
  }

  using Ozel = std::map<std::string, std::string>;
  // Rows of a table with their references; `ozel` names columns that take another expression.
  void kopya(const std::string& tablo, const std::string& kimlik, bool belge, const std::string& kosul,
             const Ozel& ozel = {}, const std::string& nereden = "") {
    std::set<std::string> kaynakta;
    for (const auto& ad : to_.texts("SELECT name FROM pragma_table_info('" + tablo + "','k')"))
      kaynakta.insert(ad);
    std::string adlar, ifadeler;
    for (const auto& ad : to_.texts("SELECT name FROM pragma_table_info('" + tablo + "','main')")) {
      const auto at = ozel.find(ad);
      if (ad == kimlik || (at == ozel.end() && !kaynakta.contains(ad))) continue;
      adlar += (adlar.empty() ? "\"" : ",\"") + ad + "\"";
      ifadeler += (ifadeler.empty() ? "" : ",") + (at != ozel.end() ? at->second : referans(ad, belge));
    }
    deyim("INSERT INTO main." + tablo + "(\"" + kimlik + "\"," + adlar +
          ") SELECT ROW_NUMBER() OVER (ORDER BY s.\"" + kimlik + "\")," + ifadeler + " FROM k." + tablo +
          " s" + nereden + (kosul.empty() ? "" : " WHERE " + kosul) + " ORDER BY s.\"" + kimlik + "\"");
  }

  void yaz() {
    // Small tables first: the others look them up.
    for (const std::string& tablo : tablolar_)
      if (!buyukler.contains(tablo))
        deyim("INSERT INTO main.\"" + tablo + "\" SELECT * FROM h.\"" + tablo + "\"");
    kopya("MUHKART", "MHesap_ID", false, "",
          {{"Ana_Hesap_ID", "(SELECT y.Ana_Hesap_ID FROM h.MUHKART y WHERE y.MHesap_Kod=s.MHesap_Kod)"}});
    kopya("CARIKART", "Cari_ID", false, "");
    kopya("STOKKART", "Stok_ID", false, "");
    kopya("STOKFIYAT", "Fiyat_ID", false, "",
          {{"Stok_ID", kod("STOKKART", "Stok_ID", "Stok_Kod", "s.Stok_ID")}});
    kopya("POSHAREKET", "PosHareket_ID", true,
          "s.Anlasma_ID>0 AND s.Hesaba_Aktarim_Tarih>" + donemSonu + " AND IFNULL(s.Hesaba_Aktarildi,0)=0",
          {{"Cari_ID", "-1"}, {"Satis_ID", "-1"}});
    kopya("SIPARISKART", "Siparis_ID", true, "s.Durum='AÇIK'", {{"Kullanici_ID", "-1"}});
    kopya(
        "SIPARISHAREKET", "Siparis_Hareket_ID", true,
        "s.Sevk_Edilen<>s.Miktar AND s.Kalan<>0 AND s.Fis_No IN (SELECT Fis_No FROM main.SIPARISKART)",
        {{"Kullanici_ID", "-1"},
         {"Miktar", "s.Kalan"},
         {"Sevk_Edilen", "0"},
         {"Siparis_ID",
          "(SELECT x.Siparis_ID FROM k.SIPARISKART r,main.SIPARISKART x WHERE r.Siparis_ID=s.Siparis_ID AND "
          "x.Siparis_ID=r.Siparis_ID)"}});
    evrak("CEK", "Cek", "Kendi Çekimiz", "Çek Devir Bordrosu", 1);
    evrak("SENET", "Senet", "Kendi Senedimiz", "Senet Devir Bordrosu", 2);
    bankaAcilisi();
    cariAcilisi();
    maliyetler();
    stokAcilisi();
  }

  void evrak(const std::string& tablo, const std::string& ad, const std::string& kendi,
             const std::string& tip, int bordro) {
    const std::string kart = tablo + "KART", kimlik = ad + "_ID", no = std::to_string(bordro);
    const std::string yasayan =
        ".Durum IN ('Parçalı Tahsil','Portföyde','Bankada Tahsilde','Bankada "
        "Teminatta','Karşılıksız','" +
        kendi + "')";
    const Ozel bordrolu = {{"Bordro_ID", no}, {"Bordro_No", "'" + no + "'"}, {"Islem_Tipi", "'" + tip + "'"}};
    kopya(kart, kimlik, true, "s" + yasayan, bordrolu);
    Ozel hareket = bordrolu;
    hareket[kimlik] = kod(kart, kimlik, "Portfoy_No", "s." + kimlik);
    hareket["Cari_ID"] = kod("CARIKART", "Cari_ID", "Cari_Kod", "c.Cari_ID");
    hareket["Cari_Kod"] = "c.Cari_Kod";
    hareket["Cari_Unvan"] = "c.Cari_Unvan";
    kopya(tablo, "Cek_Hareket_ID", true, "c" + yasayan, hareket,
          " JOIN (SELECT " + kimlik + " AS i,MAX(Bordro_ID) AS b FROM k." + tablo + "DURUM GROUP BY " +
              kimlik + ") m ON m.i=s." + kimlik + " AND m.b=s.Bordro_ID JOIN k." + kart + " c ON c." +
              kimlik + "=s." + kimlik);
    deyim("INSERT INTO main." + tablo + "DURUM (Durum_ID,Kullanici_ID,Bordro_ID," + kimlik +
          ",Durum,Durum_Tarih,Bordro_No,Cari_Unvan,Islem_Tipi) SELECT " + kimlik + ",1," + no + "," + kimlik +
          ",Durum," + donemBasi + ",'" + no + "',Cari_Unvan,'" + tip + "' FROM main." + kart);
  }

  void bankaAcilisi() {
    deyim(
        "INSERT INTO main.BANKAHAREKET "
        "(Isyeri_ID,Hareket_ID,Hesap_ID,Hesap_No,Hesap_Ad,Banka_Ad,Tarih,Fis_No,Islem_Tipi,BTutar,ATutar,"
        "Satici_ID,"
        "Doviz_"
        "ID) SELECT 1,ROW_NUMBER() OVER (),x.Hesap_ID,x.Hesap_No,x.Hesap_Ad,x.Banka_Ad," +
        donemBasi +
        ",'1','Banka Açılış Fişi',MAX(ROUND(b.t,2),0),MAX(-ROUND(b.t,2),0),1,1 FROM (SELECT Hesap_ID,SUM(t) "
        "AS "
        "t FROM (SELECT Hesap_ID,BTutar-ATutar AS t FROM k.BANKAHAREKET UNION ALL SELECT "
        "Hesap_ID,ATutar-BTutar FROM k.KASAHAREKET WHERE IFNULL(Hesap_ID,0)<>0 AND Islem_Tipi<>'Banka Kredi "
        "Tahsilatı' UNION ALL SELECT s.Hesap_ID,s.Borc-s.Alacak FROM k.CEK s JOIN (SELECT "
        "Cek_ID,Bordro_ID,MAX(Durum_ID) FROM k.CEKDURUM GROUP BY Cek_ID) d ON d.Cek_ID=s.Cek_ID AND "
        "d.Bordro_ID=s.Bordro_ID WHERE s.Durum IN ('Tahsil Edildi','Ödendi') AND IFNULL(s.Hesap_ID,0)<>0 "
        "UNION ALL SELECT s.Hesap_ID,s.Borc-s.Alacak FROM k.SENET s JOIN (SELECT "
        "Senet_ID,Bordro_ID,MAX(Durum_ID) FROM k.SENETDURUM GROUP BY Senet_ID) d ON d.Senet_ID=s.Senet_ID "
        "AND "
        "d.Bordro_ID=s.Bordro_ID WHERE s.Durum='Tahsil Edildi' AND IFNULL(s.Hesap_ID,0)<>0 UNION ALL SELECT "
        "Hesap_ID,ATutar-BTutar FROM k.POSHAREKET WHERE IFNULL(Hesap_ID,0)<>0 AND Islem_Tipi='Kredi Kartı "
        "Ödeme') GROUP BY Hesap_ID) b,k.HESAPKART r,main.HESAPKART x WHERE r.Hesap_ID=b.Hesap_ID AND "
        "x.Hesap_No=r.Hesap_No AND b.t<>0");
  }

  void cariAcilisi() {
    const std::string gun = "/25920000-" + std::to_string(baslangicGunu);  // days from the source's start
    const auto parca = [](const std::string& tablo, const std::string& a, const std::string& b,
                          const std::string& vade, const std::string& kosul) {
      return "SELECT Cari_ID," + a + " AS a," + b + " AS b," + vade + " AS v FROM k." + tablo +
             " WHERE Cari_ID>0" + kosul;
    };
    const std::string
        gunlu = "Tarih+Vade*25920000",
        bakiye =
            parca("ACILIS", "ATutar", "BTutar", "0", "") + " UNION ALL " +
            parca("CARIHAREKET", "ATutar", "BTutar", "0", "") + " UNION ALL " +
            parca("KASAHAREKET", "BTutar", "ATutar", "0", " AND IFNULL(MasHizHar_ID,0)=0") + " UNION ALL " +
            parca("BANKAHAREKET", "BTutar", "CASE WHEN IFNULL(HavaleTut,0)>0 THEN HavaleTut ELSE ATutar END",
                  "0", " AND IFNULL(MasHizHar_ID,0)=0") +
            " UNION ALL " + parca("FATURAKART", "ATutar", "BTutar", "0", " AND IFNULL(Iptal,0)=0") +
            " UNION ALL " + parca("BORDRO", "Alacak", "Borc", "0", "") + " UNION ALL " +
            parca("POSHAREKET", "Tutar", "0", "0",
                  " AND Islem_Tipi<>'Kredi Kartı Tahsilat' AND Islem_Tipi<>'Kredi Kartı "
                  "Ödeme' AND IFNULL(MasHizHar_ID,0)=0"),
        belge = "SELECT s.Cari_ID,s.Alacak,s.Borc,s.Vade FROM k.",
        valor = parca("ACILIS", "ATutar", "BTutar", gunlu, "") + " UNION ALL " +
                parca("CARIHAREKET", "ATutar", "BTutar", gunlu, " AND Islem_Tipi<>'Kredi Kartı Tahsilat'") +
                " UNION ALL " + parca("KASAHAREKET", "BTutar", "ATutar", "Tarih", "") + " UNION ALL " +
                parca("BANKAHAREKET", "BTutar", "ATutar", "Tarih", "") + " UNION ALL " +
                parca("FATURAKART", "ATutar", "BTutar", gunlu, "") + " UNION ALL " + belge +
                "CEK s JOIN k.BORDRO o ON o.Bordro_ID=s.Bordro_ID WHERE o.Cari_ID IS NOT NULL UNION "
                "ALL " +
                belge +
                "SENET s JOIN k.BORDRO o ON o.Bordro_ID=s.Bordro_ID WHERE o.Cari_ID IS NOT NULL UNION "
                "ALL " +
                parca("POSHAREKET", "Tutar", "0", "Hesaba_Aktarim_Tarih", "");
    deyim(
        "INSERT INTO main.ACILIS "
        "(Isyeri_ID,Cari_Hareket_ID,Tarih,Fis_No,Islem_Tipi,Cari_ID,Cari_Kod,Cari_Unvan,ATutar,BTutar,Saat,"
        "Gun,AY_"
        "Index,"
        "Ay,Hafta,Satici_ID,Doviz_ID,KUR,Dovizli_Borc,Dovizli_Alacak,Dovizli_Tutar,Vade,CariHareket_Fis_ID) "
        "SELECT 1,ROW_NUMBER() OVER (ORDER BY c.Cari_ID)," +
        donemBasi +
        ",CAST(x.n AS TEXT),'Açılış Fişi',z.Cari_ID,c.Cari_Kod,c.Unvan,MAX(ROUND(x.a-x.b,2),0),"
        "MAX(ROUND(x.b-x.a,2),0),0,'01','01','OCAK',1,1,1,0,0,0,0,CASE WHEN ABS(v.gun-366)>1000 THEN 0 ELSE "
        "v.gun-366 END,1 FROM (SELECT Cari_ID,SUM(a) AS a,SUM(b) AS b,ROW_NUMBER() OVER (ORDER BY Cari_ID) "
        "AS "
        "n FROM (" +
        bakiye +
        ") GROUP BY Cari_ID) x JOIN k.CARIKART c ON c.Cari_ID=x.Cari_ID JOIN main.CARIKART z ON "
        "z.Cari_Kod=c.Cari_Kod LEFT JOIN (SELECT Cari_ID,CASE WHEN a>b THEN bo ELSE 2*bo-ao END AS gun FROM "
        "(SELECT Cari_ID,SUM(a) AS a,SUM(b) AS b,IFNULL(CAST(SUM(a*g)/SUM(a) AS INTEGER),0) AS "
        "ao,IFNULL(CAST(SUM(b*g)/SUM(b) AS INTEGER),0) AS bo FROM (SELECT Cari_ID,a,b,v" +
        gun + " AS g FROM (" + valor +
        ")) GROUP BY Cari_ID)) v ON v.Cari_ID=x.Cari_ID WHERE ROUND(x.a-x.b,2)<>0 ORDER BY c.Cari_ID");
  }

  // The movements once, in the order of the replay.
  void maliyetler() {
    sqlite3_stmt* oku = to_.prepare(
        "SELECT Stok_ID,Giris,Cikis,Maliyet FROM k.STOKHAREKET WHERE Satir_Tipi='Mal' AND Islem_Tipi NOT "
        "LIKE "
        "'Konsinye%' AND Tarih<=" +
        donemSonu + " ORDER BY Stok_ID,Tarih,Cikis,Stok_Hareket_ID");
    sqlite3_stmt* yaz = to_.prepare("INSERT INTO maliyet VALUES (?,?)");
    rollover::Maliyetlendirme_AOG hesap;
    sqlite3_int64 stok = 0;
    const auto bitir = [&] {
      if (stok == 0) return;
      sqlite3_bind_int64(yaz, 1, stok);
      sqlite3_bind_double(yaz, 2, hesap.birimMaliyet().sayi());
      to_.once(yaz);
    };
    while (sqlite3_step(oku) == SQLITE_ROW) {
      const sqlite3_int64 id = sqlite3_column_int64(oku, 0);
      if (id != stok) {
        bitir();
        hesap = {};
        stok = id;
      }
      using rollover::Para;
      hesap.isle({Para::sayidan(sqlite3_column_double(oku, 1)), Para::sayidan(sqlite3_column_double(oku, 2)),
                  Para::sayidan(sqlite3_column_double(oku, 3))});
    }
    bitir();
    sqlite3_finalize(oku);
    sqlite3_finalize(yaz);
  }

  void stokAcilisi() {
    deyim(
        "INSERT INTO main.STOKHAREKET "
        "(Isyeri_ID,Tevkifatli,Tevkif_Oran,Tevkif_KDV,Toplam_KDV,EGiris,ECikis,Stok_Hareket_ID,Stok_"
        "HareketKart_ID,Tarih,Fis_No,Islem_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,"
        "Stok_Ad,Ambar_No,Birim,Miktar,RB_Takip,Birim_Fiyat,KDV,ISK,ISK_Tutar,KDV_Tutar,Tutar,Carpan,Giris,"
        "Cikis,Maliyet,Saat,Gun,AY_Index,Ay,Hafta,Fatura_ID,Satici_ID,Doviz_ID,KUR,Dovizli_Tutar) SELECT "
        "1,0,0,0,0,0,0,ROW_NUMBER() OVER (ORDER BY d.Ambar_No,d.Stok_ID),1," +
        donemBasi +
        ",'000'||d.Ambar_No,d.n,'Açılış "
        "Fişi','Mal',x.Stok_ID,x.Stok_Kod,x.Stok_Ad,d.Ambar_No,x.Ana_Birim,d.net,0,m.M,0,'0',0,0,ROUND(d.net*"
        "m."
        "M,4),1,d.net,0,m.M,0,'01','01','OCAK',1,0,1,1,0,0 FROM (SELECT "
        "Stok_ID,Ambar_No,ROUND(SUM(g)-SUM(c),4) AS net,ROW_NUMBER() OVER (PARTITION BY Ambar_No ORDER BY "
        "Stok_ID) AS n FROM (SELECT Stok_ID,Ambar_No,Giris AS g,Cikis AS c FROM k.STOKHAREKET WHERE "
        "Satir_Tipi='Mal' UNION ALL SELECT Stok_ID,Ambar_No,Giris,Cikis FROM k.AMBTRS WHERE Onay=1) GROUP BY "
        "Stok_ID,Ambar_No) d JOIN k.STOKKART s ON s.Stok_ID=d.Stok_ID JOIN main.STOKKART x ON "
        "x.Stok_Kod=s.Stok_Kod LEFT JOIN maliyet m ON m.Stok_ID=d.Stok_ID WHERE d.net>0");
  }

  // 31.12.2012, 01.01.2013 as the file keeps dates; days of 01.01.2012.
  static constexpr int baslangicGunu = 40'907;
  const std::string donemSonu = "1069770240000", donemBasi = "1069796160000";
  const std::set<std::string> buyukler = {"MUHKART",    "CARIKART",     "STOKKART",       "STOKFIYAT",
                                          "POSHAREKET", "SIPARISKART",  "SIPARISHAREKET", "CEKKART",
                                          "CEK",        "CEKDURUM",     "SENETKART",      "SENET",
                                          "SENETDURUM", "BANKAHAREKET", "ACILIS",         "STOKHAREKET"};
  Sqlite hedef_, to_;
  std::set<std::string> tablolar_;
};

}  // namespace bench
