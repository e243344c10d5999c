// The tree of rights out of the vocabulary.
#include <stdexcept>
#include <string>

#include "rights/sozluk.h"

namespace rights {

namespace {

class Yapici {
 public:
  YetkiAgaci yap() {
    for (const Dal& dal : dallar()) {
      const int row = satir(1, dal.yazi, "");
      for (const std::string_view kolon : dal.kolonlar)
        if (!kolon.empty()) hak(row, kolon, 0);
      for (const Grup& grup : dal.gruplar) grupEkle(grup);
    }
    return std::move(agac_);
  }

 private:
  int satir(int seviye, std::string_view yazi, std::string_view anahtar) {
    agac_.satirlar.push_back({seviye, std::string(yazi), std::string(anahtar)});
    return static_cast<int>(agac_.satirlar.size()) - 1;
  }

  static std::size_t sira(std::string_view kolon) {
    if (const auto at = kolonSirasi(kolon)) return *at;
    throw std::logic_error("no column of rights: " + std::string(kolon));
  }
  void hak(int row, std::string_view kolon, int yer, std::string_view okunan = {}) {
    agac_.haklar.push_back({row, sira(kolon), sira(okunan.empty() ? kolon : okunan), yer});
  }

  void grupEkle(const Grup& grup) {
    const int row = satir(2, grup.yazi, grup.anahtar);
    if (grup.tur == GrupTuru::Bit) hak(row, grup.kolonlar[0], 0);
    int yer = 0;
    for (const std::string_view yazi : grup.satirlar) {
      const int alt = satir(3, yazi, "");
      if (grup.tur == GrupTuru::Belgeler || grup.tur == GrupTuru::Satirlar)
        eylemEkle(grup, yer);
      else
        hak(alt, grup.kolonlar[0], yer, grup.okunan);
      ++yer;
    }
    if (grup.tur == GrupTuru::Kart) hak(satir(3, bakiyeYazisi, ""), grup.kolonlar[1], 0);
  }

  void eylemEkle(const Grup& grup, int belge) {
    const bool belgeler = grup.tur == GrupTuru::Belgeler;
    for (int eylem = 0; eylem < static_cast<int>(eylemler.size()); ++eylem) {
      const int row = satir(4, eylemler[static_cast<std::size_t>(eylem)], "");
      hak(row, grup.kolonlar[static_cast<std::size_t>(belgeler ? eylem : belge)], belgeler ? belge : eylem);
    }
  }

  YetkiAgaci agac_;
};

}  // namespace

const YetkiAgaci& yetkiAgaci() {
  static const YetkiAgaci agac = Yapici().yap();
  return agac;
}

}  // namespace rights
