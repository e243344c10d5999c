#include "rollover/kanit.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "platform/code_page.h"
#include "platform/files.h"

namespace rollover {

namespace {

std::string htmlMetni(std::string_view metin) {
  std::string out;
  for (const char c : metin) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else if (c == '>')
      out += "&gt;";
    else if (c == '"')
      out += "&quot;";
    else
      out += c;
  }
  return out;
}

std::string jsonMetni(std::string_view metin) {
  std::string out = "\"";
  for (const char c : metin) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < ' ') {
      std::array<char, 8> buffer{};
      std::snprintf(buffer.data(), buffer.size(), "\\u%04x", static_cast<unsigned>(c));
      out += buffer.data();
    } else {
      out += c;
    }
  }
  return out + "\"";
}

// A field of a table for spreadsheets; what would be taken for a formula gets an apostrophe.
std::string csvMetni(std::string_view metin) {
  std::string out = "\"";
  if (!metin.empty() && std::string_view("=+-@").find(metin.front()) != std::string_view::npos) out += '\'';
  for (const char c : metin) out += c == '"' ? std::string("\"\"") : std::string(1, c);
  return out + "\"";
}
std::string csvSayisi(Para deger) {
  std::string out = sqlMetni(deger);
  std::replace(out.begin(), out.end(), '.', ',');
  return out;
}

bool farkli(const KanitSatiri& satir) {
  return satir.fark() != Para{};
}
std::string durum(const KanitSatiri& satir) {
  if (!farkli(satir)) return "";
  return satir.neden.empty() ? "AÇIKLANMAYAN FARK" : satir.neden;
}

std::string ozet(const Kanit& kanit) {
  const std::int64_t n = kanit.aciklanmayan();
  return n == 0 ? "Açıklanmayan fark yok." : "Açıklanmayan fark: " + std::to_string(n) + " satır.";
}

constexpr std::string_view stil =
    "body{font:14px 'Segoe UI',Arial,sans-serif;color:#1d2733;margin:24px}h1{font-size:20px;margin:0 0 "
    "4px}p{margin:2px 0}"
    "table{border-collapse:collapse;width:100%;margin-top:14px}th,td{padding:4px 8px;border-bottom:1px solid "
    "#d8dee6;text-align:left;"
    "vertical-align:top}th{background:#eef2f6}td.s{text-align:right;white-space:nowrap;font-variant-numeric:"
    "tabular-nums}"
    "tr.t td{font-weight:600}tr.f td{background:#fff6e0}tr.x "
    "td{background:#fde4e1}thead{display:table-header-group}tr{page-break-inside:"
    "avoid}@media print{body{margin:0;font-size:11px}}";

std::string doldur(const std::string& metin, std::size_t en, bool saga) {
  const std::size_t uzunluk = platform::toUtf32(metin).size();
  const std::string bosluk(uzunluk < en ? en - uzunluk : 0, ' ');
  return saga ? bosluk + metin : metin + bosluk;
}

}  // namespace

