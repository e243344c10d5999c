// Lines of goods as invoices, stock slips and orders share them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "company/ornek/baglam.h"

namespace company::ornek {

struct Satir {
  std::string tip = "Mal";  // Satir_Tipi
  std::int64_t id = 0;
  std::string kod, ad, birim, barkod;
  std::int64_t miktar = 1, carpan = 1;  // units, and pieces in one of them
  std::int64_t fiyat = 0, maliyet = 0;  // kuruş of a unit and of a piece
  int kdv = 18, iskonto = 0;            // percent
  std::int64_t adet() const { return miktar * carpan; }
  std::int64_t tutar() const { return miktar * fiyat; }
  std::int64_t iskontoTutari() const { return tutar() * iskonto / 100; }
  std::int64_t kdvTutari() const { return ((tutar() - iskontoTutari()) * kdv + 50) / 100; }
};

struct Toplam {
  std::int64_t burut = 0, iskonto = 0, kdv = 0;
  std::int64_t net() const { return burut - iskonto + kdv; }
};
Toplam topla(const std::vector<Satir>& satirlar);

// What a document and its lines have in common.
struct Belge {
  std::string tip, fisNo, belgeNo;
  An an;
  std::optional<Cari> cari;
  int ambar = 0;
  bool giris = false;  // goods come in
  std::int64_t satici = 0, isyeri = 1;
  Kur kur;
  int vade = 0;
  // What belgeAlanlari() has written for the first row and gives to all; to be forgotten when a field
  // changes.
  mutable std::string ortakKolonlar, ortakDegerler;
  void degisti() const { ortakKolonlar.clear(); }
};

// Lines of goods at buying or selling prices; no item twice. What comes in at buying prices is what runs
// short in the warehouse, what goes out is there, unless the company lets stock go below nothing.
std::vector<Satir> malSatirlari(Baglam& b, int enAz, int enCok, bool alisFiyati, bool giris, int ambar);
// How many pieces of an item are bought at a time, or lie there at the beginning.
std::int64_t alimMiktari(Baglam& b, const StokOzu& stok, int ambar);

// Tarih, Fis_No, Belge_No, Islem_Tipi, the account, and the general columns: the beginning of every row that
// belongs to a document.
Kayit& belgeAlanlari(Kayit& kayit, const Belge& belge);
Kayit& toplamAlanlari(Kayit& kayit, const Toplam& toplam, const Kur& kur);
Kayit& satirAlanlari(Kayit& kayit, const Satir& satir, int sira);

// The slip that moves the goods of `belge`, as statements that leave its number in @S. `faturaId` is an
// expression. Lines that are no goods are left out. Tells the movements.
std::string stokFisiSql(Baglam& b, const Belge& belge, const std::vector<Satir>& satirlar,
                        const std::string& faturaId, std::int64_t& satirSayisi);
// One line of such a slip; `siparisId` is an expression.
Kayit stokSatiri(Baglam& b, const Belge& belge, const Satir& satir, int sira, const std::string& faturaId,
                 const std::string& siparisId);
Kayit stokFisKarti(const Baglam& b, const Belge& belge, const Toplam& toplam, const std::string& faturaId);

// Payments, for whoever needs one.
struct Odeme {
  std::string tip, fisNo, aciklama;
  An an;
  std::optional<Cari> cari;
  std::int64_t satici = 0;
  Kur kur;
};
// A row of KASAHAREKET: `kurus` into the box, out of it when negative.
Kayit kasaKaydi(Baglam& b, const Kasa& kasa, const Odeme& odeme, std::int64_t kurus);
Kayit bankaKaydi(Baglam& b, const Banka& banka, const Odeme& odeme, std::int64_t kurus);
// A payment by card, as statements: the row of POSHAREKET and, where the bank has paid within the period, its
// transfer. `satisId` is an expression. Adds the rows to `satirSayisi`.
std::string posSql(Baglam& b, const Banka& banka, const Anlasma& anlasma, const Odeme& odeme,
                   std::int64_t kurus, const std::string& satisId, std::int64_t& satirSayisi);

}  // namespace company::ornek
