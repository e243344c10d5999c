// What each kind of document does to the ledger, and the accounts that it needs.
#pragma once

#include <array>
#include <span>

namespace company::ornek {

struct Hesap {
  const char* kod;
  const char* ad;
};

// What a kind of document does to the ledger: so many of its sums go to so many accounts. `borc` and `alacak`
// name the account of each sum, in their order; empty where it goes nowhere on that side.
struct Kural {
  int modul;
  const char* kaynak;  // rows of documents, called d, of all kinds
  const char* tip;     // this kind
  const char* numara;  // of the document; null when another rule has linked it
  const char* tutarlar;
  std::array<const char*, 3> borc, alacak;
};

std::span<const Hesap> hesaplar();
std::span<const Kural> kurallar();
// Of the opening slip; what the modules open with has the owner's share on its other side.
std::span<const Kural> acilisKurallari();

}  // namespace company::ornek