std::string paraMetni(Para deger) {
  const std::int64_t mutlak = std::llabs(deger.birim);
  std::string tam = std::to_string(mutlak / 10'000);
  for (auto at = static_cast<std::ptrdiff_t>(tam.size()) - 3; at > 0; at -= 3)
    tam.insert(static_cast<std::size_t>(at), 1, '.');
  std::array<char, 8> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%04d", static_cast<int>(mutlak % 10'000));
  std::string kesir = buffer.data();
  while (kesir.size() > 2 && kesir.back() == '0') kesir.pop_back();
  return (deger.birim < 0 ? "-" : "") + tam + "," + kesir;
}

std::int64_t Kanit::aciklanmayan() const {
  return std::count_if(satirlar.begin(), satirlar.end(),
                       [](const KanitSatiri& s) { return farkli(s) && s.neden.empty(); });
}

std::string kanitHtml(const Kanit& k) {
  std::string out =
      "<!DOCTYPE html>\n<html lang=\"tr\"><head><meta charset=\"utf-8\"><title>Devir Kanıtı</title><style>" +
      std::string(stil) + "</style></head><body>\n<h1>Devir Kanıtı" +
      std::string(k.deneme ? " (deneme)" : "") + "</h1>\n<p>Kaynak: <b>" + htmlMetni(k.kaynak) + "</b> (" +
      htmlMetni(k.kaynakDonemi) + ")</p>\n<p>Hedef: <b>" + htmlMetni(k.hedef) + "</b> (" +
      htmlMetni(k.hedefDonemi) + ")</p>\n<p>" + htmlMetni(k.zaman) + "</p>\n<p><b>" + ozet(k) +
      "</b></p>\n<table><thead><tr>";
  for (const std::string_view baslik : kanitBasliklari) out += "<th>" + std::string(baslik) + "</th>";
  out += "</tr></thead><tbody>\n";
  for (const KanitSatiri& s : k.satirlar) {
    std::string sinif = s.toplam ? "t" : "";
    if (farkli(s)) sinif += s.neden.empty() ? " x" : " f";
    out += "<tr class=\"" + sinif + "\"><td>" + htmlMetni(s.tur) + "</td><td>" + htmlMetni(s.kod) +
           "</td><td>" + htmlMetni(s.ad) + "</td><td class=\"s\">" + paraMetni(s.kaynak) +
           "</td><td class=\"s\">" + paraMetni(s.hedef) + "</td><td class=\"s\">" + paraMetni(s.fark()) +
           "</td><td>" + htmlMetni(durum(s)) + "</td></tr>\n";
  }
  out += "</tbody></table>\n";
  if (k.atlananSayisi > 0) {
    out += "<h1>Aktarılamayanlar (" + std::to_string(k.atlananSayisi) +
           ")</h1>\n<table><thead><tr><th>Tablo</th><th>Kayıt</th><th>Neden</th></tr></thead><tbody>\n";
    for (const Atlanan& a : k.atlananlar)
      out += "<tr><td>" + htmlMetni(a.tablo) + "</td><td>" + htmlMetni(a.ad) + "</td><td>" +
             htmlMetni(a.neden) + "</td></tr>\n";
    out += "</tbody></table>\n";
  }
  return out + "</body></html>\n";
}

std::string kanitCsv(const Kanit& k) {
  std::string out = "\xEF\xBB\xBF";  // spreadsheets take it for the sign of UTF-8
  for (const std::string_view baslik : kanitBasliklari)
    out += (out.size() == 3 ? "" : ";") + csvMetni(baslik);
  out += "\r\n";
  for (const KanitSatiri& s : k.satirlar)
    out += csvMetni(s.tur) + ";" + csvMetni(s.kod) + ";" + csvMetni(s.toplam ? "TOPLAM" : s.ad) + ";" +
           csvSayisi(s.kaynak) + ";" + csvSayisi(s.hedef) + ";" + csvSayisi(s.fark()) + ";" +
           csvMetni(durum(s)) + "\r\n";
  for (const Atlanan& a : k.atlananlar)
    out += csvMetni("Aktarılamayan") + ";" + csvMetni(a.tablo) + ";" + csvMetni(a.ad) + ";;;;" +
           csvMetni(a.neden) + "\r\n";
  return out;
}

std::vector<std::vector<std::string>> kanitSatirlari(const Kanit& k, bool yalnizcaFarklar) {
  std::vector<std::vector<std::string>> out;
  for (const KanitSatiri& s : k.satirlar)
    if (!yalnizcaFarklar || farkli(s))
      out.push_back({s.tur, s.kod, s.toplam ? "TOPLAM" : s.ad, sqlMetni(s.kaynak), sqlMetni(s.hedef),
                     sqlMetni(s.fark()), durum(s)});
  for (const Atlanan& a : k.atlananlar) out.push_back({"Aktarılamayan", a.tablo, a.ad, "", "", "", a.neden});
  return out;
}

std::string kanitMetni(const Kanit& k, bool yalnizcaFarklar) {
  const auto adi = [](const KanitSatiri& s) { return s.toplam ? s.tur : "  " + s.kod + " " + s.ad; };
  // The longest name is shown whole: the figures stand below each other.
  std::size_t adEni = 34;
  for (const KanitSatiri& s : k.satirlar)
    if (!yalnizcaFarklar || farkli(s)) adEni = std::max(adEni, platform::toUtf32(adi(s)).size());
  std::string out = "Devir Kanıtı" + std::string(k.deneme ? " (deneme)" : "") + ": " + k.kaynak + " (" +
                    k.kaynakDonemi + ") -> " + k.hedef + " (" + k.hedefDonemi + ")\n";
  constexpr std::size_t sayiEni = 19;
  out += doldur("", adEni, false) + doldur("Kaynak", sayiEni, true) + doldur("Hedef", sayiEni, true) +
         doldur("Fark", sayiEni, true) + "  Neden\n";
  for (const KanitSatiri& s : k.satirlar) {
    if (yalnizcaFarklar && !farkli(s)) continue;
    out += doldur(adi(s), adEni, false) + doldur(paraMetni(s.kaynak), sayiEni, true) +
           doldur(paraMetni(s.hedef), sayiEni, true) + doldur(paraMetni(s.fark()), sayiEni, true) +
           (farkli(s) ? "  " + durum(s) : "") + "\n";
  }
  for (const Atlanan& a : k.atlananlar)
    out += "Aktarılamadı: " + a.tablo + " " + a.ad + ": " + a.neden + "\n";
  if (k.atlananSayisi > static_cast<std::int64_t>(k.atlananlar.size()))
    out += "Aktarılamayanların tümü: " + std::to_string(k.atlananSayisi) + "\n";
  return out + ozet(k) + "\n";
}

std::string kanitJson(const Kanit& k) {
  std::string out = "{\"kaynak\":" + jsonMetni(k.kaynak) + ",\"hedef\":" + jsonMetni(k.hedef) +
                    ",\"kaynakDonemi\":" + jsonMetni(k.kaynakDonemi) +
                    ",\"hedefDonemi\":" + jsonMetni(k.hedefDonemi) + ",\"zaman\":" + jsonMetni(k.zaman) +
                    ",\"deneme\":" + (k.deneme ? "true" : "false") +
                    ",\"aciklanmayan\":" + std::to_string(k.aciklanmayan()) + ",\"satirlar\":[";
  bool ilk = true;
  for (const KanitSatiri& s : k.satirlar) {
    out += std::string(ilk ? "" : ",") + "\n{\"tur\":" + jsonMetni(s.tur) + ",\"kod\":" + jsonMetni(s.kod) +
           ",\"ad\":" + jsonMetni(s.ad) + ",\"toplam\":" + (s.toplam ? "true" : "false") +
           ",\"kaynak\":" + sqlMetni(s.kaynak) + ",\"hedef\":" + sqlMetni(s.hedef) +
           ",\"fark\":" + sqlMetni(s.fark()) + ",\"neden\":" + jsonMetni(s.neden) + "}";
    ilk = false;
  }
  out += "],\"atlananSayisi\":" + std::to_string(k.atlananSayisi) + ",\"atlananlar\":[";
  ilk = true;
  for (const Atlanan& a : k.atlananlar) {
    out += std::string(ilk ? "" : ",") + "\n{\"tablo\":" + jsonMetni(a.tablo) + ",\"ad\":" + jsonMetni(a.ad) +
           ",\"neden\":" + jsonMetni(a.neden) + "}";
    ilk = false;
  }
  return out + "]}\n";
}

std::string dosyayaYaz(const std::string& yol, const std::string& icerik) {
  const std::error_code hata = platform::writeFileSafely(yol, icerik);
  return hata ? yol + " yazılamadı: " + hata.message() : "";
}

}  // namespace rollover
