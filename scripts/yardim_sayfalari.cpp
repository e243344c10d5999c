// Makes the manual pages and the shells' completions of the programs from the descriptions of their options.
//   yardim_sayfalari OUTPUT-FOLDER YARDIM.en.po VERSION DATE     DATE as YYYY-MM-DD
// makes man/man1, man/tr/man1, bash, zsh and fish below the folder. A text without an English form is told
// and stands as it is; the exit code is then 3.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "app/masaustu_secenekleri.h"
#include "app/sunucu_secenekleri.h"
#include "cli/program.h"
#include "cli/yardim.h"

namespace {

using cli::Komut;
using cli::Secenek;

// What a page tells besides options: pairs of a name and a text.
struct Madde {
  std::string_view ad, metin;
};

constexpr Madde dosyalar[] = {
    {"~/.local/share/zembera/sys.inf",
     "Kurulu programın hangi sunucuya bağlanacağı ($XDG_DATA_HOME ayarlıysa onun altında). Yerel sunucunun "
     "dosyaları "
     "yanındaki veri klasöründedir."},
    {"/etc/zembera/sys.inf", "Sistemin sunucusu: kullanıcının kendi sys.inf dosyası yoksa okunur."},
    {"/var/lib/zembera", "Sistemin sunucusunun veri dosyaları."}};
constexpr Madde ortamDegiskenleri[] = {{"NO_COLOR", "Boş değilse renk kullanılmaz."},
                                       {"TERM", "dumb ise ne renk ne ilerleme çubuğu yazılır."},
                                       {"XDG_DATA_HOME", "Kullanıcının veri klasörü."}};
constexpr Madde komutOrnekleri[] = {
    {"zembera-cli kur --sunucu '(yerel)'", "Bu makineyi sunucu olarak hazırlar."},
    {"zembera-cli firma-listele --bicim json", "Firmaları programların okuyacağı biçimde yazar."},
    {"zembera-cli --sessiz yedekle --hepsi --canli --hedef /yedek --sakla 14",
     "Bir zamanlayıcı için: yalnız bir yedek alınamazsa bir şey yazar."}};

struct Program {
  std::string_view ad, aciklama;
  std::span<const Secenek> secenekler;
  std::span<const Komut& (*const)()> komutlar;
  const cli::CikisKodlari& kodlar;
  std::span<const Madde> ornekler;
  std::string_view baska;  // the page to see also
};

// ---- Translation ----

class Sozluk {
 public:
  explicit Sozluk(const std::string& dosya) {
    std::ifstream in(dosya);
    std::string line, id, *target = nullptr;
    std::string text;
    while (std::getline(in, line)) {
      if (line.starts_with("msgid ")) id.clear(), target = &id;
      if (line.starts_with("msgstr ")) target = &metinler_[id];
      const auto first = line.find('"'), last = line.rfind('"');
      if (target && !line.starts_with("#") && last != first)
        *target += plain(line.substr(first + 1, last - first - 1));
    }
  }
  std::string cevir(std::string_view turkce) {
    if (turkce.empty()) return {};
    const auto at = metinler_.find(turkce);
    if (at != metinler_.end() && !at->second.empty()) return at->second;
    eksik.emplace(turkce);
    return std::string(turkce);
  }
  std::set<std::string> eksik;

 private:
  static std::string plain(const std::string& quoted) {
    std::string out;
    for (std::size_t i = 0; i < quoted.size(); ++i) {
      if (quoted[i] != '\\' || i + 1 == quoted.size())
        out += quoted[i];
      else
        out += quoted[++i] == 'n' ? '\n' : quoted[i];
    }
    return out;
  }
  std::map<std::string, std::string, std::less<>> metinler_;
};

// ---- Manual pages ----

// Text of a page: nothing of it is read as a request of the formatter.
std::string roff(std::string_view text) {
  std::string out;
  bool begin = true;
  for (const char c : text) {
    if (begin && (c == '.' || c == '\'')) out += "\\&";
    if (c == '\\')
      out += "\\e";
    else if (c == '-')
      out += "\\-";
    else
      out += c;
    begin = c == '\n';
  }
  return out;
}

class Sayfa {
 public:
  Sayfa(const Program& program, Sozluk* ingilizce, std::string surum, std::string gun)
      : p_(program), sozluk_(ingilizce), surum_(std::move(surum)), gun_(std::move(gun)) {}

