#include "session/tik_agaci.h"

#include <algorithm>
#include <stdexcept>

namespace session {

TikAgaci::TikAgaci(std::vector<TikSatiri> satirlar, bool isaretli)
    : satirlar_(std::move(satirlar)),
      babalar_(satirlar_.size(), -1),
      sonlar_(satirlar_.size(), 0),
      ticks_(satirlar_.size(), isaretli ? 1 : 0) {
  std::vector<int> path;  // the open row of each level
  for (int i = 0; i < boy(); ++i) {
    const auto level = static_cast<std::size_t>(satir(i).seviye);
    if (satir(i).seviye < 1 || level > path.size() + 1)
      throw std::invalid_argument("the tree leaves out a level before \"" + satir(i).yazi + "\"");
    for (; path.size() >= level; path.pop_back()) sonlar_[at(path.back())] = i;
    if (!path.empty()) babalar_[at(i)] = path.back();
    path.push_back(i);
  }
  for (const int open : path) sonlar_[at(open)] = boy();
}

std::vector<int> TikAgaci::cocuklar(int i) const {
  std::vector<int> rows;
  const int end = i < 0 ? boy() : altSon(i);
  for (int row = i + 1; row < end; row = altSon(row)) rows.push_back(row);
  return rows;
}

void TikAgaci::hepsineKoy(bool durum) {
  std::fill(ticks_.begin(), ticks_.end(), static_cast<std::uint8_t>(durum ? 1 : 0));
}

void TikAgaci::degistir(int i, bool durum) {
  koy(i, durum);
  Tum_Cocuklarini_Degistir(i, durum);
  const int level = satir(i).seviye;
  if (level > 1) Babasini_Degistir(i, durum);
  if (level > 2) Dedeni_Degistir(i, durum);
  if (level > 3) Buyuk_Babani_Degistir(i, durum);
}

void TikAgaci::yaziyaUygula(std::string_view yazi, bool durum) {
  for (int i = 0; i < boy(); ++i) {
    if (satir(i).yazi != yazi) continue;
    koy(i, durum);
    Babasini_Degistir(i, durum);
  }
}

void TikAgaci::babalariTuret(bool ustSatirlarDa) {
  for (int i = boy() - 1; i >= 0; --i)
    if (!yaprak(i) && (ustSatirlarDa || baba(i) >= 0)) koy(i, false);
  for (int i = boy() - 1; i >= 0; --i) {
    const int parent = baba(i);
    if (parent >= 0 && isaretli(i) && (ustSatirlarDa || baba(parent) >= 0)) koy(parent, true);
  }
}

// The rows under a row follow it without a gap.
void TikAgaci::Tum_Cocuklarini_Degistir(int i, bool durum) {
  std::fill(ticks_.begin() + i + 1, ticks_.begin() + altSon(i), static_cast<std::uint8_t>(durum ? 1 : 0));
}

void TikAgaci::Dedeni_Degistir(int i, bool durum) {
  yukari(ata(i, 2), durum);
}

void TikAgaci::Buyuk_Babani_Degistir(int i, bool durum) {
  yukari(ata(i, 3), durum);
}

int TikAgaci::ata(int i, int kademe) const {
  for (; kademe > 0 && i >= 0; --kademe) i = baba(i);
  return i;
}

// The change has reached the rows under `ust` already: it stays on while one of them is ticked.
void TikAgaci::yukari(int ust, bool durum) {
  if (ust < 0) return;
  for (int row = ust + 1; !durum && row < altSon(ust); row = altSon(row))
    if (isaretli(row)) return;
  koy(ust, durum);
}

}  // namespace session
