#include "rights/cizelge.h"

#include "rights/haklar.h"
#include "rights/islem.h"
#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

namespace {

constexpr std::string_view ayrac = " › ";

std::string csvAlani(const std::string& text) {
  if (text.find_first_of(";\"\r\n") == std::string::npos) return text;
  std::string out = "\"";
  for (const char c : text) out += c == '"' ? std::string("\"\"") : std::string(1, c);
  return out + "\"";
}

std::string html(std::string_view text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string dalAdi(const std::string& yol) {
  return yol.substr(0, yol.find(ayrac));
}

bool farkli(const Cizelge& cizelge, const Bayrak& bayrak) {
  bool some = false, all = true;
  for (const YetkiSatiri& satir : cizelge.yetkiler) {
    const bool var = verilmis(satir, bayrak.kolon, bayrak.yer);
    some = some || var;
    all = all && var;
  }
  return some && !all;
}

constexpr std::string_view sayfaBasi = R"(<!DOCTYPE html>
<html lang="tr"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width">
<style>
body{font:14px/1.4 "Segoe UI",Inter,"Noto Sans",sans-serif;margin:20px;color:#1f2d3d;background:#f3f5f8}
h1{font-size:20px;font-weight:400;color:#1f3a57;margin:0 0 12px}
form{margin:0 0 12px;display:flex;gap:12px;flex-wrap:wrap;align-items:center}
input[type=search],select{font:inherit;padding:5px 8px;border:1px solid #b9c5d1;border-radius:4px;background:#fff}
input[type=search]{min-width:260px}
.kap{overflow:auto;max-height:80vh;border:1px solid #d8dfe7;border-radius:8px;background:#fff}
table{border-collapse:separate;border-spacing:0;width:100%}
th,td{padding:4px 10px;border-bottom:1px solid #e3e8ee;text-align:center;white-space:nowrap}
th{position:sticky;top:0;background:#e9eef4;font-weight:600;z-index:1}
th:first-child,td:first-child{text-align:left;position:sticky;left:0;background:inherit}
th:first-child{z-index:2;background:#e9eef4}
tr{background:#fff}tr:hover{background:#eef4fa}
td.v{color:#1f5f99;font-weight:600}td.y{color:#b9c5d1}
.bos{padding:12px;color:#566575}
</style>
)";

// Turkish capitals, words at the beginning of a word: as the search of the program does.
constexpr std::string_view sayfaSonu =
    R"(</tbody></table><p class="bos" hidden>Bu süzgeçle bir yetki yok.</p></div>
<script>
const ara=document.getElementById('ara'),dal=document.getElementById('dal'),fark=document.getElementById('fark');
const satirlar=[...document.querySelectorAll('tbody tr')];
const buyuk=t=>t.toLocaleUpperCase('tr');
function suz(){
  const sozler=buyuk(ara.value).split(' ').filter(s=>s);
  let kalan=0;
  for(const tr of satirlar){
    const yol=' '+buyuk(tr.cells[0].textContent).replace(/[(\/]/g,' ');
    const hucreler=[...tr.cells].slice(1).map(c=>c.className);
    const gorunur=sozler.every(s=>yol.includes(' '+s))&&(!dal.value||tr.dataset.dal===dal.value)&&
      (!fark.checked||new Set(hucreler).size>1);
    tr.hidden=!gorunur;kalan+=gorunur?1:0;
  }
  document.querySelector('.bos').hidden=kalan>0;
}
for(const e of [ara,dal,fark])e.addEventListener('input',suz);
</script></body></html>
)";

}  // namespace

bool cizelgeOku(session::Oturum& oturum, const std::string& firma, Cizelge& cizelge) {
  cizelge = Cizelge{session::Trim(firma), {}, {}};
  if (!katalogaBaglan(oturum)) return false;
  const auto satir = session::Firma_Bul(oturum, cizelge.firma);
  db::Recordset& row = oturum.Kayitlar;
  session::Sorgu_Ac_Mesajli(oturum, row,
                            "SELECT F.sysfrm_dbnm,S.sysus_nm,K.* FROM sysfrmlng F INNER JOIN Kullanici K ON "
                            "K.Firma_ID=F.sysfrm_ID INNER JOIN sysuslng S ON S.sysus_ID=K.Kullanici_ID WHERE "
                            "F.sysfrm_ID=" +
                                std::to_string(satir ? satir->id : 0) + " ORDER BY S.sysus_nm");
  if (row.state() != db::State::Open) return false;
  if (row.eof()) {
    oturum.kutular->message("Bu firma yok ya da bu firmada yetkisi olan kullanıcı yok: " + cizelge.firma,
                            session::Icon::Stop);
    return false;
  }
  cizelge.firma = row.field("sysfrm_dbnm").trimmed();
  for (; !row.eof(); row.moveNext()) {
    cizelge.kullanicilar.push_back(row.field("sysus_nm").trimmed());
    cizelge.yetkiler.push_back(yetkiSatiriOku(row));
  }
  return true;
}

std::vector<std::size_t> cizelgeSatirlari(const Cizelge& cizelge, const CizelgeSuzgeci& suzgec) {
  std::vector<std::size_t> rows;
  const std::string dal = session::Buyuk_Harf(session::Trim(suzgec.dal));
  for (std::size_t i = 0; i < bayraklar().size(); ++i) {
    const Bayrak& bayrak = bayraklar()[i];
    if (session::Buyuk_Harf(dalAdi(bayrak.yol)).starts_with(dal) && sozlerVar(bayrak.yol, suzgec.ara) &&
        (!suzgec.yalnizFarkli || farkli(cizelge, bayrak)))
      rows.push_back(i);
  }
  return rows;
}

std::vector<std::vector<std::string>> cizelgeTablosu(const Cizelge& cizelge,
                                                     const std::vector<std::size_t>& satirlar) {
  std::vector<std::vector<std::string>> tablo{{"Yetki", "Kolon", "Yer"}};
  tablo[0].insert(tablo[0].end(), cizelge.kullanicilar.begin(), cizelge.kullanicilar.end());
  for (const std::size_t i : satirlar) {
    const Bayrak& bayrak = bayraklar()[i];
    std::vector<std::string> satir{bayrak.yol, std::string(kolonlar()[bayrak.kolon].ad),
                                   std::to_string(bayrak.yer + 1)};
    for (const YetkiSatiri& yetki : cizelge.yetkiler)
      satir.emplace_back(verilmis(yetki, bayrak.kolon, bayrak.yer) ? "1" : "0");
    tablo.push_back(std::move(satir));
  }
  return tablo;
}

std::string cizelgeCsv(const Cizelge& cizelge, const std::vector<std::size_t>& satirlar) {
  std::string out = "\xEF\xBB\xBF";
  for (const auto& satir : cizelgeTablosu(cizelge, satirlar)) {
    for (std::size_t i = 0; i < satir.size(); ++i) out += (i == 0 ? "" : ";") + csvAlani(satir[i]);
    out += "\r\n";
  }
  return out;
}

std::string cizelgeHtml(const Cizelge& cizelge, const std::vector<std::size_t>& satirlar) {
  std::string out(sayfaBasi);
  const std::string baslik = html(cizelge.firma) + " — kullanıcı yetkileri";
  out += "<title>" + baslik + "</title></head><body><h1>" + baslik +
         "</h1>\n<form onsubmit=\"return false\"><input type=\"search\" id=\"ara\" aria-label=\"Yetki ara, "
         "örneğin: çek "
         "iade\"><select id=\"dal\"><option value=\"\">Bütün bölümler</option>";
  std::string dal, rows;
  for (const std::size_t i : satirlar) {
    const Bayrak& bayrak = bayraklar()[i];
    if (dalAdi(bayrak.yol) != dal) {
      dal = dalAdi(bayrak.yol);
      out += "<option>" + html(dal) + "</option>";
    }
    rows += "<tr data-dal=\"" + html(dal) + "\"><td>" + html(bayrak.yol) + "</td>";
    for (const YetkiSatiri& satir : cizelge.yetkiler)
      rows += verilmis(satir, bayrak.kolon, bayrak.yer) ? "<td class=\"v\">✓</td>" : "<td class=\"y\">–</td>";
    rows += "</tr>\n";
  }
  out +=
      "</select><label><input type=\"checkbox\" id=\"fark\"> Yalnız farklı olanlar</label></form>\n<div "
      "class=\"kap\">"
      "<table><thead><tr><th>Yetki</th>";
  for (const std::string& ad : cizelge.kullanicilar) out += "<th>" + html(ad) + "</th>";
  return out + "</tr></thead><tbody>\n" + rows + std::string(sayfaSonu);
}

}  // namespace rights
