// Invoices with the stock slips, payments and payment plan rows that belong to them; stock slips and
// transfers.
#include <array>

#include "company/ornek/adimlar.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;
enum class Kim { Yok, Alici, Satici };

struct FaturaTuru {
  const char* tip;
  int adet;  // at scale 1
  const char* sayac;
  Kim kim;
  bool giris;       // goods come in, and the account is credited
  bool masraf;      // lines of expenses
  int enAz, enCok;  // lines
};

constexpr std::array faturaTurleri = {
    FaturaTuru{"Alış Faturası", 350, "ALFATFIS", Kim::Satici, true, false, 2, 6},
    FaturaTuru{"Satış Faturası", 800, "SATFATFIS", Kim::Alici, false, false, 1, 6},
    FaturaTuru{"Satış İade Faturası", 30, "SATFATFIS", Kim::Alici, true, false, 1, 2},
    FaturaTuru{"Alış İade Faturası", 20, "ALFATFIS", Kim::Satici, false, false, 1, 2},
    FaturaTuru{"Peşin Satış Faturası", 250, "PESSATFIS", Kim::Yok, false, false, 1, 4},
    FaturaTuru{"Peşin İade Faturası", 20, "PESIADFIS", Kim::Yok, true, false, 1, 2},
    FaturaTuru{"Alınan Masraf Faturası", 40, "KASFAT", Kim::Satici, true, true, 1, 2},
    FaturaTuru{"Verilen Masraf Faturası", 10, "KASFAT", Kim::Alici, false, true, 1, 1},
};

struct FisTuru {
  const char* tip;
  int adet;
  const char* sayac;
  Kim kim;
  bool giris;
};

constexpr std::array fisTurleri = {
    FisTuru{"Alış İrsaliyesi", 100, "ALSTKFIS", Kim::Satici, true},
    FisTuru{"Satış İrsaliyesi", 200, "SATSTKFIS", Kim::Alici, false},
    FisTuru{"Sarf Fişi", 25, "SATSTKFIS", Kim::Yok, false},
    FisTuru{"Fire Fişi", 15, "SATSTKFIS", Kim::Yok, false},
    FisTuru{"Sair Giriş", 20, "ALSTKFIS", Kim::Yok, true},
    FisTuru{"Sair Çıkış", 20, "SATSTKFIS", Kim::Yok, false},
    FisTuru{"Konsinye Giriş", 10, "ALSTKFIS", Kim::Satici, true},
    FisTuru{"Konsinye Çıkış", 10, "SATSTKFIS", Kim::Alici, false},
};
constexpr int transferAdedi = 100;

// What is sent back was sold before, so that it leaves an account on its side.
std::optional<Cari> birKimse(Baglam& b, Kim kim, bool giris) {
  constexpr std::int64_t enAz = 20'000;
  if (kim == Kim::Yok) return std::nullopt;
  if (giris == (kim == Kim::Alici))
    return (kim == Kim::Alici ? b.birBorclu(enAz, enAz) : b.birAlacakli(enAz, enAz)).cari;
  return kim == Kim::Alici ? b.birAlici() : b.birSatici();
}

Satir tanimSatiri(const Tanim& tanim, const char* tip, std::int64_t yuzde) {
  Satir out;
  out.tip = tip;
  out.id = tanim.id;
  out.kod = tanim.kod;
  out.ad = tanim.ad;
  out.birim = "ADET";
  out.fiyat = tanim.fiyat * yuzde / 100;
  return out;
}

Tanim biri(Baglam& b, const std::vector<Tanim>& liste) {
  return liste[static_cast<std::size_t>(b.r.arasi(0, static_cast<std::int64_t>(liste.size()) - 1))];
}

std::vector<Satir> faturaSatirlari(Baglam& b, const FaturaTuru& tur, int ambar) {
  std::vector<Satir> out;
  if (tur.masraf) {
    for (std::int64_t n = b.r.arasi(tur.enAz, tur.enCok); n > 0; --n)
      out.push_back(tanimSatiri(biri(b, b.t.masraflar), "Masraf", b.r.arasi(60, 140)));
    return out;
  }
  out = malSatirlari(b, tur.enAz, tur.enCok, tur.kim == Kim::Satici, tur.giris, ambar);
  if (tur.kim == Kim::Alici && !tur.giris && b.r.yuzde(12))
    out.push_back(tanimSatiri(biri(b, b.t.hizmetler), "Hizmet", b.r.arasi(80, 120)));
  return out;
}

