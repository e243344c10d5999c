#include "ui/renkler.h"

#include <QRegularExpression>
#include <cmath>
#include <utility>

namespace ui {
namespace {

struct Es {
  QRgb acik, koyu;
};
// Surfaces, from the window up, and what stays as it is on both: the orange and the yellow of a field in
// focus with the dark writing on them; at last rows that are explained and such that are not.
constexpr Es esler[] = {
    {0xF3F5F8, 0x1B2027}, {0xE9EEF4, 0x20262E}, {0xFFFFFF, 0x262C34}, {0xF9F9F9, 0x2B323B},
    {0xF7F9FB, 0x2A3038}, {0xF8FAFC, 0x2A3038}, {0xF6F8FA, 0x232930}, {0xF0F2F5, 0x2F3740},
    {0xF3F6F9, 0x2A3139}, {0xFF8000, 0xFF8000}, {0xF8FBD5, 0xF8FBD5}, {0x1A1000, 0x1A1000},
    {0x101C28, 0x101C28}, {0x7A3C00, 0x7A3C00}, {0xFFFFFE, 0xFFFFFE}, {0xFFF6E0, 0x3B3420},
    {0xFDE4E1, 0x4B2B2C},
};

RenkDuzeni secilen = RenkDuzeni::Masaustu;
bool masaustuKoyu = false;

// The share of light that the eye takes from it.
double parlaklik(const QColor& c) {
  const auto kanal = [](double v) { return v <= .03928 ? v / 12.92 : std::pow((v + .055) / 1.055, 2.4); };
  return .2126 * kanal(c.redF()) + .7152 * kanal(c.greenF()) + .0722 * kanal(c.blueF());
}

}  // namespace

void renkDuzeniSec(RenkDuzeni duzen) {
  secilen = duzen;
}

bool koyuMu() {
  return secilen == RenkDuzeni::Masaustu ? masaustuKoyu : secilen == RenkDuzeni::Koyu;
}

bool masaustuneBak(const std::function<QPalette()>& masaustu) {
  if (secilen != RenkDuzeni::Masaustu) return false;
  const QPalette palet = masaustu();
  const bool koyu = palet.color(QPalette::Window).lightness() < palet.color(QPalette::WindowText).lightness();
  return std::exchange(masaustuKoyu, koyu) != koyu;
}

QColor koyuRenk(const QColor& acik) {
  for (const Es& es : esler)
    if (es.acik == (acik.rgb() & 0xFFFFFF)) {
      QColor koyu(es.koyu);
      koyu.setAlpha(acik.alpha());
      return koyu;
    }
  float h = 0, s = 0, l = 0, a = 0;
  acik.getHslF(&h, &s, &l, &a);
  // Bright surfaces end just above the window's own; writing of every depth ends near white.
  const float turned = l > .6F ? .17F + (1 - l) * .72F : .34F + (1 - l) * .6F;
  return QColor::fromHslF(h < 0 ? 0 : h, s * .75F, turned, a);
}

QColor renk(const QColor& acik) {
  return koyuMu() ? koyuRenk(acik) : acik;
}

QString sayfaRenkleri(QString sayfa, bool koyu) {
  if (!koyu) return sayfa;
  static const QRegularExpression renkler("#[0-9a-fA-F]{6}\\b");
  QString sonuc;
  qsizetype buraya = 0;
  for (auto it = renkler.globalMatch(sayfa); it.hasNext();) {
    const auto bulunan = it.next();
    sonuc +=
        sayfa.mid(buraya, bulunan.capturedStart() - buraya) + koyuRenk(QColor(bulunan.captured())).name();
    buraya = bulunan.capturedEnd();
  }
  return sonuc + sayfa.mid(buraya);
}

double karsitlik(const QColor& a, const QColor& b) {
  const double x = parlaklik(a), y = parlaklik(b);
  return (std::max(x, y) + .05) / (std::min(x, y) + .05);
}

}  // namespace ui
