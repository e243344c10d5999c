#include "session/konsol.h"

#include <algorithm>
#include <map>
#include <set>

#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/statements.h"

namespace session {

namespace {

// Menu_Buton(0) to (10).
constexpr std::array<MenuButonu, 11> buttons = {
    {{"SabitTanimlar_Frm", "Sabit Tanımlamalar", "sabit", "Bir firmanın bütün parametreleri",
      "Sabit Tanımlamalar", false},
     {"Numaralar_Frm", "Numaratör Tanımlamaları", "numarator", "Fişlerin kullanılmış son numaraları",
      "Numaratör Tanımlamaları", false},
     {"YedekFrm", "Yedekleme İşlemleri", "yedek", "Bir firmanın yedeğini alır ya da geri yükler", "", false},
     {"ServisMenu", "Servis İşlemleri", "servis", "Kayıt kilitlerini temizler, defterleri denetler", "",
      false},
     {"BarkodGramajFrm", "Tartı Barkod Tanımları", "terazi", "Terazi barkodunun hanelerinin anlamı", "",
      false},
     {"DevirFrm", "Firma Devri", "devir", "Dönemi kapanan firmayı yeni dönemine taşır", "", false},
     {"TaksitliSatisTanimlar_Frm", "Taksitli Satış Parametreleri", "taksit",
      "Taksitli satışın kuralları ve basım boşlukları", "", false},
     {"ElTerminaliTanimKartifrm", "El Terminali Tanımları", "terminal",
      "El terminalinin metin dosyasında hangi bilginin nerede durduğu", "", false},
     {"Offline_AyarlarFRM", "Offline Bağlantı Ayarları", "sube",
      "Çevrimdışı çalışan bir şubenin merkezle alışverişi", "", false},
     {"ServerParaFrm", "Server Parametre Tanımları", "sunucu",
      "Programın bağlandığı sunucu ve SQL kullanıcısı (sys.inf)", "", true},
     {"DbAktarFRm", "Database Aktar", "aktar", "Başka bir klasördeki veritabanlarını bu sunucuya taşır", "",
      true}}};

// In the order of Ekran.
constexpr std::array<EkranBilgisi, 11> screens = {{{"", ""},
                                                   {"Firma_Tanım", "Firma Tanımı"},
                                                   {"Ekle_Frm", "Kullanıcı Tanımı"},
                                                   {"Yetki_Frm", "Kullanıcı Yetkileri"},
                                                   {"KasiyerYetkiFrm", "Kasiyer Yetkileri"},
                                                   {"MNIsyeri", "İşyeri Tanımları"},
                                                   {"MNAmbar", "Ambar Tanımları"},
                                                   {"MnSatici", "Satıcı Tanımları"},
                                                   {"MNDoviz", "Döviz Tanımları"},
                                                   {"MNFiyat", "Fiyat Tanımları"},
                                                   {"MNRenkTanim", "Renk Beden Drop Tanımları"}}};

struct KindImage {
  std::string_view kind;
  int image;
};
constexpr std::array<KindImage, 6> images = {
    {{dugum::FT, 1}, {dugum::F, 1}, {dugum::KT, 0}, {dugum::K, 0}, {dugum::SI, 9}, {dugum::Y, 17}}};

struct MenuRow {
  std::string_view kind;
  bool supervisor;
  MenuDurumu state;  // without `ekle`, which follows the supervisor alone
};
constexpr std::array<MenuRow, 4> menuRows = {
    {{dugum::F, true, {false, true, true, true, false, false, true}},
     {dugum::F, false, {false, false, true, false, false, false, false}},
     {dugum::K, true, {false, true, true, true, true, true, false}},
     {dugum::K, false, {false, false, true, false, false, true, false}}}};

// Who may use what, in one read. Without it the tree stands all the same.
void baglariKoy(Oturum& oturum, std::vector<Dugum>& nodes) {
  db::Recordset& row = oturum.Kayitlar;
  if (Sorgu_Ac(oturum, row, "SELECT sysfrm_ID,sysus_ID FROM sysusfrmlng") != 0 ||
      row.state() == db::State::Closed)
    return;
  std::map<std::int64_t, std::set<std::int64_t>> byCompany;
  for (; !row.eof(); row.moveNext())
    byCompany[row.field("sysfrm_ID").integer()].insert(row.field("sysus_ID").integer());
  const auto tie = [](Dugum& node, const Dugum& other) {
    node.baglar += (node.baglar.empty() ? "" : ", ") + other.text;
  };
  for (Dugum& company : nodes) {
    const auto users = company.kind == dugum::F ? byCompany.find(company.id) : byCompany.end();
    if (users == byCompany.end()) continue;
    for (Dugum& user : nodes) {
      if (user.kind != dugum::K || !users->second.contains(user.id)) continue;
      tie(company, user);
      tie(user, company);
    }
  }
}

bool isCompany(std::string_view kind) {
  return kind == dugum::F || kind == dugum::FT;
}
bool isUser(std::string_view kind) {
  return kind == dugum::K || kind == dugum::KT;
}
bool isLeaf(std::string_view kind) {
  return kind == dugum::F || kind == dugum::K;
}

bool connectCatalog(Oturum& oturum) {
  try {
    Katalog_Bagla(oturum, std::string(katalogVeritabani));
    return true;
  } catch (const db::SqlError& error) {
    oturum.kutular->message(error.what());
    return false;
  }
}

// Opens `sql` on the catalog and gives one node per row; nothing when it could not be read.
template <class Make>
std::optional<std::vector<Dugum>> nodesOf(Oturum& oturum, std::string_view sql, Make make) {
  if (!connectCatalog(oturum)) return std::nullopt;
  db::Recordset& rows = oturum.Kayitlar;
  Sorgu_Ac_Mesajli(oturum, rows, sql);
  if (rows.state() == db::State::Closed) return std::nullopt;
  std::vector<Dugum> nodes;
  for (; !rows.eof(); rows.moveNext()) nodes.push_back(make(rows));
  return nodes;
}

// All of them or none; what fails is shown and ends it.
bool deleteRows(Oturum& oturum, std::vector<std::string> deletions) {
  if (!connectCatalog(oturum)) return false;
  deletions.insert(deletions.begin(), "BEGIN TRAN");
  deletions.emplace_back("COMMIT TRAN");
  for (const std::string& deletion : deletions) {
    oturum.Son_Hata.clear();
    Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar, deletion);
    if (oturum.Son_Hata.empty()) continue;
    Sorgu_Ac(oturum, oturum.Kayitlar, "IF @@TRANCOUNT>0 ROLLBACK TRAN");
    return false;
  }
  return true;
}

// Each begins so; the id and an apostrophe follow.
std::vector<std::string> withId(std::span<const std::string_view> beginnings, std::int64_t id) {
  std::vector<std::string> statements;
  for (const std::string_view beginning : beginnings)
    statements.push_back(std::string(beginning) + std::to_string(id) + "'");
  return statements;
}

KomutSonucu openScreen(Ekran ekran, std::string durum = {}) {
  KomutSonucu sonuc;
  sonuc.ekran = ekran;
  sonuc.paneliGizle = true;
  sonuc.durum = std::move(durum);
  return sonuc;
}

Ekran cardOf(const Dugum& node) {
  if (isCompany(node.kind)) return Ekran::Firma_Tanim;
  return isUser(node.kind) ? Ekran::Ekle_Frm : Ekran::Yok;
}

// Opens the node's card for change or inspection.
KomutSonucu openCard(Oturum& oturum, const Dugum& node, bool inceleme) {
  const Ekran card = cardOf(node);
  if (card == Ekran::Yok) return {};
  oturum.Secili_ID = node.id;
  oturum.Yeni_Kayit = false;
  oturum.Inceleme = inceleme;
  return openScreen(card);
}

bool isSupervisorNode(const Dugum& node) {
  return isUser(node.kind) && node.id == 1;
}

bool connectMaster(Oturum& oturum) {
  try {
    Katalog_Bagla(oturum, "master");
    return true;
  } catch (const db::SqlError& error) {
    oturum.kutular->message(error.what());
    return false;
  }
}

bool dropDatabase(Oturum& oturum) {
  return Komut_Calistir(oturum, oturum.Kayitlar, "DROP DATABASE " + oturum.Firma_DB_Adi) == 0;
}

bool databaseIsGone(Oturum& oturum) {
  return Sorgu_Ac(oturum, oturum.Kayitlar,
                  "SELECT name FROM sysdatabases WHERE name='" + db::escape(oturum.Firma_DB_Adi) + "'") ==
             0 &&
         oturum.Kayitlar.state() == db::State::Open && oturum.Kayitlar.eof();
}

// The server knows no such database: a creation or a deletion broke off, and the rows alone are left.
bool askToDeleteTheRow(Oturum& oturum) {
  return oturum.kutular->ask("\"" + oturum.Firma_DB_Adi +
                                 "\" firmasının veritabanı sunucuda yok; silinecek bir veritabanı "
                                 "kalmamış.\nFirmanın listedeki kaydı silinsin mi?",
                             Icon::Question, "Korvena");
}

// The database is gone, or has never been there and the row may go without it.
bool databaseOutOfTheWay(Oturum& oturum) {
  if (dropDatabase(oturum)) return true;
  return databaseIsGone(oturum) && askToDeleteTheRow(oturum);
}

enum class Silme : std::uint8_t { Veritabaniyla, YalnizKayit, Yok };

bool askToDeleteTheRowAlone(Oturum& oturum, const std::string& owner) {
  return oturum.kutular->ask(
      "\"" + oturum.Firma_DB_Adi + "\" kaydı, listedeki \"" + owner +
          "\" firmasının veritabanını gösteriyor. Bu veritabanı silinmeyecek.\nYalnızca bu kayıt listeden "
          "silinsin mi?",
      Icon::Question, "Korvena");
}

// Two rows of the list may lead to one database; the one that is not its own must not take it along. When
// that cannot be found out, nothing is deleted.
Silme whatToDelete(Oturum& oturum, std::int64_t id) {
  try {
    const auto owner = Veritabaninin_Sahibi(oturum, id, oturum.Firma_DB_Adi);
    if (!owner) return Silme::Veritabaniyla;
    return askToDeleteTheRowAlone(oturum, *owner) ? Silme::YalnizKayit : Silme::Yok;
  } catch (const db::SqlError& error) {
    oturum.kutular->message(error.what());
    return Silme::Yok;
  }
}

KomutSonucu deleteCompany(Oturum& oturum, const Dugum& node) {
  const bool agreed = oturum.kutular->ask(
      "Seçmiş olduğunuz firmayı tüm hareketleriyle birlikte silmek istediğinizden emin misiniz?\n"
      "Eğer Evet'i Sçerseniz Bu işlemi Geri Alma Şansınız Olmayacak",
      Icon::Question, "Korvena");
  if (!agreed) return {};
  oturum.Firma_DB_Adi = Trim(node.text);
  const Silme silme = connectMaster(oturum) ? whatToDelete(oturum, node.id) : Silme::Yok;
  if (silme == Silme::Yok || (silme == Silme::Veritabaniyla && !databaseOutOfTheWay(oturum))) {
    oturum.kutular->message("Bu Firma Kullanımda Olabilir. Firma Bilgieri Silinemedi.");
    connectCatalog(oturum);
    return {};
  }
  KomutSonucu sonuc;
  sonuc.listeyiYenile = Firma_Sil(oturum, node.id);
  return sonuc;
}

KomutSonucu deleteUser(Oturum& oturum, const Dugum& node) {
  if (isSupervisorNode(node)) {
    oturum.kutular->message("Supervisor olan kullanıcıyı silemezsiniz!");
    return {};
  }
  if (!oturum.kutular->ask("Bu kullanıcıyı tamamen silmek istediğinizden emin misiniz?")) return {};
  KomutSonucu sonuc;
  sonuc.listeyiYenile = Kullanici_Sil(oturum, node.id);
  return sonuc;
}

}  // namespace

