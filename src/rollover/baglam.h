// What all steps of a run share: connections, names, dates, options, and how statements are sent.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "rollover/devir.h"
#include "rollover/maliyet.h"

namespace rollover {

// Ends a run from within; what it wrote is taken back.
struct DevirKesildi : std::runtime_error {
  using std::runtime_error::runtime_error;
};
struct DevirIptal {};

// The texts that every opening row carries.
struct AcilisAlanlari {
  std::string tarih;           // '20130101', as it stands in SQL
  std::string saat;            // 'HH:MM:SS'
  std::string gun, ay, ayAdi;  // '01'
  std::string hafta;           // steps of the week service
};

// A definition to which others refer: found in the other company by its code.
struct Referans {
  std::string_view tablo, kod, kimlik;
  bool tirnakli = true;
};
enum class Ref : std::uint8_t {
  Satici,
  Doviz,
  KdvGrup,
  Sablon,
  Hesap,
  Cari,
  Stok,
  Banka,
  Kasa,
  Cek,
  Senet,
  Standart,
  Recete,
  Personel,
  Adet
};
const Referans& referans(Ref ref);

class Baglam {
 public:
  Baglam(session::Oturum& oturum, const DevirGirdisi& girdi, DevirSonucu& sonuc);

  session::Oturum& o;
  const DevirGirdisi& g;
  DevirSonucu& sonuc;
  std::string kaynakAdi, hedefAdi;  // databases
  std::string hedefID;              // sysfrm_ID
  AcilisAlanlari acilis;
  int hane = 2;  // decimals of the money format
  SecenekOdagi odak;

  // Name of a source table in a statement of the target's connection.
  std::string k(std::string_view tablo) const { return kaynakAdi + ".dbo." + std::string(tablo); }
  static std::string katalog(std::string_view tablo) { return "Defination_DB.dbo." + std::string(tablo); }

  std::int64_t yap(const std::string& sql);                     // on the target
  std::unique_ptr<db::Rows> oku(const std::string& sql);        // on the target
  std::unique_ptr<db::Rows> kaynakOku(const std::string& sql);  // a SELECT on the source
  // Rows of a SELECT of any length, page by page as the server gives them. `satir` sends no statement to the
  // target.
  void akit(const std::string& sql, const std::function<void(const db::Rows& rows, std::int64_t row)>& satir);
  // After a refused statement: throws on when the transaction has gone with it.
  void ayaktaMi(const db::SqlError& hata);

  bool kaynakta(std::string_view tablo) const { return var(kaynakTablolari_, tablo); }
  bool hedefte(std::string_view tablo) const { return var(hedefTablolari_, tablo); }
  bool ikisinde(std::string_view tablo) const { return kaynakta(tablo) && hedefte(tablo); }
  void hedefTablosu(const std::string& tablo);  // one that the run has made
  // Columns of a table, asked once; `tablo` with its database for one of the source.
  const std::vector<db::FieldInfo>& alanlar(const std::string& tablo);

  void mesaj(const std::string& metin);
  // Moves the bar of the step; throws DevirIptal when the operator has asked for it.
  void adim(std::int64_t deger, std::int64_t enCok);
  void atla(std::string_view tablo, std::string ad, std::string neden);

  // SQL for the target's id of a source id: 0 for NULL, the id itself when the source has no such row, 1 when
  // the target lacks the code.
  std::string kod(Ref ref, const std::string& ifade);
  // The same without the fallbacks: NULL when there is no such row in either.
  std::string kesinKod(Ref ref, const std::string& ifade);
  // Targets of references change when their table is written.
  void yazildi(std::string_view tablo);
  void eslemeKur();  // makes the scratch table of the run
  void eslemeKaldir();

 private:
  using Tablolar = std::set<std::string>;
  static bool var(const Tablolar& tablolar, std::string_view tablo);
  Tablolar tablolar(const std::string& veritabani);
  void tablolariOku();
  void hazirla(Ref ref);

  Tablolar kaynakTablolari_, hedefTablolari_;
  std::map<std::string, std::vector<db::FieldInfo>> alanlar_;
  std::set<Ref> hazir_;
};

// Rows as INSERT statements, many of them in one batch. A row that the server refuses is passed over.
class SatirYazici {
 public:
  // `tetikli`: the table's triggers look at one row of a statement.
  SatirYazici(Baglam& baglam, std::string tablo, std::string kolonlar, bool tetikli);
  // Rows of a scratch table: not counted in the run's result.
  void gecici() { gecici_ = true; }
  void ekle(std::string degerler, std::string ad);
  void bosalt();

 private:
  struct Satir {
    std::string degerler, ad;
  };
  std::string deyim(std::size_t bas, std::size_t son) const;
  void tekTek(std::size_t bas);
  std::int64_t say();

  Baglam& b_;
  std::string tablo_, kolonlar_;
  std::size_t deyimBoyu_;
  bool gecici_ = false;
  std::int64_t sayi_ = -1;  // rows of the table as the writer knows them
  std::vector<Satir> bekleyen_;
};

std::string tirnakli(std::string_view metin);  // 'text', trimmed, apostrophes doubled
// A number as text. Of rows that differ in nothing but such texts the server knows the statement again; by
// bare numbers each count of digits would be a statement of its own.
std::string sayiMetni(const std::string& sayi);
std::string metinSql(const db::Value& deger);    // the same; NULL stays NULL
std::string tarihSql(const std::string& tarih);  // DD.MM.YYYY as '20130101'

}  // namespace rollover
