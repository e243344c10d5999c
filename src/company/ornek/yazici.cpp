#include "company/ornek/yazici.h"

#include <algorithm>
#include <cstdlib>

namespace company::ornek {

namespace {

constexpr std::size_t topluBoy = 10;        // rows of one statement; preparing it costs their square
// Rows of one transaction: a company of the usual size is filled whole or not at all; larger ones would make
// the log as large as the data.
constexpr std::int64_t islemBoyu = 200'000;

}  // namespace

std::string paraMetni(std::int64_t kurus) {
  std::string text = std::to_string(std::llabs(kurus));
  if (text.size() < 3) text.insert(0, 3 - text.size(), '0');
  text.insert(text.size() - 2, 1, '.');
  return kurus < 0 ? "-" + text : text;
}

Kayit& Kayit::ham(std::string_view kolon, std::string_view sql) {
  if (!kolonlar_.empty()) {
    kolonlar_ += ',';
    degerler_ += ',';
  }
  kolonlar_ += kolon;
  degerler_ += sql;
  return *this;
}

Kayit& Kayit::metin(std::string_view kolon, std::string_view deger) {
  return ham(kolon, db::literal(deger));
}

Kayit& Kayit::sayi(std::string_view kolon, std::int64_t deger) {
  return ham(kolon, std::to_string(deger));
}

Kayit& Kayit::para(std::string_view kolon, std::int64_t kurus) {
  return ham(kolon, "'" + paraMetni(kurus) + "'");
}

Kayit& Kayit::zaman(std::string_view kolon, const db::DateTime& deger) {
  return ham(kolon, db::literal(deger));
}

Kayit& Kayit::varsaPara(std::string_view kolon, std::int64_t kurus) {
  return var(kolon) ? para(kolon, kurus) : *this;
}

Kayit& Kayit::varsaSayi(std::string_view kolon, std::int64_t deger) {
  return var(kolon) ? sayi(kolon, deger) : *this;
}

// The longest row has some fifty columns.
Kayit::Kayit(std::string_view tablo, const TabloEki* ek) : tablo_(tablo), ek_(ek) {
  kolonlar_.reserve(700);
  degerler_.reserve(900);
}

std::string Kayit::sql() const {
  return "INSERT INTO " + tablo_ + " (" + kolonlar() + ") VALUES (" + degerler() + ")\n";
}

std::string topluSql(std::span<const Kayit> kayitlar) {
  if (kayitlar.empty()) return "";
  std::string out =
      "INSERT INTO " + kayitlar.front().tablo() + " (" + kayitlar.front().kolonlar() + ") VALUES ";
  for (const Kayit& kayit : kayitlar)
    out += (&kayit == kayitlar.data() ? "(" : ",(") + kayit.degerler() + ")";
  return out + "\n";
}

void Yazici::say(std::int64_t satir) {
  satir_ += satir;
  islemde_ += satir;
  if (islemde_ < islemBoyu) return;
  baglanti_.execute("COMMIT TRAN");
  acik_ = false;
  islendi_ = true;
  islemde_ = 0;
}

void Yazici::basla(const std::string& kilit) {
  baglanti_.execute("BEGIN TRAN");
  acik_ = true;
  baglanti_.execute(kilit);
}

void Yazici::calistir(const std::string& batch, std::int64_t satir) {
  bosalt();
  if (!acik_) baglanti_.execute("BEGIN TRAN");
  acik_ = true;
  baglanti_.execute(batch);
  say(satir);
}

void Yazici::topluEkle(const std::string& statement) {
  bosalt();
  if (!acik_) baglanti_.execute("BEGIN TRAN");
  acik_ = true;
  say(std::max<std::int64_t>(0, baglanti_.execute(statement)));
}

std::int64_t Yazici::numara(const std::string& batch, std::int64_t satir) {
  bosalt();
  if (!acik_) baglanti_.execute("BEGIN TRAN");
  acik_ = true;
  const auto rows = baglanti_.query(batch);
  const std::int64_t sonuc = rows && rows->count() > 0 ? rows->value(0, 0).integer() : 0;
  say(satir);
  return sonuc;
}

void Yazici::biriktir(Kayit kayit) {
  if (!bekleyen_.empty() && bekleyen_.front().tablo() != kayit.tablo()) bosalt();
  bekleyen_.push_back(std::move(kayit));
  if (bekleyen_.size() >= topluBoy) bosalt();
}

void Yazici::bosalt() {
  if (bekleyen_.empty()) return;
  std::vector<Kayit> kayitlar;
  kayitlar.swap(bekleyen_);
  calistir(topluSql(kayitlar), static_cast<std::int64_t>(kayitlar.size()));
}

void Yazici::bitir() {
  bosalt();
  if (acik_) baglanti_.execute("COMMIT TRAN");
  acik_ = false;
  islendi_ = true;
}

void Yazici::geriAl() noexcept {
  try {
    baglanti_.execute("IF @@TRANCOUNT>0 ROLLBACK TRAN");
  } catch (const db::SqlError&) {
    // The link is gone, and the transaction with it.
  }
  acik_ = false;
}

}  // namespace company::ornek
