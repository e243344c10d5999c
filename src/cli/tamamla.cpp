#include <future>
#include <sstream>
#include <thread>

#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "session/statements.h"
#include "session/sys_inf.h"

namespace cli {

namespace {

constexpr std::array<std::string_view, 2> turler = {"firma", "kullanici"};
constexpr std::array<Secenek, 1> options = {
    {{"TUR", "Yazılacak adlar", true, Secenek::Tur::Konum, "", turler, "tür"}}};

using Adlar = std::vector<std::string>;

Adlar oku(Ortam& ortam, bool firma) {
  KomutOturumu komut(ortam);
  session::sysInfYukle(komut.oturum);
  if (komut.oturum.Server_Adi.empty()) return {};
  session::Katalog_Bagla(komut.oturum, std::string(session::katalogVeritabani));
  const auto rows =
      komut.oturum.Baglanti->query(firma ? "SELECT sysfrm_dbnm FROM sysfrmlng ORDER BY sysfrm_dbnm"
                                         : "SELECT sysus_nm FROM sysuslng ORDER BY sysus_nm");
  Adlar adlar;
  for (std::int64_t i = 0; rows && i < rows->count(); ++i) adlar.push_back(rows->value(i, 0).trimmed());
  return adlar;
}

// A server that does not answer keeps its thread; the program ends without it.
int run(Ortam& ortam, const Degerler& values) {
  const auto sonuc = std::make_shared<std::promise<Adlar>>();
  auto gelecek = sonuc->get_future();
  std::thread([sonuc, dizin = ortam.dizin, surucuYap = ortam.surucuYap,
               firma = values.metin("TUR") == turler[0]] {
    std::istringstream in;
    std::ostream hic(nullptr);
    Ortam sessiz{in, hic, hic, false, false, dizin, surucuYap};
    Adlar adlar;
    try {
      adlar = oku(sessiz, firma);
    } catch (const std::exception&) {
      adlar.clear();
    }
    sonuc->set_value(std::move(adlar));
  }).detach();
  if (gelecek.wait_for(ortam.tamamlamaSuresi) == std::future_status::ready)
    for (const std::string& ad : gelecek.get()) ortam.out << ad << "\n";
  return tamam;
}

}  // namespace

const Komut& tamamlaKomutu() {
  static const Komut command{
      "tamamla", "Kabuk tamamlaması için sunucudaki adları yazar", "", options, run, genelKodlar, true};
  return command;
}

}  // namespace cli
