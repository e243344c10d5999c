// Draws and edits the cells of a grid.
#pragma once

#include <QStyledItemDelegate>

namespace ui {

class Izgara;

class IzgaraDelege : public QStyledItemDelegate {
  Q_OBJECT
 public:
  explicit IzgaraDelege(Izgara* izgara);
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  static QString editorMetni(const QWidget* editor);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  bool tus(QWidget* editor, int key, Qt::KeyboardModifiers modifiers);
  Izgara* izgara_;
};

}  // namespace ui