  std::string yaz() {
    out_ << ".TH " << buyuk(p_.ad) << " 1 " << gun_ << " \"Zembera " << surum_ << "\" \"Zembera\"\n";
    bolum("AD", "NAME");
    out_ << roff(p_.ad) << " \\- " << roff(t(p_.aciklama)) << "\n";
    bolum("KULLANIM", "SYNOPSIS");
    out_ << ".B " << roff(p_.ad) << "\n" << (sozluk_ ? "[\\fIOPTION\\fR]..." : "[\\fISEÇENEK\\fR]...");
    out_ << (p_.komutlar.empty() ? ""
             : sozluk_           ? " \\fICOMMAND\\fR [\\fIOPTION\\fR]..."
                                 : " \\fIKOMUT\\fR [\\fISEÇENEK\\fR]...");
    out_ << "\n";
    bolum("SEÇENEKLER", "OPTIONS");
    for (const Secenek& secenek : p_.secenekler) yaz(secenek);
    out_ << ".TP\n.BR \\-h \", \" \\-\\-help\n" << roff(t("Bu yardımı gösterir")) << ".\n";
    if (!p_.komutlar.empty()) bolum("KOMUTLAR", "COMMANDS");
    for (const auto komut : p_.komutlar)
      if (!komut().gizli) yaz(komut());
    bolum("ÇIKIŞ KODLARI", "EXIT STATUS");
    kodlar(p_.kodlar);
    bolum("ORTAM", "ENVIRONMENT");
    maddeler(ortamDegiskenleri);
    bolum("DOSYALAR", "FILES");
    maddeler(dosyalar);
    if (!p_.ornekler.empty()) bolum("ÖRNEKLER", "EXAMPLES");
    maddeler(p_.ornekler);
    bolum("AYRICA BAKINIZ", "SEE ALSO");
    out_ << ".BR " << roff(p_.baska) << " (1)\n";
    return out_.str();
  }

 private:
  std::string t(std::string_view text) { return sozluk_ ? sozluk_->cevir(text) : std::string(text); }
  static std::string buyuk(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return roff(out);
  }
  void bolum(std::string_view turkce, std::string_view ingilizce) {
    out_ << ".SH \"" << (sozluk_ ? ingilizce : turkce) << "\"\n";
  }
  void maddeler(std::span<const Madde> hepsi) {
    for (const Madde& m : hepsi) out_ << ".TP\n.B " << roff(m.ad) << "\n" << roff(t(m.metin)) << "\n";
  }
  void kodlar(const cli::CikisKodlari& kodlar) {
    for (std::size_t i = 0; i < kodlar.size(); ++i)
      out_ << ".TP\n.B " << i << "\n" << roff(t(kodlar[i])) << "\n";
  }
  void yaz(const Secenek& secenek) {
    std::string ad(secenek.ad);
    if (const auto comma = ad.find(','); comma != std::string::npos) ad.replace(comma, 1, ", ");
    out_ << ".TP\n\\fB" << roff(ad) << "\\fR";
    if (secenek.tur == Secenek::Tur::Metin || secenek.tur == Secenek::Tur::Coklu)
      out_ << " \\fI" << roff(t(secenek.degerAdi)) << "\\fR";
    if (secenek.zorunlu) out_ << (sozluk_ ? " (required)" : " (zorunlu)");
    out_ << "\n" << roff(t(secenek.aciklama));
    for (std::size_t i = 0; i < secenek.secimler.size(); ++i)
      out_ << (i == 0 ? ": " : ", ") << "\\fB" << roff(secenek.secimler[i]) << "\\fR";
    out_ << ".\n";
  }
  void yaz(const Komut& komut) {
    out_ << ".SS " << roff(komut.ad) << "\n" << roff(t(komut.aciklama)) << ".\n";
    if (!komut.ek.empty()) out_ << ".PP\n" << roff(t(komut.ek)) << "\n";
    for (const Secenek& secenek : komut.secenekler) yaz(secenek);
    if (&komut.kodlar == &cli::genelKodlar) return;
    out_ << ".PP\n" << (sozluk_ ? "Exit status: " : "Çıkış kodları: ");
    for (std::size_t i = 0; i < komut.kodlar.size(); ++i)
      out_ << (i == 0 ? "" : ", ") << "\\fB" << i << "\\fR " << roff(t(komut.kodlar[i]));
    out_ << ".\n";
  }

