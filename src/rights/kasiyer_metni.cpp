#include "rights/kasiyer_metni.h"

#include <algorithm>
#include <map>

#include "rights/haklar.h"
#include "rights/islem.h"
#include "rights/json.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

namespace {

std::string satirda(int line, const std::string& what) {
  return "satır " + std::to_string(line) + ": " + what;
}

std::string secilenTeraziler(const KasiyerDuzeni& duzen) {
  std::string out;
  for (const TeraziSatiri& terazi : duzen.TeraziGRD)
    if (terazi.Sec) out += (out.empty() ? "" : ";") + terazi.kod;
  return out;
}

// 0 or 1.
std::string bitOku(std::string_view ad, const JsonDeger& deger, bool& out) {
  if (deger.tur != JsonTuru::Sayi || (deger.sayi != 0 && deger.sayi != 1))
    return satirda(deger.satir, std::string(ad) + " 0 ya da 1 olabilir");
  out = deger.sayi == 1;
  return "";
}

std::string metinOku(std::string_view tablo, std::string_view ad, const JsonDeger& deger, std::string& out) {
  if (deger.tur != JsonTuru::Metin && deger.tur != JsonTuru::Null)
    return satirda(deger.satir, std::string(ad) + " bir metin olmalı");
  const std::string hata = sigmazHatasi(tablo, ad, ad, deger.metin);
  out = deger.metin;
  return hata.empty() ? "" : satirda(deger.satir, hata);
}

std::string terazileriOku(const JsonDeger& deger, KasiyerDuzeni& duzen) {
  if (deger.tur != JsonTuru::Metin) return satirda(deger.satir, "Teraziler bir metin olmalı");
  for (TeraziSatiri& terazi : duzen.TeraziGRD) terazi.Sec = false;
  const std::string text = deger.metin + ";";
  for (std::size_t at = 0, end; (end = text.find(';', at)) != std::string::npos; at = end + 1) {
    const std::string kod = session::Trim(text.substr(at, end - at));
    if (kod.empty()) continue;
    const auto terazi = std::find_if(duzen.TeraziGRD.begin(), duzen.TeraziGRD.end(),
                                     [&](const TeraziSatiri& t) { return t.kod == kod; });
    if (terazi == duzen.TeraziGRD.end())
      return satirda(deger.satir, "bu firmada böyle bir terazi yok: " + kod);
    terazi->Sec = true;
  }
  return "";
}

// Number and name of all cards named, in one read.
bool stoklariBul(session::Oturum& oturum, const std::map<std::size_t, std::string>& kodlar,
                 std::map<std::string, KisayolSatiri>& kartlar) {
  if (kodlar.empty()) return true;
  db::Recordset row;
  const std::string in =
      birlestir(kodlar, [](const auto& each) { return "'" + db::escape(each.second) + "'"; });
  if (session::Sorgu_Ac_Tekrarli(
          oturum, row,
          "SELECT Stok_ID,Stok_Kod,Stok_Ad AS Stok_Adi FROM STOKKART WHERE Stok_Kod IN (" + in + ")") != 0)
    return false;
  for (; !row.eof(); row.moveNext()) {
    KisayolSatiri kart{row.field("Stok_ID").integer(), row.field("Stok_Kod").trimmed(),
                       row.field("Stok_Adi").trimmed()};
    const std::string kod = session::Buyuk_Harf(kart.Stok_Kod);
    kartlar[kod] = std::move(kart);
  }
  return true;
}

std::string kisayollariOku(session::Oturum& oturum, const JsonDeger& deger, KasiyerDuzeni& duzen) {
  if (deger.tur != JsonTuru::Liste) return satirda(deger.satir, "bir liste bekleniyordu");
  std::map<std::size_t, std::string> kodlar;
  std::map<std::size_t, int> lines;
  for (const JsonNesne& nesne : deger.liste) {
    std::int64_t sira = 0;
    std::string stok;
    int line = deger.satir;
    for (const auto& [ad, value] : nesne) {
      line = value.satir;
      if (ad == "sira" && value.tur == JsonTuru::Sayi)
        sira = value.sayi;
      else if (ad == "stok" && value.tur == JsonTuru::Metin)
        stok = value.metin;
      else
        return satirda(line, "\"" + ad + "\" anlaşılmadı");
    }
    if (sira < 1 || sira > enCokKisayol || stok.empty() || kodlar.contains(static_cast<std::size_t>(sira)))
      return satirda(line, "kısayolun sırası 1 ile " + std::to_string(enCokKisayol) +
                               " arasında ve tek olmalı, stoğu verilmeli");
    kodlar[static_cast<std::size_t>(sira)] = stok;
    lines[static_cast<std::size_t>(sira)] = line;
  }
  std::map<std::string, KisayolSatiri> kartlar;
  if (!stoklariBul(oturum, kodlar, kartlar)) return satirda(deger.satir, "stok kartları okunamadı");
  duzen.StokFlx.clear();
  for (const auto& [sira, kod] : kodlar) {
    const auto kart = kartlar.find(session::Buyuk_Harf(session::Trim(kod)));
    if (kart == kartlar.end()) return satirda(lines[sira], "bu firmada böyle bir stok yok: " + kod);
    duzen.StokFlx.resize(sira);
    duzen.StokFlx[sira - 1] = kart->second;
  }
  return "";
}

std::string birOku(session::Oturum& oturum, const std::string& ad, const JsonDeger& deger,
                   KasiyerDuzeni& duzen) {
  if (ad == "kisayollar") return kisayollariOku(oturum, deger, duzen);
  if (ad == "Teraziler") return terazileriOku(deger, duzen);
  for (std::size_t i = 0; i < fisTanimlari().size(); ++i) {
    if (ad == fisTanimlari()[i].hak) return bitOku(ad, deger, duzen.FisGrd[i].Yetkisi2);
    if (ad != fisTanimlari()[i].deger) continue;
    if (deger.tur != JsonTuru::Metin && deger.tur != JsonTuru::Null)
      return satirda(deger.satir, ad + " bir kod (metin) olmalı");
    duzen.FisGrd[i].Yetkisi = session::Trim(deger.metin);
    return "";
  }
  const auto oku = [&](std::string_view tablo, bool metin, db::Value& out) {
    bool acik = false;
    std::string text;
    const std::string hata = metin ? metinOku(tablo, ad, deger, text) : bitOku(ad, deger, acik);
    out = metin ? db::Value(text) : db::Value(acik);
    return hata;
  };
  for (std::size_t i = 0; i < kasiyerKolonlari().size(); ++i)
    if (ad == kasiyerKolonlari()[i].ad)
      return oku("Kullanici", kasiyerKolonlari()[i].tur == KolonTuru::Metin, duzen.kolonlar[i]);
  for (std::size_t i = 0; i < ayarTanimlari().size(); ++i)
    if (ad == ayarTanimlari()[i].kolon)
      return oku("KASIYERCONFIG", ayarTanimlari()[i].tur == AyarTuru::Metin, duzen.ayarlar[i]);
  return satirda(deger.satir, "bilinmeyen kasiyer ayarı: " + ad);
}

}  // namespace

