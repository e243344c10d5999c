#include "rights/yetki_metni.h"

#include "rights/haklar.h"
#include "rights/json.h"

namespace rights {

namespace {

std::string jsonDegeri(const Kolon& kolon, const db::Value& deger) {
  if (deger.isNull()) return "null";
  if (kolon.tur == KolonTuru::Bit) return deger.boolean() ? "1" : "0";
  if (kolon.tur == KolonTuru::Sayi) return std::to_string(deger.integer());
  std::string text = deger.text();
  text.resize(text.find_last_not_of(' ') + 1);  // npos + 1 is 0
  return jsonMetin(text);
}

std::string jsonYerleri(const Yerler& yerler, bool ambar) {
  std::string out;
  for (const YerYetkisi& yer : yerler) {
    if (!yer.Sec) continue;
    out += out.empty() ? "\n" : ",\n";
    out += ambar ? "    {\"no\": " + yer.kod + ", \"merkez\": "
                 : "    {\"kod\": " + jsonMetin(yer.kod) + ", \"varsayilan\": ";
    out += yer.varsayilan ? "1}" : "0}";
  }
  return "[" + out + (out.empty() ? "]" : "\n  ]");
}

}  // namespace

std::string yetkiJson(const YetkiDuzeni& duzen) {
  std::string out = "{\n";
  for (std::size_t i = 0; i < kolonlar().size(); ++i)
    out += "  " + jsonMetin(kolonlar()[i].ad) + ": " + jsonDegeri(kolonlar()[i], duzen.satir.degerler[i]) +
           ",\n";
  out += "  \"ambarlar\": " + jsonYerleri(duzen.YetkiAmbarGrd, true) + ",\n";
  out += "  \"isyerleri\": " + jsonYerleri(duzen.YetkiIsyeriGrd, false) + "\n";
  return out + "}\n";
}

std::string yetkiAgacMetni(const YetkiDuzeni& duzen) {
  std::string out;
  const session::TikAgaci& agac = duzen.treelist;
  const auto line = [&out](int level, bool tick, const std::string& text) {
    out += std::string(static_cast<std::size_t>(level - 1) * 2, ' ') + (tick ? "[x] " : "[ ] ") + text + "\n";
  };
  for (int i = 0; i < agac.boy(); ++i) line(agac.satir(i).seviye, agac.isaretli(i), agac.satir(i).yazi);
  for (const Bayrak& bayrak : bayraklar())
    if (bayrak.satir < 0) line(1, verilmis(duzen.satir, bayrak.kolon, bayrak.yer), bayrak.yol);
  for (const YerYetkisi& yer : duzen.YetkiAmbarGrd)
    line(1, yer.Sec, "Ambar " + yer.kod + " " + yer.ad + (yer.varsayilan ? " (merkez)" : ""));
  for (const YerYetkisi& yer : duzen.YetkiIsyeriGrd)
    line(1, yer.Sec, "İşyeri " + yer.kod + " " + yer.ad + (yer.varsayilan ? " (varsayılan)" : ""));
  return out;
}

std::vector<std::vector<std::string>> yetkiListesi(const YetkiDuzeni& duzen) {
  std::vector<std::vector<std::string>> rows;
  for (const Bayrak& bayrak : bayraklar())
    rows.push_back({bayrak.yol, std::string(kolonlar()[bayrak.kolon].ad), std::to_string(bayrak.yer + 1),
                    verilmis(duzen.satir, bayrak.kolon, bayrak.yer) ? "1" : "0"});
  for (std::size_t i = 0; i < kolonlar().size(); ++i) {
    const Kolon& kolon = kolonlar()[i];
    if (kolon.tur == KolonTuru::Sayi || kolon.tur == KolonTuru::Metin)
      rows.push_back({std::string(kolon.yazi), std::string(kolon.ad), "", duzen.satir.degerler[i].trimmed()});
  }
  for (const YerYetkisi& yer : duzen.YetkiAmbarGrd)
    rows.push_back({"Ambar " + yer.kod + " " + yer.ad, "ambarlar", yer.kod,
                    yer.varsayilan ? "2"
                    : yer.Sec      ? "1"
                                   : "0"});
  for (const YerYetkisi& yer : duzen.YetkiIsyeriGrd)
    rows.push_back({"İşyeri " + yer.kod + " " + yer.ad, "isyerleri", yer.kod,
                    yer.varsayilan ? "2"
                    : yer.Sec      ? "1"
                                   : "0"});
  return rows;
}

}  // namespace rights
