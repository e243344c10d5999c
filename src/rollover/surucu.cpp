// The run from its checks to its end.
#include "catalog/katalog.h"
#include "rollover/adimlar.h"
#include "rollover/hedef.h"
#include "rollover/kanit_sorgulari.h"
#include "session/statements.h"
#include "settings/firma_parametre.h"

namespace rollover {

namespace {

using session::Oturum;

// Leaves the connection open on `veritabani`, its text in Devir_Baglanti_Metni.
void NNC_Bagla(Oturum& o, std::unique_ptr<db::Connection>& baglanti, const std::string& veritabani) {
  baglanti.reset();
  session::Veritabani_Bagla_Devir(o, o.SQL_Surum, o.SQL_Login, o.SQL_Sifre, veritabani, o.Server_Adi);
  baglanti = std::move(o.Devir_Baglanti);
}

bool baglan(Oturum& o, std::unique_ptr<db::Connection>& baglanti, const std::string& veritabani,
            const char* metin, std::string& hata) {
  try {
    NNC_Bagla(o, baglanti, veritabani);
    return true;
  } catch (const db::SqlError& e) {
    hata = std::string(metin) + "\n" + e.what();
    return false;
  }
}

void katalogda(Oturum& o) {
  if (o.Baglanti && o.Baglanti->state() == db::State::Open &&
      o.Baglanti->parts().database == catalog::catalogDatabase)
    return;
  o.Katalog_Adi = catalog::catalogDatabase;
  session::Katalog_Bagla(o, o.Katalog_Adi);
}

void geriAl(Oturum& o) noexcept {
  try {
    if (o.Baglanti4) o.Baglanti4->execute("IF @@TRANCOUNT>0 ROLLBACK TRAN");
  } catch (const db::SqlError&) {
    // The link is gone, and the transaction with it.
  }
}

class Kosu {
 public:
  Kosu(Oturum& o, const DevirGirdisi& g, DevirSonucu& s)
      : o_(o), s_(s), yeni_(g.taraf[1].Firma_ID == "0" || g.taraf[1].Firma_ID.empty()), b_(o, g, s) {}

  void calistir() {
    katalogda(o_);
    if (yeni_) {
      try {
        s_.hata = Firmayi_Olustur(o_, b_.g);
      } catch (const DevirIptal&) {
        s_.iptal = true;
      }
      if (s_.iptal || !s_.hata.empty()) return;
    }
    try {
      if (baglantilar() && parametreler()) islem();
    } catch (const DevirIptal&) {
      s_.iptal = true;
    } catch (const std::exception& e) {
      s_.hata = e.what();
    }
    if (!s_.tamam || b_.g.deneme) topla();
    o_.Kaynak_Baglanti.reset();
    o_.Baglanti4.reset();
  }

 private:
  bool baglantilar() {
    return baglan(o_, o_.Kaynak_Baglanti, b_.kaynakAdi, "Devredilen Firmaya Bağlanılamadı", s_.hata) &&
           baglan(o_, o_.Baglanti4, b_.hedefAdi, "Devrin Yapıldığı Firmaya Bağlanılamadı", s_.hata);
  }
  // A new company has the parameters of its source.
  bool parametreler() {
    const std::string& id = yeni_ ? b_.g.taraf[0].Firma_ID : b_.g.taraf[1].Firma_ID;
    if (!settings::Firma_Parametre_Yukle(o_, std::strtoll(id.c_str(), nullptr, 10))) {
      s_.hata = o_.Son_Hata;
      return false;
    }
    b_.hane = haneSayisi(o_.AnaPara_Format);
    return true;
  }
  // One transaction over the target and the catalog.
  void islem() {
    // Whoever holds a card of the target is told of, instead of being waited for without end.
    b_.yap("SET LOCK_TIMEOUT 10000\nBEGIN TRAN");
    b_.eslemeKur();
    if (!yeni_) s_.hata = eskiHedef(b_);
    if (!s_.hata.empty()) return;
    if (yeni_) {
      katalogaYaz(b_);
      Kullanici_Yetkilerini_Devret(b_);
    }
    Tanimlari_Devret(b_);
    Kartlari_Devret(b_);
    b_.mesaj("Devir İşlemlerinin Tamamlanması İçin Kalan Ayarlar Yapılırken Lütfen Bekleyiniz.");
    s_.kanit = kanitHazirla(b_);
    b_.eslemeKaldir();
    b_.yap(b_.g.deneme ? "ROLLBACK TRAN" : "COMMIT TRAN");
    s_.tamam = true;
  }
  void topla() {
    geriAl(o_);
    if (yeni_) firmayiKaldir(o_, b_.hedefAdi);
  }

  Oturum& o_;
  DevirSonucu& s_;
  bool yeni_;
  Baglam b_;
};

}  // namespace

DevirSonucu Devret(Oturum& oturum, const DevirGirdisi& girdi) {
  DevirSonucu sonuc;
  sonuc.hata = Devir_kontrol(girdi.taraf);
  if (!sonuc.hata.empty()) return sonuc;
  try {
    Kosu(oturum, girdi, sonuc).calistir();
    katalogda(oturum);
  } catch (const std::exception& e) {
    if (sonuc.hata.empty()) sonuc.hata = e.what();
    sonuc.tamam = false;
  }
  return sonuc;
}

}  // namespace rollover