Kayit faturaKarti(const Baglam& b, const Belge& belge, const Toplam& toplam) {
  Kayit kart = b.kayit("FATURAKART");
  toplamAlanlari(belgeAlanlari(kart, belge), toplam, belge.kur).metin("Fatura_No", belge.belgeNo);
  const bool pesin = !belge.cari;
  kart.para("Toplam_KDV", toplam.kdv).sayi("Vade", belge.vade).sayi("Y_Sayisi", 0).sayi("Birlesik", 0);
  kart.para("ATutar", pesin || belge.giris ? toplam.net() : 0);
  return kart.para("BTutar", pesin || !belge.giris ? toplam.net() : 0);
}

Kayit faturaSatiri(const Baglam& b, const Belge& belge, const Satir& satir, int sira) {
  Kayit kayit = b.kayit("FATURAHAREKET");
  kayit.ham("Fatura_ID", "@F").ham("Stok_HareketKart_ID", "@S");
  satirAlanlari(belgeAlanlari(kayit, belge), satir, sira).para("Toplam_KDV", satir.kdvTutari());
  kayit.sayi("Giris", belge.giris ? satir.adet() : 0).sayi("Cikis", belge.giris ? 0 : satir.adet());
  return kayit.sayi("Siparis_Hareket_ID", 0);
}

// The payment plan of an invoice on account; payments get theirs from the triggers.
Kayit odemePlani(const Baglam& b, const Belge& belge, std::int64_t net) {
  Kayit kayit = b.kayit("ODEMEHAREKET");
  kayit.ham("Islem_ID", "@F").metin("Islem_Tipi", belge.tip).sayi("Isyeri_ID", belge.isyeri).sayi("Ozel", 0);
  kayit.sayi("Cari_ID", belge.cari->id).sayi("Sablon_ID", 0).zaman("Tarih", belge.an.tarih);
  kayit.metin("TAciklama", belge.vade == 0 ? "Peşin" : "Vadeli").sayi("Gun", belge.vade).sayi("Yuzde", 100);
  kayit.para("Borc", belge.giris ? 0 : net).para("Alacak", belge.giris ? net : 0).metin("Durum", "AÇIK");
  return izAlanlari(kurAlanlari(kayit.sayi("Kullanici_ID", 1), belge.kur), belge.an);
}

// Cash or, for a sale, often a card.
std::string pesinOdeme(Baglam& b, const Belge& belge, std::int64_t net, std::int64_t& adet) {
  const Odeme odeme{belge.tip, belge.fisNo, "", belge.an, std::nullopt, belge.satici, b.lira()};
  if (!belge.giris && b.r.yuzde(40)) {
    const Banka& banka = b.t.bankalar[static_cast<std::size_t>(b.r.arasi(0, 2))];
    return posSql(b, banka, banka.anlasmalar.front(), odeme, net, "@F", adet);
  }
  ++adet;
  const Kasa& kasa = b.t.kasalar[belge.ambar == b.t.ambarlar[1] ? 1 : 0];
  return kasaKaydi(b, kasa, odeme, belge.giris ? -net : net).ham("Fatura_ID", "@F").sql();
}

Belge yeniBelge(Baglam& b, const char* tip, const char* sayac, Kim kim, bool giris, const An& an) {
  Belge belge;
  belge.tip = tip;
  belge.an = an;
  belge.fisNo = b.fisNo(sayac);
  belge.belgeNo = "A" + belge.fisNo.substr(4);
  belge.cari = birKimse(b, kim, giris);
  belge.kur = belge.cari ? b.kur(*belge.cari, an.tarih) : b.lira();
  belge.ambar = b.birAmbar();
  belge.giris = giris;
  belge.satici = b.birKisi();
  belge.isyeri = belge.ambar == b.t.ambarlar[1] ? b.t.isyerleri.back() : b.t.isyerleri.front();
  belge.vade = belge.cari ? static_cast<int>(b.r.arasi(0, 4)) * 15 : 0;
  return belge;
}

