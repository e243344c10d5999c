// The vocabulary of rights: what each column of Kullanici means, position by position, and the tree that
// shows it. Everything that reads, writes, compares or lists rights walks these tables.
//
// A right is a BIT, or one place of a flag string: '1' allowed, '0' refused. A family of documents has four
// strings of one width, one an action; place n of each stands for document n.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "session/tik_agaci.h"

namespace rights {

inline constexpr std::array<std::string_view, 4> eylemler = {"Ekle", "Değiştir", "İncele", "Sil"};
inline constexpr std::string_view bakiyeYazisi = "Bakiye";

enum class KolonTuru : std::uint8_t { Bit, Dizi, Sayi, Metin };
enum class Bolum : std::uint8_t {
  Agac,        // ticks of the tree
  Genel,       // YetkiGenelGrd: which programs of the suite
  Kutu,        // check boxes and fields beside the grids
  Varsayilan,  // defaults of the user's documents
  Kasiyer,     // YetkiKasiyerGrd
};

struct Kolon {
  std::string_view ad;
  KolonTuru tur = KolonTuru::Bit;
  int genislik = 0;  // characters of a string or text
  Bolum bolum = Bolum::Agac;
  std::string_view yazi = {};  // caption outside the tree
  bool bosOlur = true;         // may be NULL
};
// In the order in which a save writes them.
std::span<const Kolon> kolonlar();
// Index into kolonlar(); ASCII case ignored, as the server does.
std::optional<std::size_t> kolonSirasi(std::string_view ad);

enum class GrupTuru : std::uint8_t {
  Kart,      // first column: a place an action; second: the BIT of the balance
  Belgeler,  // a column an action; a place a row
  Satirlar,  // a column a row; a place an action
  Dizi,      // a place a row
  Bit,       // no rows below
};
// A row of level 2 with the rows below it.
struct Grup {
  GrupTuru tur;
  std::string_view anahtar;
  std::string_view yazi;
  std::array<std::string_view, 4> kolonlar;
  std::span<const std::string_view> satirlar = {};
  std::string_view okunan = {};  // the column that is read in place of the first
};
struct Dal {
  std::string_view yazi;
  std::array<std::string_view, 2> kolonlar;  // BITs of the branch as a whole; may be empty
  std::span<const Grup> gruplar;
};
// The branches in the order of the tree.
std::span<const Dal> dallar();

// A place of a column that a row of the tree shows. A row may show two columns: it is ticked when both are.
struct Hak {
  int satir = 0;
  std::size_t kolon = 0;   // written
  std::size_t okunan = 0;  // read
  int yer = 0;             // from 0; of a BIT 0. Behind the column's width: shown, never stored
};
struct YetkiAgaci {
  std::vector<session::TikSatiri> satirlar;
  std::vector<Hak> haklar;  // by row
};
const YetkiAgaci& yetkiAgaci();

// Columns of the row that a new user of a company gets, in the order of its statement; all of them granted.
std::span<const std::string_view> varsayilanKolonlar();

}  // namespace rights
