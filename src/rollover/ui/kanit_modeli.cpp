#include "rollover/ui/kanit_modeli.h"

#include <QColor>
#include <QFont>

#include "ui/renkler.h"
#include "ui/theme.h"

namespace rollover_ui {

namespace {

constexpr const char* basliklar[] = {"Tür", "Kod", "Ad", "Kaynak", "Hedef", "Fark", "Neden"};
constexpr QRgb aciklanan = 0xFFFFF6E0, aciklanmayan = 0xFFFDE4E1, siyah = 0xFF1D2733;  // light scheme

QString yazi(const rollover::KanitSatiri& s, int kolon) {
  const bool fark = s.fark() != rollover::Para{};
  switch (kolon) {
    case KanitModeli::Tur:
      return ui::text(s.tur);
    case KanitModeli::Kod:
      return ui::text(s.kod);
    case KanitModeli::Ad:
      return ui::text(s.ad);
    case KanitModeli::Kaynak:
      return ui::text(rollover::paraMetni(s.kaynak));
    case KanitModeli::Hedef:
      return ui::text(rollover::paraMetni(s.hedef));
    case KanitModeli::Fark:
      return fark ? ui::text(rollover::paraMetni(s.fark())) : QString();
    default:
      return fark && s.neden.empty() ? QString("AÇIKLANMAYAN FARK") : (fark ? ui::text(s.neden) : QString());
  }
}

}  // namespace

KanitModeli::KanitModeli(const rollover::Kanit& kanit, QObject* parent)
    : QAbstractTableModel(parent), kanit_(kanit) {
  yalnizcaFarklar(false);
}

void KanitModeli::yalnizcaFarklar(bool acik) {
  beginResetModel();
  gorunen_.clear();
  for (std::size_t i = 0; i < kanit_.satirlar.size(); ++i)
    if (!acik || kanit_.satirlar[i].fark() != rollover::Para{}) gorunen_.push_back(i);
  endResetModel();
}

const rollover::KanitSatiri& KanitModeli::satir(int row) const {
  return kanit_.satirlar[gorunen_[static_cast<std::size_t>(row)]];
}

int KanitModeli::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(gorunen_.size());
}
int KanitModeli::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : KolonSayisi;
}

QVariant KanitModeli::data(const QModelIndex& index, int role) const {
  const rollover::KanitSatiri& s = satir(index.row());
  const bool fark = s.fark() != rollover::Para{};
  switch (role) {
    case Qt::DisplayRole:
      return yazi(s, index.column());
    case Qt::TextAlignmentRole:
      if (index.column() >= Kaynak && index.column() <= Fark)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
      return {};
    case Qt::FontRole: {
      QFont f;
      f.setBold(s.toplam);
      return f;
    }
    case Qt::BackgroundRole:
      if (!fark) return {};
      return ui::renk(QColor(s.neden.empty() ? aciklanmayan : aciklanan));
    case Qt::ForegroundRole:
      return fark ? QVariant(ui::renk(QColor(siyah))) : QVariant();
    case Qt::ToolTipRole:
      return index.column() == Neden || index.column() == Ad ? yazi(s, index.column()) : QVariant();
    default:
      return {};
  }
}

QVariant KanitModeli::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) return QString(basliklar[section]);
  return QAbstractTableModel::headerData(section, orientation, role);
}

}  // namespace rollover_ui