std::vector<std::vector<std::string>> kasiyerListesi(const KasiyerDuzeni& duzen) {
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < fisTanimlari().size(); ++i) {
    const FisTanimi& tanim = fisTanimlari()[i];
    const FisDegeri& fis = duzen.FisGrd[i];
    if (!tanim.deger.empty())
      rows.push_back({std::string(tanim.yazi), std::string(tanim.deger), fis.Yetkisi});
    if (!tanim.hak.empty())
      rows.push_back({std::string(tanim.yazi), std::string(tanim.hak),
                      std::string(fis.Yetkisi2 ? tanim.soz.evet : tanim.soz.hayir)});
  }
  for (std::size_t i = 0; i < kasiyerKolonlari().size(); ++i)
    rows.push_back({std::string(kasiyerKolonlari()[i].yazi), std::string(kasiyerKolonlari()[i].ad),
                    duzen.kolonlar[i].trimmed()});
  for (std::size_t i = 0; i < ayarTanimlari().size(); ++i)
    rows.push_back({std::string(ayarTanimlari()[i].yazi), std::string(ayarTanimlari()[i].kolon),
                    duzen.ayarlar[i].trimmed()});
  rows.push_back({"Teraziler", "Teraziler", secilenTeraziler(duzen)});
  for (std::size_t i = 0; i < duzen.StokFlx.size(); ++i)
    if (duzen.StokFlx[i].Stok_ID != 0)
      rows.push_back({"Kısayol " + std::to_string(i + 1), "kisayollar", duzen.StokFlx[i].Stok_Kod});
  return rows;
}

