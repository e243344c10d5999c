#include "rollover/kopya.h"

#include <algorithm>
#include <deque>
#include <set>
#include <unordered_set>

namespace rollover {

namespace {

constexpr int sayfa = 5000;             // rows of a page
constexpr std::size_t listeBoyu = 500;  // ids of an IN list
constexpr std::size_t toplu = 50;       // statements of a batch
constexpr std::int64_t cokSatir = 50;   // from here on the triggers' indexes pay for themselves

using Kimlikler = std::vector<std::int64_t>;

struct SatirDurumu {
  std::int64_t id = 0;
  std::int64_t hedef = 0;  // row of the target; 0 for a new one
  bool uyar = true;
};

std::string birlestir(const Kimlikler& ids, std::size_t bas, std::size_t son) {
  std::string out;
  for (std::size_t i = bas; i < son; ++i) out += (i == bas ? "" : ",") + std::to_string(ids[i]);
  return out;
}

class Kopyalayici {
 public:
  Kopyalayici(Baglam& b, const Kopya& k) : b_(b), k_(k), s_(b.k(k.tablo) + " s") {
    for (const KopyaKolonu& kolon : k.kolonlar) {
      if (kolon.uyar.empty()) continue;
      uyar_ += (uyar_.empty() ? "(" : " AND (") + kolon.uyar + ")";
    }
    kimlik_ = "s.[" + k.kimlik + "]";
  }

  void calistir() {
    olc();
    if (toplam_ == 0) return;
    const bool dizinli = !hedefBos_ && toplam_ >= cokSatir;
    if (dizinli) tetikDizinleriKur(b_, k_.tablo);
    tekrarlariBul();
    if (!k_.sifirKolon.empty() && sifirlariBul()) {
      for (const SatirDurumu& satir : sirala("")) sifirli(satir);
    } else if (k_.sira.empty()) {
      sayfaSayfa();
    } else {
      isle(sirala(""), "");
    }
    for (const std::int64_t id : tekrarlar_)
      for (const SatirDurumu& satir : sirala(kimlik_ + "=" + std::to_string(id))) birSatir(satir);
    if (dizinli) tetikDizinleriKaldir(b_, k_.tablo);
    b_.yazildi(k_.tablo);
  }

 private:
  std::int64_t sayi(const std::string& sql) {
    const auto rows = b_.oku(sql);
    return rows && rows->count() > 0 ? rows->value(0, 0).integer() : 0;
  }
  void olc() {
    const auto rows = b_.oku("SELECT COUNT(*),MIN(" + kimlik_ + "),MAX(" + kimlik_ +
                             "),(SELECT COUNT(*) FROM (SELECT TOP 1 h.[" + k_.kimlik + "] FROM " + k_.tablo +
                             " h) x) FROM " + s_ + ve(""));
    toplam_ = rows->value(0, 0).integer();
    if (toplam_ == 0) return;
    ilkKimlik_ = rows->value(0, 1).integer();
    sonKimlik_ = rows->value(0, 2).integer();
    hedefBos_ = rows->value(0, 3).integer() == 0;
  }
  // WHERE of the statement: the copy's own condition and another.
  std::string ve(const std::string& ek) const {
    std::string out = k_.kosul.empty() ? "" : "(" + k_.kosul + ")";
    if (!ek.empty()) out += (out.empty() ? "" : " AND ") + ek;
    return out.empty() ? "" : " WHERE " + out;
  }

  // Source rows that name the same target row as an earlier one; they overwrite what it wrote.
  void tekrarlariBul() {
    if (k_.tekrar.empty()) return;
    std::string secim, grup, esit;
    for (std::size_t i = 0; i < k_.tekrar.size(); ++i) {
      const std::string ad = "k" + std::to_string(i);
      secim += k_.tekrar[i] + " AS " + ad + ",";
      grup += (i == 0 ? "x." : ",x.") + ad;
      esit += (i == 0 ? "" : " AND ") + k_.tekrar[i] + "=g." + ad;
    }
    const auto rows = b_.oku("SELECT " + kimlik_ + " AS kimlik FROM " + s_ + " JOIN (SELECT " + grup +
                             ",MIN(x.kimlik) AS ilk FROM (SELECT " + secim + kimlik_ + " AS kimlik FROM " +
                             s_ + ve("") + ") x GROUP BY " + grup + " HAVING COUNT(*)>1) g ON " + esit +
                             ve(kimlik_ + ">g.ilk") + " ORDER BY " + kimlik_);
    for (std::int64_t i = 0; rows && i < rows->count(); ++i) tekrarlar_.insert(rows->value(i, 0).integer());
  }