  const Program& p_;
  Sozluk* sozluk_;
  std::string surum_, gun_;
  std::ostringstream out_;
};

// ---- Completions ----

// What stands behind an option: "=a b c" the words themselves, else the kind of names to ask for.
std::string degerTuru(const Secenek& secenek) {
  if (!secenek.secimler.empty()) {
    std::string words = "=";
    for (const auto secim : secenek.secimler) words += (words.size() > 1 ? " " : "") + std::string(secim);
    return words;
  }
  const std::string ad(secenek.degerAdi);
  if (ad.starts_with("FİRMA") || ad == "VERİTABANI") return "firma";
  if (ad == "KULLANICI") return "kullanici";
  if (ad == "DOSYA") return "dosya";
  if (ad == "KLASÖR" || ad == "DİZİN") return "klasor";
  return "metin";
}

std::vector<std::string> yazimlar(const Secenek& secenek) {
  std::vector<std::string> out;
  std::istringstream in{std::string(secenek.ad)};
  for (std::string one; std::getline(in, one, ',');) out.push_back(one);
  return out;
}

bool degerli(const Secenek& secenek) {
  return secenek.tur == Secenek::Tur::Metin || secenek.tur == Secenek::Tur::Coklu;
}

// Lines "COMMAND OPTION|KIND|TEXT" that the shells' functions walk; a flag has no kind, a place has no
// option.
std::vector<std::array<std::string, 4>> cizelge(const Program& program) {
  std::vector<std::array<std::string, 4>> out;
  const auto ekle = [&](std::string_view komut, std::span<const Secenek> secenekler) {
    for (const Secenek& secenek : secenekler) {
      if (secenek.tur == Secenek::Tur::Konum) {
        out.push_back({std::string(komut), "", degerTuru(secenek), std::string(secenek.aciklama)});
        continue;
      }
      for (const std::string& yazim : yazimlar(secenek))
        out.push_back({std::string(komut), yazim, degerli(secenek) ? degerTuru(secenek) : "",
                       std::string(secenek.aciklama)});
    }
    out.push_back({std::string(komut), "--help", "", "Bu yardımı gösterir"});
  };
  ekle("", program.secenekler);
  for (const auto komut : program.komutlar)
    if (!komut().gizli) {
      ekle(komut().ad, komut().secenekler);
      // Those of the program may stand behind the command, too.
      const auto genel = static_cast<std::ptrdiff_t>(out.size());
      ekle(komut().ad, program.secenekler);
      out.erase(std::find(out.begin() + genel, out.end(), out[static_cast<std::size_t>(genel) - 1]));
    }
  return out;
}

std::string tirnakli(std::string_view text) {
  std::string out = "'";
  for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c == '\n' ? ' ' : c);
  return out + "'";
}

std::string islevAdi(std::string_view program) {
  std::string ad(program);
  std::replace(ad.begin(), ad.end(), '-', '_');
  return "_" + ad;
}

