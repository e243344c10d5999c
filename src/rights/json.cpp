#include "rights/json.h"

#include <charconv>
#include <stdexcept>

#include "platform/code_page.h"

namespace rights {

namespace {

class Okuyucu {
 public:
  explicit Okuyucu(std::string_view text) : text_(text) {
    if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
  }

  JsonNesne hepsi() {
    JsonNesne nesne = oku(false);
    bosluk();
    if (at_ != text_.size()) dur("nesnenin arkasında fazla metin var");
    return nesne;
  }

 private:
  [[noreturn]] void dur(const std::string& neden) const {
    throw std::runtime_error("satır " + std::to_string(satir_) + ": " + neden);
  }

  void bosluk() {
    for (; at_ < text_.size() && std::string_view(" \t\r\n").find(text_[at_]) != std::string_view::npos;
         ++at_)
      if (text_[at_] == '\n') ++satir_;
  }
  char bak() {
    bosluk();
    return at_ < text_.size() ? text_[at_] : '\0';
  }
  bool al(char c) {
    if (bak() != c) return false;
    ++at_;
    return true;
  }
  void iste(char c) {
    if (!al(c)) dur(std::string("'") + c + "' bekleniyordu");
  }

  // In a list there are no further lists.
  JsonNesne oku(bool icte) {
    JsonNesne nesne;
    iste('{');
    if (al('}')) return nesne;
    do {
      if (bak() != '"') dur("tırnak içinde bir ad bekleniyordu");
      const int line = satir_;
      std::string ad = metin();
      iste(':');
      JsonDeger value = deger(icte);
      value.satir = line;
      for (const auto& [name, before] : nesne)
        if (name == ad) dur("\"" + ad + "\" iki kez verilmiş");
      nesne.emplace_back(std::move(ad), std::move(value));
    } while (al(','));
    iste('}');
    return nesne;
  }

  JsonDeger deger(bool icte) {
    JsonDeger out;
    const char first = bak();
    if (first == '"') {
      out.tur = JsonTuru::Metin;
      out.metin = metin();
    } else if (first == '[' && !icte) {
      out.tur = JsonTuru::Liste;
      out.liste = liste();
    } else if (text_.substr(at_).starts_with("null")) {
      at_ += 4;
    } else {
      out.tur = JsonTuru::Sayi;
      const auto [end, error] = std::from_chars(text_.data() + at_, text_.data() + text_.size(), out.sayi);
      if (error != std::errc{}) dur("metin, tam sayı, null ya da liste bekleniyordu");
      at_ = static_cast<std::size_t>(end - text_.data());
    }
    return out;
  }

  std::vector<JsonNesne> liste() {
    std::vector<JsonNesne> out;
    iste('[');
    if (al(']')) return out;
    do out.push_back(oku(true));
    while (al(','));
    iste(']');
    return out;
  }

  std::string metin() {
    std::string out;
    for (++at_;; ++at_) {
      if (at_ >= text_.size() || text_[at_] == '\n') dur("metnin sonunda tırnak yok");
      if (text_[at_] == '"') break;
      if (text_[at_] != '\\')
        out += text_[at_];
      else
        out += kacis();
    }
    ++at_;
    return out;
  }

  std::string kacis() {
    static constexpr std::string_view harfler = "\"\\/bfnrt", karsiliklar = "\"\\/\b\f\n\r\t";
    if (++at_ >= text_.size()) dur("metnin sonunda tırnak yok");
    const auto place = harfler.find(text_[at_]);
    if (place != std::string_view::npos) return std::string(1, karsiliklar[place]);
    unsigned code = 0;
    const char* begin = text_.data() + at_ + 1;
    if (text_[at_] != 'u' || text_.size() - at_ < 5 ||
        std::from_chars(begin, begin + 4, code, 16).ptr != begin + 4 || (code >= 0xD800 && code < 0xE000))
      dur("anlaşılmayan kaçış");
    at_ += 4;
    return platform::toUtf8(std::u32string(1, static_cast<char32_t>(code)));
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int satir_ = 1;
};

}  // namespace

JsonSonucu jsonOku(std::string_view text) {
  try {
    return {Okuyucu(text).hepsi(), ""};
  } catch (const std::runtime_error& hata) {
    return {{}, hata.what()};
  }
}

std::string jsonMetin(std::string_view text) {
  static constexpr std::string_view hex = "0123456789abcdef";
  std::string out = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += std::string("\\") + c;
    } else if (byte < 0x20) {
      out += "\\u00";
      out += hex[byte >> 4U];
      out += hex[byte & 15U];
    } else {
      out += c;
    }
  }
  return out + "\"";
}

}  // namespace rights
