#include "ui/tik_agaci.h"

#include <QMouseEvent>

#include "ui/theme.h"

namespace ui {

TikAgaciModeli::TikAgaciModeli(session::TikAgaci agac, QObject* parent)
    : QAbstractItemModel(parent),
      agac_(std::move(agac)),
      cocuklar_(static_cast<std::size_t>(agac_.boy()) + 1),
      siralar_(static_cast<std::size_t>(agac_.boy())) {
  for (int i = 0; i < agac_.boy(); ++i) {
    auto& rows = cocuklar_[static_cast<std::size_t>(agac_.baba(i) + 1)];
    siralar_[static_cast<std::size_t>(i)] = static_cast<int>(rows.size());
    rows.push_back(i);
  }
}

// Views repaint as a whole when the first range is told; the tree is small enough for one.
void TikAgaciModeli::yenile() {
  if (agac_.boy() > 0) emit dataChanged(index(0), index(agac_.boy() - 1), {Qt::CheckStateRole});
}

void TikAgaciModeli::degistir(int satir, bool durum) {
  agac_.degistir(satir, durum);
  yenile();
  emit tikDegisti(satir);
}

QModelIndex TikAgaciModeli::index(int satir) const {
  return createIndex(siralar_[static_cast<std::size_t>(satir)], 0, static_cast<quintptr>(satir));
}

QModelIndex TikAgaciModeli::index(int row, int column, const QModelIndex& parent) const {
  const auto& rows = cocuklar_[static_cast<std::size_t>(parent.isValid() ? satir(parent) + 1 : 0)];
  if (row < 0 || column != 0 || row >= static_cast<int>(rows.size())) return {};
  return createIndex(row, 0, static_cast<quintptr>(rows[static_cast<std::size_t>(row)]));
}

QModelIndex TikAgaciModeli::parent(const QModelIndex& child) const {
  const int ust = child.isValid() ? agac_.baba(satir(child)) : -1;
  return ust < 0 ? QModelIndex() : index(ust);
}

int TikAgaciModeli::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(
      cocuklar_[static_cast<std::size_t>(parent.isValid() ? satir(parent) + 1 : 0)].size());
}

int TikAgaciModeli::columnCount(const QModelIndex&) const {
  return 1;
}

QVariant TikAgaciModeli::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole) return text(agac_.satir(satir(index)).yazi);
  if (role == Qt::CheckStateRole) return agac_.isaretli(satir(index)) ? Qt::Checked : Qt::Unchecked;
  return {};
}

bool TikAgaciModeli::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::CheckStateRole || salt_) return false;
  degistir(satir(index), value.toInt() == Qt::Checked);
  return true;
}

Qt::ItemFlags TikAgaciModeli::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags seen = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return salt_ ? seen : seen | Qt::ItemIsUserCheckable;
}

TikAgaciGorunumu::TikAgaciGorunumu(session::TikAgaci agac, QWidget* parent)
    : QTreeView(parent), model_(new TikAgaciModeli(std::move(agac), this)) {
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setModel(model_);
}

void TikAgaciGorunumu::goster(int satir) {
  const QModelIndex index = model_->index(satir);
  for (QModelIndex up = index.parent(); up.isValid(); up = up.parent()) expand(up);
  setCurrentIndex(index);
  scrollTo(index, PositionAtCenter);
}

void TikAgaciGorunumu::mouseReleaseEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  const Qt::CheckState before =
      index.isValid() ? static_cast<Qt::CheckState>(index.data(Qt::CheckStateRole).toInt()) : Qt::Unchecked;
  QTreeView::mouseReleaseEvent(event);
  if (!satirdan_ || event->button() != Qt::LeftButton || !index.isValid()) return;
  // Left of the row lies the branch sign; a click on the box has changed the tick already.
  const bool onRow = visualRect(index).contains(event->position().toPoint());
  if (onRow && index.data(Qt::CheckStateRole).toInt() == before)
    model_->setData(index, before == Qt::Checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

}  // namespace ui
