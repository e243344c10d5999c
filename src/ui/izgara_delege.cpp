#include "ui/izgara_delege.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include "session/metin.h"
#include "ui/izgara.h"
#include "ui/renkler.h"
#include "ui/theme.h"

namespace ui {

namespace {

constexpr int kutu = 15;

void tikCiz(QPainter* painter, const QRect& hucre, bool dolu, bool acik) {
  const QRectF kare(hucre.center().x() - kutu / 2, hucre.center().y() - kutu / 2, kutu, kutu);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const QColor renk = acik ? ui::renk(QColor(0x1f, 0x5f, 0x99)) : ui::renk(QColor(0x5d, 0x6a, 0x77));
  painter->setPen(QPen(dolu ? renk : ui::renk(QColor(0x7d, 0x8c, 0x9b)), 1));
  painter->setBrush(dolu ? renk : ui::renk(Qt::white));
  painter->drawRoundedRect(kare, 3, 3);
  if (dolu) {
    painter->setPen(QPen(ui::renk(Qt::white), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF cizgi[] = {kare.topLeft() + QPointF(3.5, 7.5), kare.topLeft() + QPointF(6.5, 10.5),
                             kare.topLeft() + QPointF(11.5, 4.5)};
    painter->drawPolyline(cizgi, 3);
  }
  painter->restore();
}

}  // namespace

IzgaraDelege::IzgaraDelege(Izgara* izgara) : QStyledItemDelegate(izgara), izgara_(izgara) {}

void IzgaraDelege::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyleOptionViewItem secenek = option;
  if (index.data(Qt::CheckStateRole).isValid()) {
    // The tick stands in the middle; the style knows it only at the left.
    initStyleOption(&secenek, index);
    secenek.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    const QWidget* gorunum = option.widget;
    gorunum->style()->drawControl(QStyle::CE_ItemViewItem, &secenek, painter, gorunum);
    tikCiz(painter, option.rect, index.data(Qt::CheckStateRole).toInt() == Qt::Checked,
           izgara_->veri().duzenlenirMi(index.row(), index.column()));
    return;
  }
  QStyledItemDelegate::paint(painter, secenek, index);
}

QWidget* IzgaraDelege::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const {
  const session::IzgaraKolonu& kolon = izgara_->veri().kolonlar()[static_cast<std::size_t>(index.column())];
  if (kolon.tur == session::HucreTuru::Liste) {
    auto* liste = new QComboBox(parent);
    for (const auto& secenek : izgara_->veri().liste(index.column()))
      liste->addItem(text(secenek.yazi), text(secenek.deger));
    izgara_->editor_ = liste;
    return liste;
  }
  auto* satir = new QLineEdit(parent);
  satir->setProperty("rol", "hucre");
  if (kolon.sinir > 0) satir->setMaxLength(kolon.sinir);
  if (kolon.buyuk)
    connect(satir, &QLineEdit::textEdited, satir, [satir](const QString& metin) {
      const QString buyuk = text(session::Buyuk_Harf(utf8(metin)));
      if (buyuk == metin) return;
      const int yer = satir->cursorPosition();
      satir->setText(buyuk);
      satir->setCursorPosition(yer);
    });
  izgara_->editor_ = satir;
  emit izgara_->yaziliyor(index.column(), satir);
  return satir;
}

QString IzgaraDelege::editorMetni(const QWidget* editor) {
  if (const auto* liste = qobject_cast<const QComboBox*>(editor)) return liste->currentData().toString();
  const auto* satir = qobject_cast<const QLineEdit*>(editor);
  return satir ? satir->text() : QString();
}

void IzgaraDelege::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const QString metin = index.data(Qt::EditRole).toString();
  if (auto* liste = qobject_cast<QComboBox*>(editor))
    liste->setCurrentIndex(liste->findData(metin));
  else if (auto* satir = qobject_cast<QLineEdit*>(editor))
    satir->setText(metin);
}

void IzgaraDelege::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const {
  izgara_->editordenYaz(editor, index);
}

void IzgaraDelege::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex&) const {
  editor->setGeometry(option.rect);
}

bool IzgaraDelege::tus(QWidget* editor, int key, Qt::KeyboardModifiers modifiers) {
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  const bool asagi = key == Qt::Key_Down, yukari = key == Qt::Key_Up;
  const bool geri = key == Qt::Key_Backtab || (key == Qt::Key_Tab && modifiers.testFlag(Qt::ShiftModifier));
  if (!enter && key != Qt::Key_Tab && !geri && !asagi && !yukari) return false;
  if ((asagi || yukari) && qobject_cast<QComboBox*>(editor)) return false;
  const QModelIndex index = izgara_->currentIndex();
  if (!izgara_->duzenlemeyiBitir()) return true;
  if (enter && modifiers.testFlag(Qt::ControlModifier))
    emit izgara_->ctrlEnter(index.row(), index.column());
  else if (asagi || yukari)
    izgara_->git(index.row() + (asagi ? 1 : -1), index.column());
  else
    izgara_->ilerle(geri, enter);
  return true;
}

bool IzgaraDelege::eventFilter(QObject* object, QEvent* event) {
  auto* editor = qobject_cast<QWidget*>(object);
  if (event->type() == QEvent::KeyPress && editor) {
    const auto* press = static_cast<QKeyEvent*>(event);
    if (tus(editor, press->key(), press->modifiers())) return true;
  }
  // A box of a check takes the focus; the editor stays.
  if (event->type() == QEvent::FocusOut && izgara_->denetimde_) return false;
  return QStyledItemDelegate::eventFilter(object, event);
}

}  // namespace ui
