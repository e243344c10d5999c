// The option tree of the rollover: what is carried.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rollover {

// Top rows by their position.
enum Ust : int {
  ustKasa,
  ustCari,
  ustStok,
  ustBanka,
  ustSiparis,
  ustCek,
  ustSenet,
  ustMuhasebe,
  ustRecete,
  ustDoviz,
  ustSatici,
  ustAmbar,
  ustHizmet,
  ustMasraf,
  ustIndirim,
  ustFiyat,
  ustMustahsil,
  ustSablon,
  ustFisNo,
  ustIsyeri,
};

struct SecenekSatiri {
  std::string_view metin;
  int ust;    // position of its top row
  int cocuk;  // from 1; 0 for the top row itself
};
// In the order of the tree's nodes.
std::span<const SecenekSatiri> secenekSatirlari();
// "2" for a top row, "2.3" for its third child.
std::string secenekYolu(const SecenekSatiri& satir);

class Secenekler {
 public:
  Secenekler();  // all ticked
  bool ust(int n) const { return isaret_[dugum(n, 0)]; }
  bool cocuk(int n, int k) const { return isaret_[dugum(n, k)]; }
  bool isaretli(std::size_t satir) const { return isaret_[satir]; }
  // Exactly this row, nothing else.
  void koy(std::size_t satir, bool deger) { isaret_[satir] = deger; }
  // A click: the state goes to the row's children and up to its parent. A parent stays ticked when its only
  // child is unticked: the child then chooses how, not whether.
  void tikla(std::size_t satir, bool deger);
  // Row of a path such as "2.3"; empty when there is none.
  static std::optional<std::size_t> bul(std::string_view yol);

 private:
  static std::size_t dugum(int ust, int cocuk);
  std::vector<bool> isaret_;
};

// The focused row of the tree as the steps move it. Each step asks the rows that follow it.
class SecenekOdagi {
 public:
  explicit SecenekOdagi(const Secenekler& secenekler) : secenekler_(secenekler) {}
  void ustte(int n);
  // The k-th row after the focused one; false without a focused row or behind the end.
  bool sonraki(int k = 1) const;

 private:
  const Secenekler& secenekler_;
  std::optional<std::size_t> satir_;
};

}  // namespace rollover
