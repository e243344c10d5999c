// A list, table or tree that goes on showing its current row when somebody clicks beside the rows.
#pragma once

#include <QAbstractItemView>

namespace ui {

template <class Gorunum>
class SeciliKalir : public Gorunum {
 public:
  using Gorunum::Gorunum;

 protected:
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& yer,
                                                       const QEvent* olay = nullptr) const override {
    return yer.isValid() ? Gorunum::selectionCommand(yer, olay) : QItemSelectionModel::NoUpdate;
  }
};

}  // namespace ui