int resimSirasi(std::string_view kind) {
  const auto* at =
      std::find_if(images.begin(), images.end(), [&](const KindImage& i) { return i.kind == kind; });
  return at == images.end() ? 0 : at->image;
}

static std::optional<std::vector<Dugum>> firmaDugumleri(Oturum& oturum) {
  return nodesOf(oturum, "SELECT sysfrm_ID,sysfrm_dbnm,sysfrm_kd FROM sysfrmlng",
                 [](const db::Recordset& row) {
                   Dugum node;
                   node.kind = dugum::F;
                   node.text = row.field("sysfrm_dbnm").trimmed();
                   node.id = row.field("sysfrm_ID").integer();
                   node.kod = row.field("sysfrm_kd").trimmed();
                   return node;
                 });
}

static std::optional<std::vector<Dugum>> kullaniciDugumleri(Oturum& oturum) {
  return nodesOf(oturum, "SELECT sysus_ID,sysus_nm,sysus FROM sysuslng ORDER BY sysus_nm",
                 [](const db::Recordset& row) {
                   Dugum node;
                   node.kind = dugum::K;
                   node.text = row.field("sysus_nm").trimmed();
                   node.id = row.field("sysus_ID").integer();
                   node.password = Sifre_Coz(row.field("sysus").trimmed()).value_or("");
                   return node;
                 });
}

