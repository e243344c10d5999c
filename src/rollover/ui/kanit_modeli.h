#pragma once

#include <QAbstractTableModel>

#include "rollover/kanit.h"

namespace rollover_ui {

// Rows of the proof, all or only those that differ.
class KanitModeli : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Kolon { Tur, Kod, Ad, Kaynak, Hedef, Fark, Neden, KolonSayisi };
  explicit KanitModeli(const rollover::Kanit& kanit, QObject* parent = nullptr);
  void yalnizcaFarklar(bool acik);
  const rollover::KanitSatiri& satir(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const rollover::Kanit& kanit_;
  std::vector<std::size_t> gorunen_;
};

}  // namespace rollover_ui
