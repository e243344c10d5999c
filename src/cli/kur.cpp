#include "catalog/sunucu_hazirla.h"
#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "platform/files.h"
#include "session/giris.h"
#include "session/metin.h"
#include "session/statements.h"
#include "session/sys_inf.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 4> options = {{
    {"--sunucu", "Sunucu: (yerel), (yerel):KLASÖR, BİLGİSAYAR, BİLGİSAYAR\\ÖRNEK ya da BİLGİSAYAR,KAPI", true,
     Secenek::Tur::Metin, "SUNUCU"},
    {"--sql-giris", "SQL kullanıcı adı (varsayılan sa)", false, Secenek::Tur::Metin, "AD"},
    {"--yonetici", "Yöneticinin adı (varsayılan KORVENA)", false, Secenek::Tur::Metin, "AD"},
    {"--veri-klasoru", "Firma dosyalarının sunucudaki klasörü", false, Secenek::Tur::Metin, "KLASÖR"},
}};

constexpr std::string_view more =
    "Şifreler terminalde gösterilmeden sorulur; terminal yoksa standart girdiden, her satırda bir şifre:\n"
    "önce SQL şifresi, sonra yönetici şifresi. Var olan katalog değiştirilmez. sys.inf yazılır.";

// Puts sys.inf back as it was unless kept.
class ParameterFile {
 public:
  explicit ParameterFile(std::filesystem::path folder)
      : folder_(std::move(folder)), before_(platform::readFile(session::sysInfYolu(folder_))) {}
  ~ParameterFile() {
    if (!written_ || kept_) return;
    std::error_code ignored;
    if (before_)
      static_cast<void>(platform::writeFileSafely(session::sysInfYolu(folder_), *before_));
    else
      std::filesystem::remove(session::sysInfYolu(folder_), ignored);
  }
  ParameterFile(const ParameterFile&) = delete;
  ParameterFile& operator=(const ParameterFile&) = delete;

  std::string write(const session::Oturum& o) {
    std::string error = session::Sys_Inf_Yaz(folder_, {o.Server_Adi, o.SQL_Login, o.SQL_Sifre, false});
    written_ = error.empty();
    return error;
  }
  void keep() { kept_ = true; }

 private:
  std::filesystem::path folder_;
  std::optional<std::string> before_;
  bool written_ = false, kept_ = false;
};

class Kurulum {
 public:
  Kurulum(KomutOturumu& komut, const Degerler& values)
      : komut_(komut),
        o_(komut.oturum),
        file_(komut.ortam.dizin),
        name_(values.metin("yonetici", "KORVENA")),
        dataFolder_(values.metin("veri-klasoru")) {
    o_.Server_Adi = session::Trim(values.metin("sunucu"));
    o_.SQL_Login = values.metin("sql-giris", "sa");
  }

  int run() {
    const auto local = komut_.surucu->local(o_.Server_Adi);
    const bool fresh = local && !local->exists();
    if (!readSqlPassword(fresh)) return reddedildi;
    if (!fresh) {
      if (!connect()) return reddedildi;
      if (!session::katalogEksik(o_)) return leaveAlone();
    }
    if (!readSupervisorPassword()) return reddedildi;
    // Written before the server is made: a server whose password nobody has would be of no use.
    if (const std::string error = file_.write(o_); !error.empty()) return refuse(error);
    if (fresh) {
      local->create(o_.SQL_Login, o_.SQL_Sifre);
      file_.keep();
      if (!connect()) return reddedildi;
    }
    return prepare();
  }

 private:
  int refuse(const std::string& text) {
    komut_.ortam.err << text << "\n";
    return reddedildi;
  }

  bool readSqlPassword(bool fresh) {
    for (const std::string* field : {&o_.Server_Adi, &o_.SQL_Login})
      if (field->empty() || !session::sysInfAlaniUygun(*field)) {
        refuse("Sunucu ve SQL kullanıcı adı boş olamaz, içinde ';' olamaz.");
        return false;
      }
    const auto password = sifreOku(komut_.ortam, "SQL şifresi (" + o_.SQL_Login + ")", fresh);
    if (!password) {
      refuse("SQL şifresi okunamadı.");
      return false;
    }
    if (!session::sysInfAlaniUygun(*password) || (fresh && password->empty())) {
      refuse("SQL şifresi boş olamaz, içinde ';' olamaz.");
      return false;
    }
    o_.SQL_Sifre = *password;
    return true;
  }

  bool readSupervisorPassword() {
    const auto password = sifreOku(komut_.ortam, "Yönetici şifresi (" + name_ + ")", true);
    if (!password) {
      refuse("Yönetici şifresi okunamadı.");
      return false;
    }
    const std::string fault = catalog::yoneticiHatasi(name_, *password);
    if (!fault.empty()) refuse(fault);
    password_ = *password;
    return fault.empty();
  }

  bool connect() {
    try {
      session::Katalog_Bagla(o_, "master");
      return true;
    } catch (const db::SqlError& error) {
      refuse("Sunucuya bağlanılamadı: " + baglantiHatasi(error));
      return false;
    }
  }

  int leaveAlone() {
    if (const std::string error = file_.write(o_); !error.empty()) return refuse(error);
    file_.keep();
    komut_.ortam.haber() << "Sunucuda Defination_DB zaten var; değiştirilmedi. sys.inf yazıldı.\n";
    return tamam;
  }

  int prepare() {
    const auto report = catalog::Sunucu_Hazirla(o_, {name_, password_, dataFolder_});
    const bool good = report.sonuc == catalog::KurulumSonucu::Hazirlandi ||
                      report.sonuc == catalog::KurulumSonucu::ZatenVar;
    if (!good) return refuse(report.metin);
    file_.keep();
    komut_.ortam.haber() << report.metin << "\n";
    return tamam;
  }

  KomutOturumu& komut_;
  session::Oturum& o_;
  ParameterFile file_;
  std::string name_, dataFolder_, password_;
};

int run(Ortam& ortam, const Degerler& values) {
  std::error_code error;
  std::filesystem::create_directories(ortam.dizin, error);
  if (error) {
    ortam.err << "Klasör açılamadı: " << ortam.dizin.string() << "\n";
    return reddedildi;
  }
  KomutOturumu komut(ortam);
  return Kurulum(komut, values).run();
}

}  // namespace

const Komut& kurKomutu() {
  static const Komut command{"kur", "Sunucuyu hazırlar: katalog, yönetici ve sys.inf", more, options, run};
  return command;
}

}  // namespace cli