std::string adListesi(const Program& program) {
  std::string out;
  for (const auto komut : program.komutlar)
    if (!komut().gizli) out += (out.empty() ? "" : " ") + std::string(komut().ad);
  return out;
}

// Of one command: its options by words, and the kinds of their values as patterns of a case.
std::string bashDallari(const Program& program) {
  std::map<std::string, std::string> secenekler;
  std::ostringstream turler;
  for (const auto& [komut, secenek, tur, metin] : cizelge(program)) {
    if (!secenek.empty()) secenekler[komut] += secenek + " ";
    if (!tur.empty())
      turler << "    " << tirnakli(komut + " " + secenek) << ") tur=" << tirnakli(tur) << " ;;\n";
  }
  std::ostringstream out;
  out << "  case \"$komut $onceki\" in\n" << turler.str() << "  esac\n  case \"$komut\" in\n";
  for (const auto& [komut, adlar] : secenekler)
    out << "    " << tirnakli(komut) << ") secenekler=" << tirnakli(adlar.substr(0, adlar.size() - 1))
        << " ;;\n";
  out << "  esac\n";
  return out.str();
}

// Shared by bash and zsh, which reads it through its own reader of bash's functions.
std::string bashMetni(const Program& program) {
  std::ostringstream out;
  const std::string islev = islevAdi(program.ad);
  out << "# Completion of " << program.ad << ", made from the descriptions of its options.\n"
      << islev << "() {\n"
      << "  local sozcuk=${COMP_WORDS[COMP_CWORD]} onceki=${COMP_WORDS[COMP_CWORD-1]} komut='' tur='' "
         "secenekler=''\n"
      << "  local dizin=() komutlar=" << tirnakli(adListesi(program)) << " i ad yer\n"
      << "  COMPREPLY=()\n"
      // The shell cuts --ad=VALUE into three words.
      << "  if [ \"$sozcuk\" = = ]; then sozcuk=''; elif [ \"$onceki\" = = ]; then "
         "onceki=${COMP_WORDS[COMP_CWORD-2]}; fi\n"
      << "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
      << "    case \"${COMP_WORDS[i]}\" in\n"
      << "      --dizin)\n        i=$((i + 1)); [ \"${COMP_WORDS[i]}\" != = ] || i=$((i + 1))\n        "
         "yer=${COMP_WORDS[i]//[\\\\\\'\\\"]/}; dizin=(--dizin \"${yer/#\\~/$HOME}\") ;;\n"
      << "      -*) ;;\n"
      << "      *) case \" $komutlar \" in *\" ${COMP_WORDS[i]} \"*) [ -n \"$komut\" ] || "
         "komut=${COMP_WORDS[i]} ;; esac ;;\n"
      << "    esac\n  done\n"
      << "  [ \"$onceki\" = \"$komut\" ] && onceki=''\n"
      << bashDallari(program) << "  if [[ $sozcuk == -* ]]; then\n"
      << "    tur=\"=$secenekler\"\n"
      << "  elif [ -z \"$tur\" ] && [ -z \"$komut\" ]; then\n    tur=\"=$komutlar\"\n  fi\n"
      << "  case \"$tur\" in\n"
      << "    =*) mapfile -t COMPREPLY < <(compgen -W \"${tur#=}\" -- \"$sozcuk\") ;;\n"
      // A name may hold blanks: lines are taken whole, and quoted by the shell as names of files are.
      << "    firma|kullanici)\n      sozcuk=${sozcuk//[\\\\\\'\\\"]/}\n"
      << "      while IFS= read -r ad; do [[ $ad != \"$sozcuk\"* ]] || COMPREPLY+=(\"$ad\"); done < <(\n"
      << "        zembera-cli \"${dizin[@]}\" tamamla \"$tur\" 2>/dev/null </dev/null)\n"
      << "      compopt -o filenames 2>/dev/null ;;\n"
      << "    dosya) mapfile -t COMPREPLY < <(compgen -f -- \"$sozcuk\"); compopt -o filenames 2>/dev/null "
         ";;\n"
      << "    klasor) mapfile -t COMPREPLY < <(compgen -d -- \"$sozcuk\"); compopt -o filenames 2>/dev/null "
         ";;\n"
      << "  esac\n  return 0\n}\ncomplete -F " << islev << " " << program.ad << "\n";
  return out.str();
}