// What the console shows of a company beside its name. A catalog that cannot tell leaves it out.
static void addCards(Oturum& oturum, std::vector<Dugum>& companies) {
  db::Recordset& rows = oturum.Kayitlar;
  if (companies.empty() ||
      Sorgu_Ac(oturum, rows,
               "SELECT sysfrm_ID,sysfrm_nm,Mali_Yil_Baslangic,Mali_Yil_Bitis,DBVRSYN FROM sysfrmlng") != 0)
    return;
  try {
    for (; !rows.eof(); rows.moveNext()) {
      const std::int64_t id = rows.field("sysfrm_ID").integer();
      const auto node = std::ranges::find(companies, id, &Dugum::id);
      if (node == companies.end()) continue;
      node->unvan = rows.field("sysfrm_nm").trimmed();
      node->surum = rows.field("DBVRSYN").trimmed();
      const db::Value bas = rows.field("Mali_Yil_Baslangic"), bit = rows.field("Mali_Yil_Bitis");
      if (const auto* b = bas.as<db::DateTime>(), *s = bit.as<db::DateTime>(); b && s) {
        node->bas = *b;
        node->bit = *s;
      }
    }
  } catch (const db::SqlError&) {
    // the names alone are enough
  }
}

std::vector<Dugum> Firma_Listesi_Doldur(Oturum& oturum) {
  return firmaDugumleri(oturum).value_or(std::vector<Dugum>{});
}