  // Rows with their state, in the order in which they are written. `ek` narrows them further.
  std::vector<SatirDurumu> sirala(const std::string& ek) {
    const std::string uyar = uyar_.empty() ? "1" : "CASE WHEN " + uyar_ + " THEN 1 ELSE 0 END";
    const bool esle = !k_.esle.empty() && !hedefBosKaldi();
    const std::string sira = k_.sira.empty() ? kimlik_ : k_.sira + "," + kimlik_;
    std::string sql =
        "SELECT " + kimlik_ + " AS kimlik," + uyar + " AS uyar FROM " + s_ + ve(ek) + " ORDER BY " + sira;
    const auto rows = b_.oku(sql);
    std::vector<SatirDurumu> out;
    for (std::int64_t i = 0; rows && i < rows->count(); ++i)
      out.push_back({rows->value(i, 0).integer(), 0, rows->value(i, 1).integer() != 0});
    if (esle) eslestir(out, ek);
    return out;
  }
  bool hedefBosKaldi() const { return hedefBos_ && tekrarlar_.empty(); }

  void eslestir(std::vector<SatirDurumu>& satirlar, const std::string& ek) {
    const std::string hid = "h.[" + k_.kimlik + "]";
    const auto rows = b_.oku("SELECT " + kimlik_ + " AS kimlik,MIN(" + hid + ") AS hedef FROM " + s_ +
                             " JOIN " + k_.tablo + " h ON " + k_.esle + ve(ek) + " GROUP BY " + kimlik_);
    std::vector<std::pair<std::int64_t, std::int64_t>> esler;
    Kimlikler hedefler;
    for (std::int64_t i = 0; rows && i < rows->count(); ++i) {
      esler.emplace_back(rows->value(i, 0).integer(), rows->value(i, 1).integer());
      hedefler.push_back(esler.back().second);
    }
    std::sort(esler.begin(), esler.end());
    const std::unordered_set<std::int64_t> dokunulmaz = dokunulmazlar(hedefler);
    std::erase_if(satirlar, [&](SatirDurumu& satir) {
      const auto at = std::lower_bound(esler.begin(), esler.end(), std::pair{satir.id, INT64_MIN});
      if (at == esler.end() || at->first != satir.id) return false;
      satir.hedef = at->second;
      return dokunulmaz.contains(satir.hedef);
    });
  }

  // Rows of the target that the new period has taken over.
  std::unordered_set<std::int64_t> dokunulmazlar(const Kimlikler& hedefler) {
    std::unordered_set<std::int64_t> out;
    if (k_.hedefAtla.empty()) return out;
    for (std::size_t i = 0; i < hedefler.size(); i += listeBoyu) {
      const auto rows = b_.oku("SELECT h.[" + k_.kimlik + "] FROM " + k_.tablo + " h WHERE h.[" + k_.kimlik +
                               "] IN (" + birlestir(hedefler, i, std::min(i + listeBoyu, hedefler.size())) +
                               ") AND (" + k_.hedefAtla + ")");
      for (std::int64_t r = 0; rows && r < rows->count(); ++r) out.insert(rows->value(r, 0).integer());
    }
    return out;
  }

  void sayfaSayfa() {
    std::int64_t son = ilkKimlik_ - 1;
    while (son < sonKimlik_) {
      std::int64_t ust = sonKimlik_;
      if (toplam_ > sayfa)
        ust = sayi("SELECT MAX(x.kimlik) FROM (SELECT TOP " + std::to_string(sayfa) + " " + kimlik_ +
                   " AS kimlik FROM " + s_ + ve(kimlik_ + ">" + std::to_string(son)) + " ORDER BY " +
                   kimlik_ + ") x");
      const std::string aralik =
          kimlik_ + ">" + std::to_string(son) + " AND " + kimlik_ + "<=" + std::to_string(ust);
      if (hedefBosKaldi() && uyar_.empty() && !k_.tekEkle && toplucaEkle(aralik)) {
        // the whole page went in one statement
      } else {
        isle(sirala(aralik), aralik);
      }
      son = ust;
      b_.adim(biten_, toplam_);
    }
  }

  // False when the page has to be taken apart.
  bool toplucaEkle(const std::string& aralik) {
    try {
      const std::int64_t satir = b_.yap(ekleDeyimi(k_.kolonlar, aralik));
      biten_ += satir;
      b_.sonuc.eklenen += satir;
      return true;
    } catch (const db::SqlError& hata) {
      b_.ayaktaMi(hata);
      return false;
    }
  }

