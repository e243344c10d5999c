// Offline_AyarlarFRM without its screen: how a branch that works offline reaches its centre.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "session/oturum.h"

namespace maintenance {

struct OfflineAyarlari {
  std::string Sube_Kodu, Merkez_IP, Merkez_Adi, MerkezSa, MerkezSaSifre, MerkezFirma;
  std::string SonTransferFirma;           // shown, never written
  std::string SonAlimTarih, SonAlimSaat;  // DD/MM/YYYY, HH:MM:SS
  std::string GonAralik;
  bool OtoGon = false;
};

enum class OfflineTuru : std::uint8_t { Metin, Sifre, Tarih, Saat, Sayi };
// The text fields in the order of the table; the control is named as its column.
struct OfflineAlani {
  std::string_view column, yazi;
  std::string OfflineAyarlari::*metin;
  OfflineTuru tur = OfflineTuru::Metin;
  bool yazilir = true;
};
std::span<const OfflineAlani> offlineAlanlari();

enum class OfflineAcilis : std::uint8_t { Acik, SubeDegil, Baglanamadi };
// Leaves Baglanti on the catalog. SubeDegil and Baglanamadi have been shown; the screen closes.
OfflineAcilis Offline_Ac(session::Oturum& oturum, OfflineAyarlari& ayarlar);

// The column whose text is refused with its message in Son_Hata; empty when all stand.
std::string_view Offline_Kontrol(session::Oturum& oturum, const OfflineAyarlari& ayarlar);
// Writes the one row; false when it could not be written, which is shown.
bool Offline_Kaydet(session::Oturum& oturum, const OfflineAyarlari& ayarlar);

}  // namespace maintenance