void birFatura(Baglam& b, const FaturaTuru& tur, const An& an) {
  const Belge belge = yeniBelge(b, tur.tip, tur.sayac, tur.kim, tur.giris, an);
  const std::vector<Satir> satirlar = faturaSatirlari(b, tur, belge.ambar);
  const Toplam toplam = topla(satirlar);
  std::int64_t adet = 1 + static_cast<std::int64_t>(satirlar.size());
  std::string sql = "DECLARE @F INT DECLARE @S INT SET @S=0\n" + faturaKarti(b, belge, toplam).sql() +
                    "SET @F=SCOPE_IDENTITY()\n" + stokFisiSql(b, belge, satirlar, "@F", adet);
  std::vector<Kayit> kayitlar;
  kayitlar.reserve(satirlar.size());
  for (const Satir& satir : satirlar)
    kayitlar.push_back(faturaSatiri(b, belge, satir, static_cast<int>(kayitlar.size()) + 1));
  sql += topluSql(kayitlar);
  if (belge.cari) {
    ++adet;
    sql += odemePlani(b, belge, toplam.net()).sql();
    b.bildir(Tur::Cari, belge.cari->id, belge.giris ? -toplam.net() : toplam.net());
  } else {
    sql += pesinOdeme(b, belge, toplam.net(), adet);
  }
  b.y.calistir(sql, adet);
}

void birFis(Baglam& b, const FisTuru& tur, const An& an) {
  const Belge belge = yeniBelge(b, tur.tip, tur.sayac, tur.kim, tur.giris, an);
  std::int64_t adet = 0;
  const std::vector<Satir> satirlar = malSatirlari(b, 1, 5, tur.kim != Kim::Alici, tur.giris, belge.ambar);
  const std::string sql = stokFisiSql(b, belge, satirlar, "0", adet);
  b.y.calistir("DECLARE @S INT\n" + sql, adet);
}

// A transfer is two slips of one number, each with its lines.
void birTransfer(Baglam& b, const An& an) {
  Belge belge = yeniBelge(b, "Ambar Fişi(Ç)", "STKVIR", Kim::Yok, false, an);
  belge.ambar = b.t.ambarlar[0];
  const int hedef = b.t.ambarlar[static_cast<std::size_t>(b.r.arasi(1, 2))];
  const std::vector<Satir> satirlar = malSatirlari(b, 1, 4, true, false, belge.ambar);
  std::string sql = "DECLARE @S INT\n";
  for (const bool giris : {false, true}) {
    belge.giris = giris;
    belge.tip = giris ? "Ambar Fişi(G)" : "Ambar Fişi(Ç)";
    belge.ambar = giris ? hedef : b.t.ambarlar[0];
    belge.degisti();
    std::vector<Kayit> kayitlar;
    for (const Satir& satir : satirlar) {
      Kayit kayit = b.kayit("AMBTRS");
      kayit.ham("Stok_HareketKart_ID", "@S").sayi("Karsi_Ambar_No", giris ? b.t.ambarlar[0] : hedef);
      satirAlanlari(belgeAlanlari(kayit, belge), satir, static_cast<int>(kayitlar.size()) + 1);
      kayit.sayi("Giris", giris ? satir.adet() : 0).sayi("Cikis", giris ? 0 : satir.adet());
      kayitlar.push_back(std::move(kayit));
      b.bildir(Tur::Transfer, satir.id, giris ? satir.adet() : -satir.adet(), belge.ambar);
    }
    sql +=
        stokFisKarti(b, belge, topla(satirlar), "0").sql() + "SET @S=SCOPE_IDENTITY()\n" + topluSql(kayitlar);
  }
  b.y.calistir(sql, 2 + 2 * static_cast<std::int64_t>(satirlar.size()));
}

}  // namespace

void faturaIsleri(Isler& isler) {
  for (const FaturaTuru& tur : faturaTurleri)
    isler.push_back({tur.adet, [&tur](Baglam& b, const An& an) { birFatura(b, tur, an); }});
}

void stokFisiIsleri(Isler& isler) {
  for (const FisTuru& tur : fisTurleri)
    isler.push_back({tur.adet, [&tur](Baglam& b, const An& an) { birFis(b, tur, an); }});
  isler.push_back({transferAdedi, birTransfer});
}

}  // namespace company::ornek
