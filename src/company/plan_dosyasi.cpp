#include "company/plan_dosyasi.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <set>

#include "company/schema/schema.h"
#include "platform/code_page.h"
#include "session/metin.h"

namespace company {

namespace {

struct Satirlar {
  std::vector<std::string> lines;  // without the closing line
  std::string hata;
};

bool kapanis(std::string_view line) {
  constexpr std::string_view end = "<END>";
  return line.size() == end.size() && std::equal(line.begin(), line.end(), end.begin(), [](char a, char b) {
           return (a >= 'a' && a <= 'z' ? a - 'a' + 'A' : a) == b;
         });
}

// Control characters are the mark of another encoding (UTF-16, a program file).
bool metinDegil(std::string_view utf8) {
  const std::u32string text = platform::toUtf32(utf8);
  return std::any_of(text.begin(), text.end(), [](char32_t c) {
    return (c < 0x20 && c != '\r' && c != '\n' && c != '\t') || (c >= 0x7F && c < 0xA0) || c == 0xFFFD;
  });
}

Satirlar satirlaraBol(std::string_view bytes, const std::string& dosya) {
  constexpr std::string_view bom = "\xEF\xBB\xBF";
  const bool bomVar = bytes.starts_with(bom);
  if (bomVar) {
    bytes.remove_prefix(bom.size());
  }
  Satirlar out;
  const bool utf8 = platform::isUtf8(bytes);
  const std::string text = utf8 ? std::string(bytes) : platform::decode1254(bytes);
  if ((bomVar && !utf8) || metinDegil(text)) {
    out.hata = dosya + " dosyasının kodlaması tanınmıyor. Dosya UTF-8 ya da Türkçe (1254) olmalıdır.";
    return out;
  }
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    at = end + 1;
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    if (kapanis(line)) {
      return out;
    }
    out.lines.push_back(std::move(line));
  }
  out.hata = bytes.empty() ? dosya + " dosyası boş." : dosya + " dosyasında <END> satırı yok; dosya yarım.";
  return out;
}

std::string satirHatasi(const std::string& dosya, std::size_t index, const std::string& metin) {
  return dosya + " dosyası, satır " + std::to_string(index + 1) + ": " + metin;
}

// Width of a CHAR type; 0 for any other.
std::size_t genislik(const std::string& type) {
  return type.starts_with("CHAR(") ? std::stoul(type.substr(5)) : 0;
}

bool sigar(const std::string& type, const std::string& value) {
  const std::size_t limit = genislik(type);
  return limit == 0 || platform::toUtf32(value).size() <= limit;
}

template <class Number>
bool tamOkunur(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

// An empty text is 0 for a number and blanks for a text.
bool uygun(const std::string& type, const std::string& value) {
  if (value.empty()) {
    return true;
  }
  if (type == "SMALLINT") {
    return tamOkunur<std::int16_t>(value);
  }
  if (type == "FLOAT") {
    return tamOkunur<double>(value);
  }
  return sigar(type, value);
}

std::string hesapHatasi(const HesapSatiri& satir, const std::set<std::string>& kodlar) {
  const schema::TableDef& tablo = *schema::table("MUHKART");
  if (satir.kod.empty()) {
    return "hesap kodu boş.";
  }
  if (!sigar(tablo.column("MHesap_Kod")->baseType, satir.kod) ||
      !sigar(tablo.column("MHesap_Ad")->baseType, satir.ad)) {
    return "hesap kodu ya da adı çok uzun.";
  }
  return kodlar.contains(satir.kod) ? "hesap kodu " + satir.kod + " iki kez geçiyor." : "";
}

std::string tabloHatasi(const TabloSatiri& satir) {
  const schema::TableDef& tablo = *schema::table("MUHASEBEMALITABLOHAREKET");
  const auto& kolonlar = maliTabloKolonlari();
  if (satir.size() > kolonlar.size()) {
    return "değer sayısı tablonun alan sayısından çok.";
  }
  for (std::size_t i = 0; i < satir.size(); ++i) {
    const std::string& type = tablo.column(kolonlar[i])->baseType;
    if (!uygun(type, satir[i])) {
      return kolonlar[i] + " alanına sığmayan değer: " + satir[i];
    }
  }
  return "";
}

}  // namespace

const std::vector<std::string>& maliTabloKolonlari() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> out;
    bool behind = false;
    for (const schema::ColumnDef& column : schema::table("MUHASEBEMALITABLOHAREKET")->columns) {
      if (behind) {
        out.push_back(column.name);
      }
      behind = behind || column.name == "Rapor_ID";
    }
    return out;
  }();
  return names;
}

Okunan<HesapSatiri> hesapPlaniOku(std::string_view text, const std::string& dosya) {
  Okunan<HesapSatiri> out;
  const Satirlar file = satirlaraBol(text, dosya);
  out.hata = file.hata;
  std::set<std::string> kodlar;
  for (std::size_t i = 0; i < file.lines.size() && out.hata.empty(); ++i) {
    const std::string& line = file.lines[i];
    const std::size_t semicolon = line.find(';');
    if (semicolon == std::string::npos) {
      continue;
    }
    const HesapSatiri satir{session::Trim(line.substr(0, semicolon)),
                            session::Trim(line.substr(semicolon + 1))};
    if (const std::string hata = hesapHatasi(satir, kodlar); !hata.empty()) {
      out.hata = satirHatasi(dosya, i, hata);
    }
    kodlar.insert(satir.kod);
    out.rows.push_back(satir);
  }
  if (out.hata.empty() && out.rows.empty()) {
    out.hata = dosya + " dosyasında hesap yok.";
  }
  return out;
}

Okunan<TabloSatiri> maliTabloOku(std::string_view text, const std::string& dosya) {
  Okunan<TabloSatiri> out;
  const Satirlar file = satirlaraBol(text, dosya);
  out.hata = file.hata;
  std::set<std::string> numaralar;
  for (std::size_t i = 0; i < file.lines.size() && out.hata.empty(); ++i) {
    TabloSatiri satir;
    std::string_view rest = file.lines[i];
    for (std::size_t end = rest.find(';'); end != std::string_view::npos; end = rest.find(';')) {
      satir.emplace_back(rest.substr(0, end));
      rest.remove_prefix(end + 1);
    }
    if (satir.empty()) {
      continue;
    }
    std::string hata = tabloHatasi(satir);
    if (hata.empty() && !numaralar.insert(satir[0]).second) {
      hata = "satır numarası " + satir[0] + " iki kez geçiyor.";
    }
    out.hata = hata.empty() ? "" : satirHatasi(dosya, i, hata);
    out.rows.push_back(std::move(satir));
  }
  if (out.hata.empty() && out.rows.empty()) {
    out.hata = dosya + " dosyasında satır yok.";
  }
  return out;
}

}  // namespace company