std::string zshTuru(const std::string& tur) {
  if (tur.starts_with("=")) return "(" + tur.substr(1) + ")";
  if (tur == "firma" || tur == "kullanici") return "{_zembera_adlari " + tur + "}";
  return tur == "dosya" ? "_files" : tur == "klasor" ? "_files -/" : "( )";
}

// One word of _arguments: brackets and colons of the text are its own marks.
std::string zshSozu(const std::array<std::string, 4>& satir) {
  const auto& [komut, secenek, tur, metin] = satir;
  std::string text;
  for (const char c : metin)
    text += c == '[' || c == ']' || c == ':' || c == '\\' ? std::string("\\") + c : std::string(1, c);
  if (secenek.empty()) return tirnakli("*:" + text + ":" + zshTuru(tur));
  return tirnakli("*" + secenek + "[" + text + "]" + (tur.empty() ? "" : ":" + text + ":" + zshTuru(tur)));
}

std::string zshMetni(const Program& program) {
  std::map<std::string, std::string> sozler;
  for (const auto& satir : cizelge(program)) sozler[satir[0]] += " \\\n      " + zshSozu(satir);
  std::ostringstream out;
  out << "#compdef " << program.ad << "\n# Completion of " << program.ad
      << ", made from the descriptions of its options.\n"
      << "_zembera_adlari() {\n  local -a adlar\n  adlar=(${(f)\"$(zembera-cli $dizin tamamla $1 2>/dev/null "
         "</dev/null)\"})\n  compadd -a "
         "adlar\n}\n"
      << islevAdi(program.ad) << "() {\n";
  if (program.komutlar.empty()) {
    out << "  _arguments" << sozler[""] << "\n}\n" << islevAdi(program.ad) << " \"$@\"\n";
    return out.str();
  }
  out << "  local komut='' i\n  local -a komutlar dizin\n  komutlar=(\n";
  for (const auto komut : program.komutlar)
    if (!komut().gizli)
      out << "    " << tirnakli(std::string(komut().ad) + ":" + std::string(komut().aciklama)) << "\n";
  out << "  )\n  for ((i = 2; i < $#words; i++)); do\n"
      << "    [[ $words[i] == --dizin ]] && dizin=(--dizin ${${(Q)words[i+1]}/#\\~/$HOME})\n  done\n"
      << "  for ((i = 2; i < CURRENT; i++)); do\n"
      << "    [[ $words[i] == --dizin ]] && { ((i++)); continue }\n"
      << "    [[ -n ${komutlar[(r)$words[i]:*]} ]] && { komut=$words[i]; break }\n  done\n"
      << "  case \"$komut\" in\n    '') _arguments" << sozler[""]
      << " \\\n      '1:komut:{_describe komut komutlar}' ;;\n";
  sozler.erase("");
  for (const auto& [komut, words] : sozler)
    out << "    " << komut << ") shift $((i - 1)) words; ((CURRENT -= i - 1)); _arguments" << words
        << " ;;\n";
  out << "  esac\n}\n" << islevAdi(program.ad) << " \"$@\"\n";
  return out.str();
}

std::string fishTuru(const std::string& tur) {
  if (tur.starts_with("=")) return " -x -a " + tirnakli(tur.substr(1));
  if (tur == "firma" || tur == "kullanici") return " -x -a '(__zembera_adlari " + tur + ")'";
  return tur == "dosya" ? " -r -F" : tur == "klasor" ? " -x -a '(__fish_complete_directories)'" : " -x";
}

