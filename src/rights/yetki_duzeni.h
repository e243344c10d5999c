// The rights editor Yetki_Frm without its widgets: the rights of one user in one company at a time.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "rights/yetki_satiri.h"
#include "session/oturum.h"
#include "session/tik_agaci.h"

namespace rights {

// A row of YetkiAmbarGrd or YetkiIsyeriGrd.
struct YerYetkisi {
  std::string kod;  // number of the warehouse, code of the workplace
  std::string ad;
  bool Sec = false;
  bool varsayilan = false;  // Merkez_Ambar, Def_Isyeri
  friend bool operator==(const YerYetkisi&, const YerYetkisi&) = default;
};
using Yerler = std::vector<YerYetkisi>;

struct KasaSecenegi {
  std::int64_t id = 0;
  std::string kod;
};

// What the screen shows, with the names of its controls.
struct YetkiDuzeni {
  std::string Kullanici_ID, Firma_ID;
  std::vector<std::string> Firma_Combo;  // databases of the user's companies
  std::string firma;                     // the one chosen
  bool Kopyala = false;
  bool okundu = false;  // what is shown has been read whole and may be saved
  session::TikAgaci treelist{yetkiAgaci().satirlar};
  YetkiSatiri satir;  // everything outside the tree
  Yerler YetkiAmbarGrd, YetkiIsyeriGrd;
  std::string Def_Kasa_Kod, Def_Cari_Kod;
  std::vector<KasaSecenegi> kasalar;
  std::vector<std::string> cariler;

  std::string Kullanici_Ad, Kullanici_Sifre;      // as they lie in sysuslng
  bool merkezVardi = false, isyeriVardi = false;  // a row of the grids was marked when they were read
};

inline constexpr std::string_view yetkiFirmaYok =
    "Lütfen Bu Kullanıcının Kullanacağı En Az Bir Firma Seçiniz";

// Opens the editor for the user Secili_ID on his first company. False when it is to be closed; the reason has
// been shown.
bool Yetki_Yukle(session::Oturum& oturum, YetkiDuzeni& duzen);
// Fills Firma_Combo.
bool Firma_ekle(session::Oturum& oturum, YetkiDuzeni& duzen);
// A company was chosen: reads its rights, or, with Kopyala, keeps what is shown for it.
bool Firma_Sec(session::Oturum& oturum, YetkiDuzeni& duzen, const std::string& firma);
bool Firma_ID_Al(session::Oturum& oturum, YetkiDuzeni& duzen);
bool Yetki_Getir(session::Oturum& oturum, YetkiDuzeni& duzen);
void Genel_Yetki_Bul(session::Oturum& oturum, YetkiDuzeni& duzen);
bool Ambarlari_Yukle(session::Oturum& oturum, YetkiDuzeni& duzen);
bool Isyerleri_Yukle(session::Oturum& oturum, YetkiDuzeni& duzen);

// A click in a cell outside Sec and the mark flips the row's tick.
void secimiCevir(Yerler& yerler, std::size_t satir);
// Marks the row and takes the mark from every other; a mark on an unticked row ticks it.
void varsayilanYap(Yerler& yerler, std::size_t satir, bool durum);

// The click on TamamBtn. True when everything has been written.
bool TamamBtn(session::Oturum& oturum, YetkiDuzeni& duzen);
bool Yetki_Kaydet(session::Oturum& oturum, YetkiDuzeni& duzen);

}  // namespace rights
