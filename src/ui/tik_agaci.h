// The tree with a tick per row (session::TikAgaci) on the screen. A click on the box, or the blank on the
// current row, changes a tick and lets it spread; collapsed rows take part like any other.
#pragma once

#include <QAbstractItemModel>
#include <QTreeView>

#include "session/tik_agaci.h"

namespace ui {

class TikAgaciModeli : public QAbstractItemModel {
  Q_OBJECT
 public:
  explicit TikAgaciModeli(session::TikAgaci agac, QObject* parent = nullptr);

  session::TikAgaci& agac() { return agac_; }
  const session::TikAgaci& agac() const { return agac_; }
  // After a change made on agac() itself.
  void yenile();
  void degistir(int satir, bool durum);
  void saltOkunur(bool salt) { salt_ = salt; }

  QModelIndex index(int satir) const;  // by row of the tree
  static int satir(const QModelIndex& index) { return static_cast<int>(index.internalId()); }

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 signals:
  void tikDegisti(int satir);  // by a person

 private:
  session::TikAgaci agac_;
  std::vector<std::vector<int>> cocuklar_;  // by row + 1; the first are the top rows
  std::vector<int> siralar_;                // place among the rows of one parent
  bool salt_ = false;
};

class TikAgaciGorunumu : public QTreeView {
  Q_OBJECT
 public:
  explicit TikAgaciGorunumu(session::TikAgaci agac, QWidget* parent = nullptr);
  TikAgaciModeli& model() { return *model_; }
  session::TikAgaci& agac() { return model_->agac(); }
  // A click anywhere on a row changes its tick, not only one on the box.
  void satirdanTikla(bool acik) { satirdan_ = acik; }
  // Opens the parents of the row, makes it current and brings it into sight.
  void goster(int satir);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  TikAgaciModeli* model_;
  bool satirdan_ = false;
};

}  // namespace ui