std::string fishMetni(const Program& program) {
  std::ostringstream out;
  out << "# Completion of " << program.ad << ", made from the descriptions of its options.\n"
      << "function __zembera_adlari\n  set -l dizin\n  set -l sozler (commandline -opc)\n"
      << "  if set -l yer (contains -i -- --dizin $sozler)\n"
      << "    set dizin --dizin (string replace -r '^~' $HOME -- $sozler[(math $yer + 1)])\n  end\n"
      << "  zembera-cli $dizin tamamla $argv[1] 2>/dev/null </dev/null\nend\n";
  const std::string basla = "complete -c " + std::string(program.ad);
  out << basla << " -f\n";
  // The shell's own test would take the value of --dizin for a command.
  const std::string komutsuz = "_" + islevAdi(program.ad) + "_komutsuz";
  if (!program.komutlar.empty())
    out << "function " << komutsuz << "\n  not __fish_seen_subcommand_from " << adListesi(program)
        << "\nend\n";
  for (const auto komut : program.komutlar)
    if (!komut().gizli)
      out << basla << " -n " << komutsuz << " -a " << komut().ad << " -d " << tirnakli(komut().aciklama)
          << "\n";
  std::set<std::string> genel;  // offered everywhere, so not once more for a command
  for (const auto& [komut, secenek, tur, metin] : cizelge(program)) {
    if (komut.empty() ? !genel.insert(secenek).second : genel.contains(secenek)) continue;
    out << basla;
    if (!komut.empty()) out << " -n " << tirnakli("__fish_seen_subcommand_from " + komut);
    if (secenek.starts_with("--"))
      out << " -l " << secenek.substr(2);
    else if (!secenek.empty())
      out << " -s " << secenek.substr(1);
    if (!tur.empty()) out << fishTuru(tur);
    out << " -d " << tirnakli(metin) << "\n";
  }
  return out.str();
}

bool koy(const std::filesystem::path& dosya, const std::string& metin) {
  std::filesystem::create_directories(dosya.parent_path());
  std::ofstream out(dosya, std::ios::binary);
  out << metin;
  return out.flush().good();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const std::filesystem::path klasor = argv[1];
  Sozluk ingilizce(argv[2]);
  const Program programlar[] = {{"zembera-cli", cli::programAciklamasi, cli::genelSecenekler(),
                                 cli::komutlar(), cli::genelKodlar, komutOrnekleri, "zembera"},
                                {"zembera",
                                 app::masaustuAciklamasi,
                                 app::masaustuSecenekleri,
                                 {},
                                 app::masaustuKodlari,
                                 {},
                                 "zembera-cli"},
                                {"zembera-sunucu",
                                 app::sunucuAciklamasi,
                                 app::sunucuSecenekleri,
                                 {},
                                 app::sunucuKodlari,
                                 {},
                                 "zembera-cli"}};
  std::map<std::filesystem::path, std::string> sayfalar;
  for (const Program& program : programlar) {
    const std::string ad(program.ad);
    sayfalar["man/man1/" + ad + ".1"] = Sayfa(program, &ingilizce, argv[3], argv[4]).yaz();
    sayfalar["man/tr/man1/" + ad + ".1"] = Sayfa(program, nullptr, argv[3], argv[4]).yaz();
    sayfalar["bash/" + ad] = bashMetni(program);
    sayfalar["zsh/_" + ad] = zshMetni(program);
    sayfalar["fish/" + ad + ".fish"] = fishMetni(program);
  }
  for (const std::string& text : ingilizce.eksik)
    std::fprintf(stderr, "No English form of: %s\n", text.c_str());
  for (const auto& [dosya, metin] : sayfalar)
    if (!koy(klasor / dosya, metin)) return 1;
  return ingilizce.eksik.empty() ? 0 : 3;
}