std::vector<Dugum> Kullanici_Listesi_Doldur(Oturum& oturum) {
  return kullaniciDugumleri(oturum).value_or(std::vector<Dugum>{});
}

std::optional<std::vector<Dugum>> Alan_Listesi_Doldur(Oturum& oturum) {
  auto companies = firmaDugumleri(oturum);
  if (!companies) return std::nullopt;
  auto users = kullaniciDugumleri(oturum);
  if (!users) return std::nullopt;
  addCards(oturum, *companies);
  std::vector<Dugum> nodes;
  const auto branch = [&](std::string_view kind, std::string text, std::vector<Dugum>& below) {
    Dugum node;
    node.kind = kind;
    node.text = std::move(text);
    nodes.push_back(std::move(node));
    nodes.insert(nodes.end(), std::make_move_iterator(below.begin()), std::make_move_iterator(below.end()));
  };
  branch(dugum::FT, "Firma Tanımları", *companies);
  branch(dugum::KT, "Kullanıcı Tanımları", *users);
  baglariKoy(oturum, nodes);
  return nodes;
}

std::vector<std::string> firmaSilmeCumleleri(std::int64_t id) {
  static constexpr std::array<std::string_view, 4> beginnings = {
      "DELETE FROM sysusfrmlng WHERE sysfrm_ID='", "DELETE FROM Kullanici WHERE Firma_ID='",
      "DELETE FROM sysfrmlng WHERE sysfrm_ID='", "DELETE FROM Kullanici_Menu WHERE Firma_ID='"};
  return withId(beginnings, id);
}

bool Firma_Sil(Oturum& oturum, std::int64_t id) {
  return deleteRows(oturum, firmaSilmeCumleleri(id));
}

