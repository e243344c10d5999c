// A year of example data is rolled over three times in a row: to a new company, again onto it after sales
// were entered there, and from that company to a third.
//
//   campaign_years [scale] [seed]
//
// Each time the proof may hold no difference without a reason, and the openings, whole rows, are compared
// with questions that share nothing with the rollover: sums over the movement tables themselves, and a replay
// of the costs in plain decimal arithmetic.
#include <cmath>
#include <cstdint>
#include <map>
#include <sstream>
#include <vector>

#include "campaigns/campaign.h"
#include "cli/program.h"
#include "db/drivers.h"

namespace campaign {
namespace {

using Words = std::vector<std::string>;

class Years {
 public:
  explicit Years(int scale, unsigned seed) {
    must({"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n");
    must({"firma-olustur", "--ad", "A2012", "--kod", "00001", "--unvan", "A", "--baslangic", "01/01/2012",
          "--bitis", "31/12/2012"});
    must({"guncelle", "--ad", "A2012"});
    must({"ornek-veri", "--ad", "A2012", "--olcek", std::to_string(scale), "--tohum", std::to_string(seed)});
  }

  int run() {
    rollOver("to a new company", {"--kaynak", "A2012", "--yeni-ad", "A2013"});
    compare("A2012", "A2013", "31/12/2012");
    const std::string first = openings("A2013");
    enterSales();
    const std::string sales = rows("SELECT COUNT(*),SUM(Cikis) FROM A2013..STOKHAREKET WHERE Fis_No='SATIS'");
    rollOver("again onto it", {"--kaynak", "A2012", "--hedef", "A2013"});
    compare("A2012", "A2013", "31/12/2012");
    same("openings after the second run", openings("A2013"), first);
    same("sales after the second run",
         rows("SELECT COUNT(*),SUM(Cikis) FROM A2013..STOKHAREKET WHERE Fis_No='SATIS'"), sales);
    rollOver("from that one to a third", {"--kaynak", "A2013", "--yeni-ad", "A2014"});
    compare("A2013", "A2014", "31/12/2013");
    std::cout << checks_ << " comparisons, " << faults_ << " faults\n";
    return faults_ == 0 && checks_ > 20 ? 0 : 1;
  }

 private:
  int command(const Words& words, std::string& out, const std::string& input = "") {
    session_.reset();
    std::istringstream in(input);
    std::ostringstream written;
    std::ostringstream err;
    cli::Ortam around{in, written, err, false, false, folder_.path, db::makeConnectionFactory};
    const int code = cli::calistir(around, words);
    out = written.str() + err.str();
    return code;
  }
  void must(const Words& words, const std::string& input = "") {
    std::string out;
    if (command(words, out, input) != 0) throw std::runtime_error(words[0] + ": " + out);
  }
  void rollOver(const std::string& what, Words words) {
    words.insert(words.begin(), "devir");
    words.insert(words.end(), {"--evet", "--yalnizca-farklar"});
    std::string out;
    const int code = command(words, out);
    same(what + ": exit code", std::to_string(code), "0");
    if (out.find("Açıklanmayan fark yok.") == std::string::npos) fail(what + ": " + out);
  }

  std::string rows(const std::string& sql) {
    if (!session_) session_ = open(folder_.path / "veri", "master");
    const Answer answer = campaign::run(*session_, sql);
    if (answer.number != 0) throw std::runtime_error(answer.error + ": " + sql.substr(0, 200));
    return answer.text;
  }
  void same(const std::string& what, const std::string& is, const std::string& should) {
    ++checks_;
    if (is == should) return;
    std::istringstream a(is);
    std::istringstream b(should);
    std::string x;
    std::string y;
    int line = 0;
    do {
      ++line;
      if (!std::getline(a, x)) x = "(end)";
      if (!std::getline(b, y)) y = "(end)";
    } while (x == y && x != "(end)");
    fail(what + ", line " + std::to_string(line) + ": " + x + "\n  instead of " + y);
  }
  void fail(const std::string& what) {
    ++faults_;
    std::cout << what << "\n";
  }

  std::string openings(const std::string& company) {
    return rows(
               "SELECT Tarih,Fis_No,Islem_No,Stok_Kod,Stok_Ad,Ambar_No,Birim,Miktar,Giris,Cikis,Birim_Fiyat,"
               "Tutar,Maliyet,Gun,AY_Index,Ay,Hafta FROM " +
               company + "..STOKHAREKET WHERE Islem_Tipi='Açılış Fişi' ORDER BY Ambar_No,Islem_No") +
           rows(
               "SELECT Tarih,Fis_No,Cari_Kod,Cari_Unvan,ATutar,BTutar,Vade,Dovizli_Borc,Dovizli_Alacak,"
               "Dovizli_Tutar FROM " +
               company + "..ACILIS WHERE Islem_Tipi='Açılış Fişi' ORDER BY Cari_Kod") +
           rows("SELECT Tarih,Fis_No,Kasa_Kod,Btutar,Atutar FROM " + company +
                "..KASAHAREKET WHERE Islem_Tipi='Kasa Açılış Fişi' ORDER BY Kasa_Kod") +
           rows("SELECT Tarih,Fis_No,Hesap_No,BTutar,ATutar FROM " + company +
                "..BANKAHAREKET WHERE Islem_Tipi='Banka Açılış Fişi' ORDER BY Hesap_No");
  }

  // Exits, an entry, a consignment, money and an account of the new period.
  void enterSales() {
    const std::string line =
        "INSERT INTO A2013..STOKHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) SELECT ";
    rows(line +
         "'20130205','SATIS','Satış Faturası','Mal',Stok_ID,Stok_Kod,1,0,2,0 FROM A2013..STOKKART WHERE "
         "Stok_ID%3=0");
    rows(line +
         "'20130310','ALIS','Alış Faturası','Mal',Stok_ID,Stok_Kod,2,7,0,12.345 FROM A2013..STOKKART "
         "WHERE Stok_ID%4=0");
    rows(line +
         "'20130311','KONS','Konsinye Giriş','Mal',Stok_ID,Stok_Kod,1,5,0,99 FROM A2013..STOKKART WHERE "
         "Stok_ID%9=0");
    rows("INSERT INTO A2013..CARIKART (Cari_Kod,Unvan) VALUES ('320.YENİ','Yeni dönemde açıldı')");
    rows(
        "INSERT INTO A2013..CARIHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Cari_ID,Cari_Kod,Vade,BTutar,ATutar,Dovizli_Tutar) SELECT "
        "'20130401','9','Borç Dekontu',Cari_ID,Cari_Kod,30,125.5,0,0 FROM A2013..CARIKART WHERE Cari_ID%2=0");
    for (const char* const box : {"1", "2"})
      rows(std::string("INSERT INTO A2013..KASAHAREKET "
                       "(Tarih,Fis_No,Islem_Tipi,Kasa_ID,Kasa_Kod,BTutar,ATutar) SELECT TOP 1 "
                       "'20130501','7','Tahsilat',Kasa_ID,Kasa_Kod,") +
           box + "0.25,0 FROM A2013..KASAKART WHERE Kasa_ID=" + box);
  }

  void compare(const std::string& source, const std::string& target, const std::string& end) {
    const std::string s = source + "..", t = target + "..", where = source + " to " + target + ": ";
    const std::string start = "20" + std::to_string(std::stoi(end.substr(8, 2)) + 1) + "0101";
    same(where + "stock", stock(t, start), stockShould(s, end));
    same(where + "accounts",
         rows("SELECT Cari_Kod,CONVERT(MONEY,BTutar-ATutar),Cari_Unvan FROM " + t +
              "ACILIS WHERE Islem_Tipi='Açılış Fişi' AND Tarih='" + start + "' ORDER BY Cari_Kod"),
         rows("SELECT c.Cari_Kod,CONVERT(MONEY,ROUND(x.b,2)),c.Unvan FROM " + s +
              "CARIKART c,(SELECT Cari_ID,SUM(B) AS b FROM (" + accountMovements(s) +
              ") m GROUP BY Cari_ID) x WHERE c.Cari_ID=x.Cari_ID AND ABS(x.b)>=0.005 ORDER BY c.Cari_Kod"));
    same(where + "cash",
         rows("SELECT Kasa_Kod,CONVERT(MONEY,Btutar-Atutar),Kasa_Ad,Cari_Unvan FROM " + t +
              "KASAHAREKET WHERE Islem_Tipi='Kasa Açılış Fişi' AND Tarih='" + start + "' ORDER BY Kasa_Kod"),
         rows("SELECT k.Kasa_Kod,CONVERT(MONEY,ROUND(SUM(h.BTutar-h.ATutar),2)),k.Kasa_Ad,k.Kasa_Ad FROM " +
              s + "KASAKART k," + s +
              "KASAHAREKET h WHERE h.Kasa_ID=k.Kasa_ID GROUP BY k.Kasa_Kod,k.Kasa_Ad HAVING "
              "ABS(SUM(h.BTutar-h.ATutar))>=0.005 ORDER BY k.Kasa_Kod"));
    same(
        where + "bank",
        rows("SELECT Hesap_No,CONVERT(MONEY,BTutar-ATutar),Hesap_Ad,Banka_Ad FROM " + t +
             "BANKAHAREKET WHERE Islem_Tipi='Banka Açılış Fişi' AND Tarih='" + start + "' ORDER BY Hesap_No"),
        rows("SELECT k.Hesap_No,CONVERT(MONEY,ROUND(b.Bakiye,2)),k.Hesap_Ad,k.Banka_Ad FROM " + s +
             "HESAPKART k," + s +
             "BB b WHERE b.Hesap_ID=k.Hesap_ID AND ABS(b.Bakiye)>=0.005 ORDER BY k.Hesap_No"));
    for (const std::string kind : {"CEK", "SENET"}) {
      const std::string alive =
                            "('Parçalı Tahsil','Portföyde','Bankada Tahsilde','Bankada Teminatta','Kendi "
                            "Çekimiz','Kendi Senedimiz','Karşılıksız')",
                        columns =
                            "SELECT Portfoy_No,Durum,Vade,Tutar,Cari_Kod,Cari_Unvan,Borclu,Banka_Adi FROM ";
      same(where + kind,
           rows(columns + t + kind + "KART WHERE Islem_Tipi LIKE '%Devir Bordrosu' ORDER BY Portfoy_No"),
           rows(columns + s + kind + "KART WHERE Durum IN " + alive + " ORDER BY Portfoy_No"));
    }
    same(where + "orders",
         rows("SELECT Fis_No,Islem_Tipi,Islem_No,Stok_Kod,Miktar,Sevk_Edilen,Kalan FROM " + t +
              "SIPARISHAREKET WHERE Kullanici_ID=-1 ORDER BY Fis_No,Islem_Tipi,Islem_No,Stok_Kod"),
         rows("SELECT Fis_No,Islem_Tipi,Islem_No,Stok_Kod,Kalan,0,Kalan FROM " + s +
              "SIPARISHAREKET WHERE Sevk_Edilen<>Miktar AND Kalan<>0 AND Fis_No IN (SELECT Fis_No FROM " + s +
              "SIPARISKART WHERE Durum='AÇIK') ORDER BY Fis_No,Islem_Tipi,Islem_No,Stok_Kod"));
    for (const std::string card : {"CARIKART", "STOKKART"}) {
      const std::string code =
          card == "CARIKART" ? "Cari_Kod,Unvan,Vergi_Dairesi" : "Stok_Kod,Stok_Ad,Ana_Birim,KDV";
      const std::string in = "SELECT " + code + " FROM ", order = " ORDER BY 1";
      same(where + card,
           rows(in + t + card + " WHERE " + code.substr(0, 8) + " IN (SELECT " + code.substr(0, 8) +
                " FROM " + s + card + ")" + order),
           rows(in + s + card + order));
    }
  }

  static std::string accountMovements(const std::string& s) {
    const auto part = [&](const std::string& table, const std::string& amount, const std::string& more) {
      return "SELECT Cari_ID," + amount + " AS B FROM " + s + table + " WHERE Cari_ID>0" + more;
    };
    return part("ACILIS", "BTutar-ATutar", "") + " UNION ALL " + part("CARIHAREKET", "BTutar-ATutar", "") +
           " UNION ALL " + part("KASAHAREKET", "ATutar-BTutar", " AND ISNULL(MasHizHar_ID,0)=0") +
           " UNION ALL " +
           part("BANKAHAREKET", "CASE WHEN ISNULL(HavaleTut,0)>0 THEN HavaleTut ELSE ATutar END-BTutar",
                " AND ISNULL(MasHizHar_ID,0)=0") +
           " UNION ALL " + part("FATURAKART", "BTutar-ATutar", " AND ISNULL(Iptal,0)=0") + " UNION ALL " +
           part("BORDRO", "Borc-Alacak", "") + " UNION ALL " +
           part("POSHAREKET", "-Tutar",
                " AND Islem_Tipi NOT IN ('Kredi Kartı Tahsilat','Kredi Kartı Ödeme') AND "
                "ISNULL(MasHizHar_ID,0)=0");
  }

  std::string stock(const std::string& t, const std::string& start) {
    std::istringstream lines(
        rows("SELECT Ambar_No,Stok_Kod," + four("Miktar") + "," + four("Giris") + "," + four("Cikis") + "," +
             four("Maliyet") + "," + four("Birim_Fiyat") + "," + four("Tutar") + " FROM " + t +
             "STOKHAREKET WHERE Islem_Tipi='Açılış Fişi' AND Satir_Tipi='Mal' AND Tarih='" + start + "'"));
    std::map<std::string, std::string> sorted;
    for (std::string line; std::getline(lines, line);) {
      std::istringstream cells(line);
      std::string key;
      std::string code;
      std::string out;
      std::getline(cells, key, '\t');
      std::getline(cells, code, '\t');
      for (std::string cell; std::getline(cells, cell, '\t');) out += " " + fixed(std::stod(cell));
      sorted[key + "/" + trimmed(code)] += out;
    }
    return joined(sorted);
  }
  std::string stockShould(const std::string& s, const std::string& end) {
    const auto costs = replay(s, end);
    std::istringstream lines(
        rows("SELECT x.Ambar_No,k.Stok_Kod,x.Stok_ID," + four("SUM(x.net)") + " FROM " + s +
             "STOKKART k,(SELECT Stok_ID,Ambar_No,Giris-Cikis AS net FROM " + s +
             "STOKHAREKET WHERE Satir_Tipi='Mal' UNION ALL SELECT Stok_ID,Ambar_No,Giris-Cikis FROM " + s +
             "AMBTRS WHERE Onay=1) x WHERE k.Stok_ID=x.Stok_ID AND x.Ambar_No IN (SELECT Ambar_No FROM " + s +
             "AMBAR) GROUP BY x.Ambar_No,k.Stok_Kod,x.Stok_ID HAVING SUM(x.net)>0.00005"));
    std::map<std::string, std::string> sorted;
    for (std::string line; std::getline(lines, line);) {
      std::istringstream cells(line);
      std::string key;
      std::string code;
      std::string id;
      std::string net;
      std::getline(cells, key, '\t');
      std::getline(cells, code, '\t');
      std::getline(cells, id, '\t');
      std::getline(cells, net, '\t');
      const auto found = costs.find(id);
      const double cost = found == costs.end() ? 0 : found->second, quantity = toFour(std::stod(net));
      sorted[key + "/" + trimmed(code)] += " " + fixed(quantity) + " " + fixed(quantity) + " " + fixed(0) +
                                           " " + fixed(cost) + " " + fixed(cost) + " " +
                                           fixed(toFour(quantity * cost));
    }
    return joined(sorted);
  }

  // The moving average of every item, by its id.
  std::map<std::string, double> replay(const std::string& s, const std::string& end) {
    // In ten-thousandths, as currency is kept.
    struct Item {
      std::int64_t quantity = 0, value = 0, unit = 0;
    };
    const auto product = [](std::int64_t a, std::int64_t b) {
      return std::llrint(static_cast<long double>(a) * static_cast<long double>(b) / 10000);
    };
    std::map<std::string, Item> items;
    std::istringstream lines(rows(
        "SELECT Stok_ID," + four("ISNULL(Giris,0)") + "-" + four("ISNULL(Cikis,0)") + "," +
        four("ISNULL(Maliyet,0)") + " FROM " + s +
        "STOKHAREKET WHERE Satir_Tipi='Mal' AND LEFT(Islem_Tipi,8)<>'Konsinye' AND Tarih<='" +
        end.substr(6, 4) + end.substr(3, 2) + end.substr(0, 2) + "' ORDER BY Tarih,Cikis,Stok_Hareket_ID"));
    for (std::string line; std::getline(lines, line);) {
      std::istringstream cells(line);
      std::string id;
      double in = 0;
      double paid = 0;
      cells >> id >> in >> paid;
      const std::int64_t net = std::llrint(in * 10000), cost = std::llrint(paid * 10000);
      Item& item = items[id];
      item.quantity += net;
      if (net > 0) {
        item.value += product(net, cost);
        item.unit =
            item.quantity > 0
                ? std::llrint(static_cast<double>(item.value) / static_cast<double>(item.quantity) * 10000)
                : cost;
        if (item.unit < 0) item.unit = 0;
      } else {
        item.value += product(net, item.unit);
      }
    }
    std::map<std::string, double> out;
    for (const auto& [id, item] : items) out[id] = static_cast<double>(item.unit) / 10000;
    return out;
  }
  // All digits of a number; a FLOAT shows six.
  static std::string four(const std::string& value) { return "CONVERT(DECIMAL(18,4)," + value + ")"; }
  static double toFour(double value) { return std::nearbyint(value * 10000) / 10000; }
  static std::string fixed(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.4f", value == 0 ? 0.0 : value);
    return buffer;
  }
  static std::string trimmed(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }
  static std::string joined(const std::map<std::string, std::string>& lines) {
    std::string out;
    for (const auto& [key, values] : lines) out += key + values + "\n";
    return out;
  }

  const Folder folder_;
  std::unique_ptr<engine::Session> session_;
  int checks_ = 0, faults_ = 0;
};

}  // namespace
}  // namespace campaign

int main(int count, char** values) {
  const campaign::Arguments arguments = campaign::arguments(count, values, 1);
  try {
    return campaign::Years(arguments.rounds, count > 2 ? arguments.seed : 1).run();
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
