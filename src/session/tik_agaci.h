// A tree with a tick per row: a change of tick spreads down to all rows below and up through the parents, so
// that a row stays ticked while anything below it is.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace session {

// The tree as data: its rows in reading order, the level of a top row being 1.
struct TikSatiri {
  int seviye = 1;
  std::string yazi;
  std::string anahtar = {};  // for the caller; may be empty
};

class TikAgaci {
 public:
  TikAgaci() = default;
  // A row's level is at most one more than that of the row before it.
  explicit TikAgaci(std::vector<TikSatiri> satirlar, bool isaretli = false);

  int boy() const { return static_cast<int>(satirlar_.size()); }
  const TikSatiri& satir(int i) const { return satirlar_[at(i)]; }
  int baba(int i) const { return babalar_[at(i)]; }   // -1 for a top row
  int altSon(int i) const { return sonlar_[at(i)]; }  // one behind the last row under it
  bool yaprak(int i) const { return altSon(i) == i + 1; }
  std::vector<int> cocuklar(int i) const;  // the rows right under it; of -1 the top rows

  bool isaretli(int i) const { return ticks_[at(i)] != 0; }
  std::span<const std::uint8_t> isaretler() const { return ticks_; }
  // One row, or all, without spreading.
  void koy(int i, bool durum) { ticks_[at(i)] = durum ? 1 : 0; }
  void hepsineKoy(bool durum);

  // What a click on row i does: down to all rows under it and up as far as its level goes.
  void degistir(int i, bool durum);
  // Gives each row with that caption the state, and its parent alone what follows from it.
  void yaziyaUygula(std::string_view yazi, bool durum);
  // Ticks each parent that has a ticked row under it, and no other; top rows are left alone unless asked.
  void babalariTuret(bool ustSatirlarDa);

  // The steps of a change. One to three levels up a row goes on with a tick below it, and off with the last.
  void Tum_Cocuklarini_Degistir(int i, bool durum);
  void Babasini_Degistir(int i, bool durum) { yukari(baba(i), durum); }
  void Dedeni_Degistir(int i, bool durum);
  void Buyuk_Babani_Degistir(int i, bool durum);

 private:
  static std::size_t at(int i) { return static_cast<std::size_t>(i); }
  void yukari(int ust, bool durum);
  int ata(int i, int kademe) const;

  std::vector<TikSatiri> satirlar_;
  std::vector<int> babalar_, sonlar_;
  std::vector<std::uint8_t> ticks_;
};

}  // namespace session