  void isle(const std::vector<SatirDurumu>& satirlar, const std::string& aralik) {
    Kimlikler yeni;
    std::vector<SatirDurumu> var;
    bool tumu = true;
    for (const SatirDurumu& satir : satirlar) {
      if (tekrarlar_.contains(satir.id)) {
        tumu = false;
        continue;
      }
      if (satir.uyar && satir.hedef == 0) {
        yeni.push_back(satir.id);
        continue;
      }
      tumu = false;
      if (!satir.uyar) {
        // New rows keep their order: what waits goes before the one that needs a statement of its own.
        yenileriEkle(yeni);
        birSatir(satir);
      } else {
        var.push_back(satir);
      }
    }
    if (!(tumu && !aralik.empty() && !k_.tekEkle && yeni.size() > listeBoyu && toplucaEkle(aralik)))
      yenileriEkle(yeni);
    guncelle(var);
  }

  void yenileriEkle(Kimlikler& ids) {
    const std::size_t boy = k_.tekEkle ? toplu : listeBoyu;
    for (std::size_t i = 0; i < ids.size(); i += boy) {
      ekle(ids, i, std::min(i + boy, ids.size()));
      b_.adim(biten_, toplam_);
    }
    ids.clear();
  }

  // Halves what is refused until the row to blame stands alone.
  void ekle(const Kimlikler& ids, std::size_t bas, std::size_t son) {
    try {
      if (k_.tekEkle && son - bas > 1)
        tekerTeker(ids, bas, son);
      else
        b_.yap(ekleDeyimi(k_.kolonlar, kimlik_ + " IN (" + birlestir(ids, bas, son) + ")"));
      b_.sonuc.eklenen += static_cast<std::int64_t>(son - bas);
      biten_ += static_cast<std::int64_t>(son - bas);
    } catch (const db::SqlError& hata) {
      b_.ayaktaMi(hata);
      if (son - bas == 1) {
        b_.atla(k_.tablo, adi(ids[bas]), hata.what());
        ++biten_;
        return;
      }
      const std::size_t orta = bas + (son - bas) / 2;
      ekle(ids, bas, orta);
      ekle(ids, orta, son);
    }
  }

  // A statement a row, many in a batch. What a refused one leaves behind is taken up where it stopped.
  void tekerTeker(const Kimlikler& ids, std::size_t bas, std::size_t son) {
    const std::int64_t once = sayi("SELECT COUNT(*) FROM " + k_.tablo);
    std::string batch;
    for (std::size_t i = bas; i < son; ++i)
      batch += ekleDeyimi(k_.kolonlar, kimlik_ + "=" + std::to_string(ids[i])) + "\nIF @@ERROR<>0 RETURN\n";
    try {
      b_.yap(batch);
    } catch (const db::SqlError& hata) {
      b_.ayaktaMi(hata);
      const auto yazilan = static_cast<std::size_t>(sayi("SELECT COUNT(*) FROM " + k_.tablo) - once);
      for (std::size_t i = bas + yazilan; i < son; ++i) {
        --b_.sonuc.eklenen;  // counted again with the row itself
        --biten_;
        ekle(ids, i, i + 1);
      }
    }
  }

  void guncelle(const std::vector<SatirDurumu>& satirlar) {
    for (std::size_t i = 0; i < satirlar.size(); i += toplu) {
      const std::size_t son = std::min(i + toplu, satirlar.size());
      std::string batch;
      for (std::size_t j = i; j < son; ++j)
        batch += guncelleDeyimi(k_.kolonlar, satirlar[j]) + "\nIF @@ERROR<>0 RETURN\n";
      try {
        b_.yap(batch);
        b_.sonuc.guncellenen += static_cast<std::int64_t>(son - i);
        biten_ += static_cast<std::int64_t>(son - i);
      } catch (const db::SqlError& hata) {
        b_.ayaktaMi(hata);
        // A row written twice is the same row.
        for (std::size_t j = i; j < son; ++j) birSatir(satirlar[j]);
      }
      b_.adim(biten_, toplam_);
    }
  }

  // One row with the values that fit.
  void birSatir(const SatirDurumu& satir) {
    ++biten_;
    try {
      const auto kolonlar = satir.uyar ? k_.kolonlar : uyanlar(satir.id);
      b_.yap(satir.hedef == 0 ? ekleDeyimi(kolonlar, kimlik_ + "=" + std::to_string(satir.id))
                              : guncelleDeyimi(kolonlar, satir));
      ++(satir.hedef == 0 ? b_.sonuc.eklenen : b_.sonuc.guncellenen);
    } catch (const db::SqlError& hata) {
      b_.ayaktaMi(hata);
      b_.atla(k_.tablo, adi(satir.id), hata.what());
    }
  }