bool Kullanici_Sil(Oturum& oturum, std::int64_t id) {
  static constexpr std::array<std::string_view, 4> beginnings = {
      "DELETE FROM sysusfrmlng WHERE sysus_ID='", "DELETE FROM Kullanici WHERE Kullanici_ID='",
      "DELETE FROM sysuslng WHERE sysus_ID='", "DELETE FROM Kullanici_Menu WHERE Kullanici_ID='"};
  return deleteRows(oturum, withId(beginnings, id));
}

MenuDurumu menuDurumu(std::string_view kind, bool supervisor) {
  MenuDurumu state;
  for (const MenuRow& row : menuRows)
    if (row.kind == kind && row.supervisor == supervisor) state = row.state;
  state.ekle = supervisor;
  return state;
}

std::optional<Komut> agacKomutu(AgacOlayi olay, std::string_view kind, bool supervisor) {
  const bool branch = kind == dugum::FT || kind == dugum::KT;
  if (!supervisor || (!isLeaf(kind) && !(branch && olay == AgacOlayi::Insert))) return std::nullopt;
  switch (olay) {
    case AgacOlayi::Insert:
      return Komut::MNEkle;
    case AgacOlayi::Delete:
      return Komut::MNSil;
    default:
      return Komut::MNDegistir;
  }
}

std::span<const MenuButonu, 11> menuButonlari() {
  return buttons;
}

const EkranBilgisi& ekranBilgisi(Ekran ekran) {
  return screens[static_cast<std::size_t>(ekran)];
}

KomutSonucu MNEkle(Oturum& oturum, const Dugum& secili) {
  const Ekran card = cardOf(secili);
  if (card == Ekran::Yok) return {};
  oturum.Yeni_Kayit = true;
  oturum.Inceleme = false;
  return openScreen(card,
                    card == Ekran::Firma_Tanim ? "Yeni Firma Oluşturuluyor" : "Yeni Kullanıcı Oluşturuluyor");
}

KomutSonucu MNDegistir(Oturum& oturum, const Dugum& secili) {
  return openCard(oturum, secili, false);
}

KomutSonucu MNIncele(Oturum& oturum, const Dugum& secili) {
  if (isSupervisorNode(secili)) {
    oturum.kutular->message("Supervisor olan kullanıcıyı inceleyemezsiniz!");
    return {};
  }
  return openCard(oturum, secili, true);
}

KomutSonucu MNYetki(Oturum& oturum, const Dugum& secili) {
  if (secili.kind != dugum::K) return {};
  if (isSupervisorNode(secili)) {
    oturum.kutular->message("Supervisor olan kullanıcı için yetkilendirme yapamazsınız!");
    return {};
  }
  oturum.Secili_ID = secili.id;
  return openScreen(Ekran::Yetki_Frm);
}

KomutSonucu MNYetkiKasiyer(Oturum& oturum, const Dugum& secili) {
  oturum.Secili_ID = secili.id;
  KomutSonucu sonuc;
  sonuc.ekran = Ekran::KasiyerYetkiFrm;
  return sonuc;
}

KomutSonucu MNTanim(Oturum& oturum, const Dugum& secili, Ekran ekran) {
  if (!isCompany(secili.kind)) return {};
  oturum.Secili_Firma = Trim(secili.text);
  KomutSonucu sonuc;
  sonuc.ekran = ekran;
  return sonuc;
}

KomutSonucu MNSil(Oturum& oturum, const Dugum& secili) {
  if (isCompany(secili.kind)) return deleteCompany(oturum, secili);
  return isUser(secili.kind) ? deleteUser(oturum, secili) : KomutSonucu{};
}

std::string Firma_Kod_Yeni(Oturum& oturum) {
  db::Recordset& row = oturum.Kayitlar;
  Sorgu_Ac_Mesajli(oturum, row, "SELECT Max(sysfrm_kd) as SN_KD FROM sysfrmlng");
  if (row.state() == db::State::Closed || row.eof()) return "00001";
  // An aggregate always gives a row: over no company its value is NULL.
  const std::string greatest = row.field("SN_KD").trimmed();
  return greatest.empty() ? "00001" : Kod_Artir(greatest);
}

}  // namespace session
