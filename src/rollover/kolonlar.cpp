// Which columns are copied, and how a value of one type becomes one of another.
#include <algorithm>
#include <array>
#include <optional>

#include "rollover/kopya.h"

namespace rollover {

namespace {

using db::FieldInfo;
using db::FieldType;

struct KolonReferansi {
  std::string_view kolon;
  Ref ref;
};
constexpr std::array<KolonReferansi, 27> kolonReferanslari = {{
    {"Satici_ID", Ref::Satici},
    {"Doviz_ID", Ref::Doviz},
    {"KDVGrup_ID", Ref::KdvGrup},
    {"Odeme_Plan_ID", Ref::Sablon},
    {"MHesap_ID", Ref::Hesap},
    {"AnaHesap_ID", Ref::Hesap},
    {"AlimMHesap_ID", Ref::Hesap},
    {"SatisMHesap_ID", Ref::Hesap},
    {"AlisIadeMHesap_ID", Ref::Hesap},
    {"SatisIadeMHesap_ID", Ref::Hesap},
    {"SayimEksikMHesap_ID", Ref::Hesap},
    {"SayimFazlaMHesap_ID", Ref::Hesap},
    {"SarfMHesap_ID", Ref::Hesap},
    {"FireMHesap_ID", Ref::Hesap},
    {"UretimMHesap_ID", Ref::Hesap},
    {"DigerGMHesap_ID", Ref::Hesap},
    {"DigerCMHesap_ID", Ref::Hesap},
    {"MHesap_ID_Alis", Ref::Hesap},
    {"MHesap_ID_AlisIade", Ref::Hesap},
    {"MHesap_ID_SatisIade", Ref::Hesap},
    {"TahsilCekMHesap_ID", Ref::Hesap},
    {"TeminatCekMHesap_ID", Ref::Hesap},
    {"KesilenCeklerMHesap_ID", Ref::Hesap},
    {"TahsilSenetMHesap_ID", Ref::Hesap},
    {"TeminatSenetMHesap_ID", Ref::Hesap},
    {"BankaMasrafMHesap_ID", Ref::Hesap},
    {"BekleyenPosMHesap_ID", Ref::Hesap},
}};

bool ayni(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) {
           const auto kucuk = [](unsigned char c) {
             return c >= 'A' && c <= 'Z' ? c + 32 : static_cast<int>(c);
           };
           return kucuk(x) == kucuk(y);
         });
}

std::optional<Ref> referansi(const std::string& kolon, const KolonSecimi& secim) {
  if (secim.cariStok && ayni(kolon, "Cari_ID")) return Ref::Cari;
  if (secim.cariStok && ayni(kolon, "Stok_ID")) return Ref::Stok;
  if (!secim.referanslar) return std::nullopt;
  for (const KolonReferansi& r : kolonReferanslari)
    if (ayni(kolon, r.kolon)) return r.ref;
  return std::nullopt;
}

enum class Sinif : std::uint8_t { Sayi, Tarih, Metin, UzunMetin, Diger };
Sinif sinif(FieldType tip) {
  switch (tip) {
    case FieldType::SmallDateTime:
    case FieldType::DateTime:
      return Sinif::Tarih;
    case FieldType::Char:
    case FieldType::VarChar:
    case FieldType::NChar:
    case FieldType::NVarChar:
      return Sinif::Metin;
    case FieldType::Text:
    case FieldType::NText:
      return Sinif::UzunMetin;
    case FieldType::Binary:
    case FieldType::VarBinary:
      return Sinif::Diger;
    default:
      return Sinif::Sayi;
  }
}

// Greatest whole number of a type, for the types that a wider one may not fit.
std::string_view enBuyuk(FieldType tip) {
  switch (tip) {
    case FieldType::TinyInt:
      return "255";
    case FieldType::SmallInt:
      return "32767";
    case FieldType::Int:
      return "2147483647";
    case FieldType::SmallMoney:
      return "214748";
    case FieldType::Money:
      return "922337203685477";
    default:
      return "";
  }
}
int genislik(FieldType tip) {
  switch (tip) {
    case FieldType::Bit:
      return 0;
    case FieldType::TinyInt:
      return 1;
    case FieldType::SmallInt:
      return 2;
    case FieldType::Int:
      return 3;
    case FieldType::SmallMoney:
      return 3;
    case FieldType::BigInt:
    case FieldType::Money:
      return 4;
    default:
      return 5;
  }
}

