#include "rollover/baglam.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "session/metin.h"
#include "session/tarih.h"

namespace rollover {

namespace {

constexpr std::size_t atlananListesi = 1000;  // of more only their number is kept

constexpr std::array<Referans, static_cast<std::size_t>(Ref::Adet)> referanslar = {{
    {"SATICI", "Satici_Kodu", "Satici_ID"},
    {"DOVIZTANIM", "Doviz_Kod", "Doviz_ID"},
    {"KDVGRUPLARI", "Departman_No", "Grup_ID", false},
    {"SABLONKART", "Sablon_Kod", "Sablon_ID"},
    {"MUHKART", "MHesap_Kod", "MHesap_ID"},
    {"CARIKART", "Cari_Kod", "Cari_ID"},
    {"STOKKART", "Stok_Kod", "Stok_ID"},
    {"HESAPKART", "Hesap_No", "Hesap_ID"},
    {"KASAKART", "Kasa_Kod", "Kasa_ID"},
    {"CEKKART", "Portfoy_No", "Cek_ID"},
    {"SENETKART", "Portfoy_No", "Senet_ID"},
    {"BEDENSTANDARTLARI", "Standart_Kod", "Standart_ID"},
    {"RECETEKART", "Recete_Kod", "Recete_ID"},
    {"PERSONELKARTI", "Kod", "Personel_ID"},
}};

std::string buyuk(std::string_view metin) {
  std::string out(metin);
  std::transform(out.begin(), out.end(), out.begin(), [](unsigned char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : static_cast<char>(c);
  });
  return out;
}

std::string bicimle(const char* bicim, int a, int b, int c) {
  std::array<char, 40> buffer{};
  std::snprintf(buffer.data(), buffer.size(), bicim, a, b, c);
  return buffer.data();
}

AcilisAlanlari acilisAlanlari(const std::string& basTar, const db::DateTime& simdi) {
  AcilisAlanlari a;
  a.tarih = tarihSql(basTar);
  a.saat = bicimle("'%02d:%02d:%02d'", simdi.hour, simdi.minute, simdi.second);
  a.gun = "'" + basTar.substr(0, 2) + "'";
  a.ay = "'" + basTar.substr(3, 2) + "'";
  db::DateTime gun;
  session::tarihOku(basTar, gun);
  a.ayAdi = tirnakli(session::Ay_Adi(gun.month));
  a.hafta = std::to_string(session::Hafta_Basi(gun).adim);
  return a;
}

}  // namespace

std::string tirnakli(std::string_view metin) {
  return "'" + db::escape(session::Trim(metin)) + "'";
}

std::string sayiMetni(const std::string& sayi) {
  return "'" + sayi + "'";
}

std::string metinSql(const db::Value& deger) {
  return deger.isNull() ? "NULL" : tirnakli(deger.text());
}

std::string tarihSql(const std::string& tarih) {
  return "'" + tarih.substr(6, 4) + tarih.substr(3, 2) + tarih.substr(0, 2) + "'";
}

const Referans& referans(Ref ref) {
  return referanslar[static_cast<std::size_t>(ref)];
}

Baglam::Baglam(session::Oturum& oturum, const DevirGirdisi& girdi, DevirSonucu& s)
    : o(oturum),
      g(girdi),
      sonuc(s),
      kaynakAdi(session::Trim(girdi.taraf[0].Firma_Adi)),
      hedefAdi(session::Trim(girdi.taraf[1].Firma_Adi)),
      hedefID(girdi.taraf[1].Firma_ID),
      acilis(acilisAlanlari(girdi.taraf[1].Bas_Tar, oturum.saat->now())),
      odak(girdi.secenekler) {}

std::int64_t Baglam::yap(const std::string& sql) {
  return o.Baglanti4->execute(sql);
}

std::unique_ptr<db::Rows> Baglam::oku(const std::string& sql) {
  return o.Baglanti4->query(sql);
}

void Baglam::akit(const std::string& sql, const std::function<void(const db::Rows&, std::int64_t)>& satir) {
  constexpr std::int64_t sayfa = 2000;
  o.Baglanti4->stream(sql, sayfa, [&](const db::Rows& rows) {
    for (std::int64_t i = 0; i < rows.count(); ++i) satir(rows, i);
    adim(0, 0);
  });
}

std::unique_ptr<db::Rows> Baglam::kaynakOku(const std::string& sql) {
  // Nothing but a SELECT goes to the source.
  if (sql.rfind("SELECT ", 0) != 0) throw DevirKesildi("Kaynak firmaya yazılamaz: " + sql.substr(0, 40));
  return o.Kaynak_Baglanti->query(sql);
}

void Baglam::ayaktaMi(const db::SqlError& hata) {
  if (hata.lasting()) throw hata;
  const auto rows = oku("SELECT @@TRANCOUNT");
  if (!rows || rows->count() == 0 || rows->value(0, 0).integer() == 0) throw hata;
}

bool Baglam::var(const Tablolar& tablolar, std::string_view tablo) {
  return tablolar.contains(buyuk(tablo));
}

Baglam::Tablolar Baglam::tablolar(const std::string& veritabani) {
  Tablolar out;
  const auto rows = oku("SELECT name FROM " + veritabani + ".dbo.sysobjects WHERE type ='U'");
  for (std::int64_t i = 0; rows && i < rows->count(); ++i) out.insert(buyuk(rows->value(i, 0).trimmed()));
  return out;
}

void Baglam::tablolariOku() {
  kaynakTablolari_ = tablolar(kaynakAdi);
  hedefTablolari_ = tablolar(hedefAdi);
}

void Baglam::hedefTablosu(const std::string& tablo) {
  hedefTablolari_.insert(buyuk(tablo));
}

const std::vector<db::FieldInfo>& Baglam::alanlar(const std::string& tablo) {
  const auto [at, yeni] = alanlar_.try_emplace(tablo);
  if (yeni)
    if (const auto rows = oku("SELECT * FROM " + tablo + " WHERE 1=0")) at->second = rows->fields();
  return at->second;
}

void Baglam::mesaj(const std::string& metin) {
  o.ilerleme->text(metin);
  o.ilerleme->step(0, 1);
  o.ilerleme->pump();
}

void Baglam::adim(std::int64_t deger, std::int64_t enCok) {
  if (enCok > 0) o.ilerleme->step(std::min(deger, enCok), enCok);
  o.ilerleme->pump();
  if ((g.iptal && g.iptal()) || o.ilerleme->cancelled()) throw DevirIptal{};
}

void Baglam::atla(std::string_view tablo, std::string ad, std::string neden) {
  ++sonuc.atlananSayisi;
  if (sonuc.atlananlar.size() < atlananListesi)
    sonuc.atlananlar.push_back({std::string(tablo), session::Trim(ad), std::move(neden)});
}

// DEVIR_KOD: one row per source row of a definition that others refer to, with its id in the target. It
// stands in the target while the run's transaction is open.
void Baglam::eslemeKur() {
  tablolariOku();
  yap("CREATE TABLE DEVIR_KOD (Tur INT NOT NULL, Eski INT NOT NULL, Yeni INT NOT NULL, Var BIT NOT NULL, "
      "PRIMARY KEY (Tur, Eski))");
}

void Baglam::eslemeKaldir() {
  yap("DROP TABLE DEVIR_KOD");
  hazir_.clear();
}

void Baglam::hazirla(Ref ref) {
  if (hazir_.contains(ref)) return;
  const Referans& r = referans(ref);
  const std::string tur = std::to_string(static_cast<int>(ref)), tablo(r.tablo), id(r.kimlik), kod(r.kod);
  yap("DELETE FROM DEVIR_KOD WHERE Tur=" + tur);
  if (kaynakta(tablo)) {
    const std::string insert = "INSERT INTO DEVIR_KOD (Tur,Eski,Yeni,Var) SELECT " + tur + ",r." + id;
    if (hedefte(tablo)) {
      yap(insert + ",ISNULL(MIN(h." + id + "),1),CASE WHEN MIN(h." + id +
          ") IS NULL THEN 0 ELSE 1 END FROM " + k(tablo) + " r LEFT JOIN " + tablo + " h ON h." + kod + "=" +
          (r.tirnakli ? "ISNULL(r." + kod + ",'')" : "r." + kod) + " GROUP BY r." + id);
    } else {
      yap(insert + ",1,0 FROM " + k(tablo) + " r");
    }
  }
  hazir_.insert(ref);
}

std::string Baglam::kod(Ref ref, const std::string& ifade) {
  hazirla(ref);
  return "ISNULL((SELECT m.Yeni FROM DEVIR_KOD m WHERE m.Tur=" + std::to_string(static_cast<int>(ref)) +
         " AND m.Eski=" + ifade + "),ISNULL(" + ifade + ",0))";
}

std::string Baglam::kesinKod(Ref ref, const std::string& ifade) {
  hazirla(ref);
  return "(SELECT m.Yeni FROM DEVIR_KOD m WHERE m.Tur=" + std::to_string(static_cast<int>(ref)) +
         " AND m.Var=1 AND m.Eski=" + ifade + ")";
}

void Baglam::yazildi(std::string_view tablo) {
  const std::string ad = buyuk(tablo);
  std::erase_if(hazir_, [&](Ref ref) { return buyuk(referans(ref).tablo) == ad; });
}

namespace {

constexpr std::size_t satirlik = 10;  // rows of a VALUES list; preparing it costs their square
constexpr std::size_t toplu = 100;    // rows of a batch

}  // namespace

SatirYazici::SatirYazici(Baglam& baglam, std::string tablo, std::string kolonlar, bool tetikli)
    : b_(baglam),
      tablo_(std::move(tablo)),
      kolonlar_(std::move(kolonlar)),
      deyimBoyu_(tetikli ? 1 : satirlik) {}

void SatirYazici::ekle(std::string degerler, std::string ad) {
  bekleyen_.push_back({std::move(degerler), std::move(ad)});
  if (bekleyen_.size() >= toplu) bosalt();
}

std::string SatirYazici::deyim(std::size_t bas, std::size_t son) const {
  std::string sql = "INSERT INTO " + tablo_ + " (" + kolonlar_ + ") VALUES ";
  for (std::size_t i = bas; i < son; ++i) sql += (i == bas ? "(" : ",(") + bekleyen_[i].degerler + ")";
  return sql + "\n";
}

// The statements of a batch stand each for itself: the first one refused ends it, and the rows behind it are
// sent again one by one.
void SatirYazici::bosalt() {
  if (bekleyen_.empty()) return;
  std::string batch;
  for (std::size_t i = 0; i < bekleyen_.size(); i += deyimBoyu_)
    batch += deyim(i, std::min(i + deyimBoyu_, bekleyen_.size())) + "IF @@ERROR<>0 RETURN\n";
  const std::int64_t once = b_.sonuc.eklenen;
  if (sayi_ < 0) sayi_ = say();
  try {
    b_.yap(batch);
    sayi_ += static_cast<std::int64_t>(bekleyen_.size());
    b_.sonuc.eklenen += static_cast<std::int64_t>(bekleyen_.size());
  } catch (const db::SqlError& hata) {
    b_.ayaktaMi(hata);
    const std::int64_t yazilan = say() - sayi_;
    b_.sonuc.eklenen += yazilan;
    tekTek(static_cast<std::size_t>(yazilan));
    sayi_ = say();
  }
  if (gecici_) b_.sonuc.eklenen = once;
  bekleyen_.clear();
}

std::int64_t SatirYazici::say() {
  return b_.oku("SELECT COUNT(*) FROM " + tablo_)->value(0, 0).integer();
}

void SatirYazici::tekTek(std::size_t bas) {
  for (std::size_t i = bas; i < bekleyen_.size(); ++i) {
    try {
      b_.yap(deyim(i, i + 1));
      ++b_.sonuc.eklenen;
    } catch (const db::SqlError& hata) {
      b_.ayaktaMi(hata);
      b_.atla(tablo_, bekleyen_[i].ad, hata.what());
    }
  }
}

}  // namespace rollover
