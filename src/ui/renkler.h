// Light and dark. The style sheet and the drawings are written in the colours of the light scheme; in the
// dark one each of them becomes another, by a table for surfaces and by its lightness for the rest, so that a
// new rule needs nothing done twice.
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>
#include <functional>

namespace ui {

enum class RenkDuzeni { Masaustu, Acik, Koyu };

// Masaustu: as the desktop's own palette is.
void renkDuzeniSec(RenkDuzeni duzen);
bool koyuMu();
// Asks `masaustu` for the desktop's palette where that is what decides. True when the scheme changed.
bool masaustuneBak(const std::function<QPalette()>& masaustu);

QColor koyuRenk(const QColor& acik);
// A colour of the light scheme in the scheme that is in use.
QColor renk(const QColor& acik);
// A style sheet whose colours are those of the light scheme, for either.
QString sayfaRenkleri(QString sayfa, bool koyu);

// Contrast of two colours, 1 to 21.
double karsitlik(const QColor& a, const QColor& b);

}  // namespace ui