  std::vector<KopyaKolonu> uyanlar(std::int64_t id) {
    std::string sql = "SELECT ";
    for (const KopyaKolonu& kolon : k_.kolonlar)
      if (!kolon.uyar.empty()) sql += "CASE WHEN " + kolon.uyar + " THEN 1 ELSE 0 END,";
    sql.back() = ' ';
    const auto rows = b_.oku(sql + "FROM " + s_ + " WHERE " + kimlik_ + "=" + std::to_string(id));
    std::vector<KopyaKolonu> out;
    int at = 0;
    for (const KopyaKolonu& kolon : k_.kolonlar) {
      const bool uyar =
          kolon.uyar.empty() || (rows && rows->count() > 0 && rows->value(0, at).integer() != 0);
      at += kolon.uyar.empty() ? 0 : 1;
      if (uyar)
        out.push_back(kolon);
      else
        b_.atla(k_.tablo, adi(id), kolon.ad + " değeri hedef kolona sığmadığı için aktarılmadı.");
    }
    return out;
  }

  std::string adi(std::int64_t id) {
    const auto rows =
        b_.oku("SELECT " + k_.ad + " FROM " + s_ + " WHERE " + kimlik_ + "=" + std::to_string(id));
    return rows && rows->count() > 0 ? rows->value(0, 0).trimmed() : "";
  }

  std::string ekleDeyimi(const std::vector<KopyaKolonu>& kolonlar, const std::string& kosul) const {
    std::string adlar, ifadeler;
    for (const KopyaKolonu& kolon : kolonlar) {
      adlar += (adlar.empty() ? "[" : ",[") + kolon.ad + "]";
      ifadeler += (ifadeler.empty() ? "" : ",") + kolon.ifade;
    }
    return "INSERT INTO " + k_.tablo + " (" + adlar + ") SELECT " + ifadeler + " FROM " + s_ + ve(kosul) +
           " ORDER BY " + (k_.sira.empty() ? kimlik_ : k_.sira + "," + kimlik_);
  }
  std::string guncelleDeyimi(const std::vector<KopyaKolonu>& kolonlar, const SatirDurumu& satir) const {
    std::string atama;
    for (const KopyaKolonu& kolon : kolonlar)
      atama += (atama.empty() ? "[" : ",[") + kolon.ad + "]=" + kolon.ifade;
    return "UPDATE " + k_.tablo + " SET " + atama + " FROM " + k_.tablo + "," + s_ + " WHERE " + kimlik_ +
           "=" + std::to_string(satir.id) + " AND " + k_.tablo + ".[" + k_.kimlik +
           "]=" + std::to_string(satir.hedef);
  }

  // An unkeyed copy looks for 0 in its column. False when no row of either side has it.
  bool sifirlariBul() {
    const auto rows = b_.oku("SELECT h.[" + k_.kimlik + "] FROM " + k_.tablo + " h WHERE h.[" +
                             k_.sifirKolon + "]=0 ORDER BY h.[" + k_.kimlik + "]");
    for (std::int64_t i = 0; rows && i < rows->count(); ++i) sifirlar_.push_back(rows->value(i, 0).integer());
    return !sifirlar_.empty() || sayi("SELECT COUNT(*) FROM " + s_ + ve("(" + k_.sifirIfade + ")=0")) > 0;
  }

  void sifirli(SatirDurumu satir) {
    const bool sifirKalir = sayi("SELECT COUNT(*) FROM " + s_ + " WHERE " + kimlik_ + "=" +
                                 std::to_string(satir.id) + " AND (" + k_.sifirIfade + ")=0") > 0;
    satir.hedef = sifirlar_.empty() ? 0 : sifirlar_.front();
    birSatir(satir);
    if (satir.hedef != 0 && !sifirKalir) sifirlar_.pop_front();
    if (satir.hedef == 0 && sifirKalir) {
      const auto rows = b_.oku("SELECT MIN(h.[" + k_.kimlik + "]) FROM " + k_.tablo + " h WHERE h.[" +
                               k_.sifirKolon + "]=0");
      if (rows && rows->count() > 0 && !rows->value(0, 0).isNull())
        sifirlar_.push_back(rows->value(0, 0).integer());
    }
    b_.adim(biten_, toplam_);
  }

  Baglam& b_;
  const Kopya& k_;
  std::string s_, kimlik_, uyar_;
  std::int64_t toplam_ = 0, biten_ = 0, ilkKimlik_ = 0, sonKimlik_ = 0;
  bool hedefBos_ = false;
  std::set<std::int64_t> tekrarlar_;
  std::deque<std::int64_t> sifirlar_;
};

}  // namespace

void kopyala(Baglam& baglam, const Kopya& kopya) {
  if (!kopya.kolonlar.empty()) Kopyalayici(baglam, kopya).calistir();
}

}  // namespace rollover