class Uyarlama {
 public:
  Uyarlama(const FieldInfo& kaynak, const FieldInfo& hedef, Kirpma kirpma)
      : s_(kaynak), h_(hedef), kirp_(kirpma == Kirpma::Kirp), c_("s.[" + kaynak.name + "]") {}

  KopyaKolonu kur() {
    KopyaKolonu kolon{h_.name, ifade(), ""};
    if (!h_.nullable && s_.nullable) kosul(c_ + " IS NOT NULL");
    kolon.uyar = uyar_;
    return kolon;
  }

 private:
  void kosul(const std::string& metin) { uyar_ += (uyar_.empty() ? "" : " AND ") + metin; }
  void ya(const std::string& metin) { kosul("(" + c_ + " IS NULL OR " + metin + ")"); }

  std::string ifade() {
    const Sinif kaynak = sinif(s_.type), hedef = sinif(h_.type);
    if (hedef == Sinif::UzunMetin && kaynak == Sinif::UzunMetin)
      // What is longer than any text that can be trimmed goes as it is.
      return kirp_ ? "CASE WHEN DATALENGTH(" + c_ + ")>8000 THEN " + c_ + " ELSE " + kirp(kisa()) + " END"
                   : c_;
    if (kaynak == Sinif::UzunMetin) {
      ya("DATALENGTH(" + c_ + ")<=8000");
      return metne(kirp(kisa()), hedef);
    }
    if (kaynak == Sinif::Metin) return metne(kirp(c_), hedef);
    if (kaynak == Sinif::Sayi && hedef == Sinif::Sayi) return sayidan();
    if (kaynak == hedef) return c_;
    if (hedef == Sinif::Metin || hedef == Sinif::UzunMetin) {
      const std::string metin = "CONVERT(VARCHAR(50)," + c_ + (kaynak == Sinif::Tarih ? ",103)" : ")");
      return metne(metin, hedef);
    }
    ya("1=0");
    return c_;
  }
  std::string kisa() const { return "CONVERT(VARCHAR(8000)," + c_ + ")"; }
  std::string kirp(const std::string& ifade) const { return kirp_ ? "LTRIM(RTRIM(" + ifade + "))" : ifade; }

  // A text into a column of any kind.
  std::string metne(const std::string& ifade, Sinif hedef) {
    if (hedef == Sinif::UzunMetin) return ifade;
    if (hedef == Sinif::Metin) {
      const bool sigar = sinif(s_.type) == Sinif::Metin && s_.size <= h_.size;
      if (!sigar) ya("LEN(" + ifade + ")<=" + std::to_string(h_.size));
      return ifade;
    }
    if (hedef == Sinif::Tarih)
      ya("ISDATE(" + ifade + ")=1");
    else
      ya("ISNUMERIC(" + ifade + ")=1");
    return ifade;
  }
  std::string sayidan() {
    const std::string_view sinir = enBuyuk(h_.type);
    if (!sinir.empty() && genislik(h_.type) < genislik(s_.type))
      ya(c_ + " BETWEEN -" + std::string(sinir) + " AND " + std::string(sinir));
    return c_;
  }

  const FieldInfo &s_, &h_;
  bool kirp_;
  std::string c_, uyar_;
};

}  // namespace

std::string kimlikKolonu(Baglam& b, const std::string& tablo) {
  for (const FieldInfo& alan : b.alanlar(tablo))
    if (alan.identity) return alan.name;
  return "";
}

std::vector<KopyaKolonu> kolonlariKur(Baglam& b, const std::string& tablo, const KolonSecimi& secim,
                                      const OzelKolonlar& ozel) {
  const std::vector<FieldInfo>&kaynak = b.alanlar(b.k(tablo)), &hedef = b.alanlar(tablo);
  std::vector<KopyaKolonu> out;
  for (const FieldInfo& alan : hedef) {
    if (alan.identity) continue;
    const auto ozeli =
        std::find_if(ozel.begin(), ozel.end(), [&](const auto& o) { return ayni(o.first, alan.name); });
    if (ozeli != ozel.end()) {
      if (!ozeli->second.empty()) out.push_back({alan.name, ozeli->second, ""});
      continue;
    }
    const auto es = std::find_if(kaynak.begin(), kaynak.end(),
                                 [&](const FieldInfo& f) { return ayni(f.name, alan.name); });
    if (es == kaynak.end()) continue;
    if (const auto ref = referansi(alan.name, secim))
      out.push_back({alan.name, b.kod(*ref, "s.[" + es->name + "]"), ""});
    else
      out.push_back(Uyarlama(*es, alan, secim.kirpma).kur());
  }
  return out;
}

}  // namespace rollover
