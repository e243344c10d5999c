#include "cli/kullanici_ortak.h"

#include <algorithm>

#include "session/firma_bul.h"
#include "session/konsol.h"
#include "session/metin.h"

namespace cli {

std::vector<std::string> virgulleBol(const std::string& metin) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at <= metin.size();) {
    const std::size_t end = std::min(metin.find(',', at), metin.size());
    if (std::string part = session::Trim(metin.substr(at, end - at)); !part.empty())
      parts.push_back(std::move(part));
    at = end + 1;
  }
  return parts;
}

bool firmalariSec(KomutOturumu& komut, rights::KullaniciKarti& kart, const std::string& firmalar) {
  for (rights::FirmaSatiri& firma : kart.Firmatreelist) firma.secili = false;
  for (const std::string& ad : virgulleBol(firmalar)) {
    const auto firma = session::Firma_Bul(komut.oturum, ad);
    const auto at = std::find_if(kart.Firmatreelist.begin(), kart.Firmatreelist.end(),
                                 [&](const rights::FirmaSatiri& f) { return firma && f.id == firma->id; });
    if (at == kart.Firmatreelist.end()) {
      komut.ortam.err << "Bu isimle bir firma yok: " << ad << "\n";
      return false;
    }
    at->secili = true;
  }
  return true;
}

bool sifreyiSor(Ortam& ortam, rights::KullaniciKarti& kart) {
  const auto sifre = sifreOku(ortam, "Kullanıcının şifresi", true);
  if (!sifre) {
    ortam.err << "Kullanıcının şifresi verilmedi.\n";
    return false;
  }
  kart.Kullanici_Sifre = kart.Sifre_Onay = *sifre;
  return true;
}

bool postayiKoy(Ortam& ortam, rights::KullaniciKarti& kart, const Degerler& values) {
  const std::pair<const char*, std::string*> fields[] = {{"smtp-sunucu", &kart.smtpserver},
                                                         {"smtp-kapi", &kart.smtpserverport},
                                                         {"smtp-kullanici", &kart.sendusername}};
  for (const auto& [name, field] : fields)
    if (values.var(name)) *field = values.metin(name);
  if (!values.var("smtp-sifre")) return true;
  const auto sifre = sifreOku(ortam, "Posta şifresi", false);
  if (!sifre) {
    ortam.err << "Posta şifresi verilmedi.\n";
    return false;
  }
  kart.sendpassword = *sifre;
  return true;
}

std::optional<std::int64_t> kullaniciBul(KomutOturumu& komut, const std::string& ad) {
  const std::string wanted = session::Buyuk_Harf(session::Trim(ad));
  for (const session::Dugum& user : session::Kullanici_Listesi_Doldur(komut.oturum))
    if (session::Buyuk_Harf(user.text) == wanted) return user.id;
  komut.ortam.err << "Bu isimle bir kullanıcı yok: " << wanted << "\n";
  return std::nullopt;
}

bool yoneticininki(KomutOturumu& komut, const rights::YetkiDuzeni& duzen) {
  session::Dugum node;
  node.kind = session::dugum::K;
  node.id = std::stoll(duzen.Kullanici_ID);
  return session::MNYetki(komut.oturum, node).ekran == session::Ekran::Yok;
}

}  // namespace cli