std::string kasiyerJson(const KasiyerDuzeni& duzen) {
  std::string out = "{\n";
  const auto line = [&out](std::string_view ad, const std::string& value) {
    out += "  " + jsonMetin(ad) + ": " + value + ",\n";
  };
  const auto bit = [](bool acik) { return std::string(acik ? "1" : "0"); };
  for (std::size_t i = 0; i < fisTanimlari().size(); ++i) {
    if (!fisTanimlari()[i].deger.empty()) line(fisTanimlari()[i].deger, jsonMetin(duzen.FisGrd[i].Yetkisi));
    if (!fisTanimlari()[i].hak.empty()) line(fisTanimlari()[i].hak, bit(duzen.FisGrd[i].Yetkisi2));
  }
  for (std::size_t i = 0; i < kasiyerKolonlari().size(); ++i)
    line(kasiyerKolonlari()[i].ad, kasiyerKolonlari()[i].tur == KolonTuru::Metin
                                       ? jsonMetin(duzen.kolonlar[i].trimmed())
                                       : bit(duzen.kolonlar[i].boolean()));
  for (std::size_t i = 0; i < ayarTanimlari().size(); ++i)
    line(ayarTanimlari()[i].kolon, ayarTanimlari()[i].tur == AyarTuru::Metin
                                       ? jsonMetin(duzen.ayarlar[i].trimmed())
                                       : bit(duzen.ayarlar[i].boolean()));
  line("Teraziler", jsonMetin(secilenTeraziler(duzen)));
  std::string keys;
  for (std::size_t i = 0; i < duzen.StokFlx.size(); ++i)
    if (duzen.StokFlx[i].Stok_ID != 0)
      keys += (keys.empty() ? "\n" : ",\n") + std::string("    {\"sira\": ") + std::to_string(i + 1) +
              ", \"stok\": " + jsonMetin(duzen.StokFlx[i].Stok_Kod) + "}";
  return out + "  \"kisayollar\": [" + keys + (keys.empty() ? "]\n}\n" : "\n  ]\n}\n");
}

std::string kasiyerJsonOku(session::Oturum& oturum, std::string_view json, KasiyerDuzeni& duzen) {
  const JsonSonucu okunan = jsonOku(json);
  if (!okunan.hata.empty()) return okunan.hata;
  KasiyerDuzeni yeni = duzen;
  for (const auto& [ad, deger] : okunan.nesne)
    if (std::string hata = birOku(oturum, ad, deger, yeni); !hata.empty()) return hata;
  duzen = std::move(yeni);
  return "";
}

bool kasiyerAc(session::Oturum& oturum, KasiyerDuzeni& duzen, const std::string& kullanici,
               const std::string& firma) {
  YetkiDuzeni bulunan;
  if (!kullaniciyiBul(oturum, bulunan, kullanici, firma)) return false;
  duzen = KasiyerDuzeni{};
  duzen.Kullanici_ID = bulunan.Kullanici_ID;
  duzen.Firma_Combo = bulunan.Firma_Combo;
  return Kasiyer_Firma_Sec(oturum, duzen, bulunan.firma);
}

}  // namespace rights
