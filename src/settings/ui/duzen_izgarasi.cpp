#include "settings/ui/duzen_izgarasi.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>

#include "ui/theme.h"

namespace settings_ui {

DuzenIzgarasi::DuzenIzgarasi(int enAz, int enCok, QWidget* parent)
    : QWidget(parent), enAz_(ui::byLetters(enAz)), enCok_(enCok), duzen_(new QGridLayout(this)) {
  duzen_->setContentsMargins(0, 0, 0, 0);
  duzen_->setHorizontalSpacing(ui::gap);
  duzen_->setVerticalSpacing(4);
  duzen_->setSizeConstraint(QLayout::SetNoConstraint);
}

void DuzenIzgarasi::ekle(QWidget* yazi, QWidget* kontrol) {
  hucreler_.push_back({yazi, kontrol});
  if (yazi) yazi->setParent(this);
  kontrol->setParent(this);
  sutun_ = 0;
  yerlestir();
}

void DuzenIzgarasi::goster(const QWidget* kontrol, bool gorunur) {
  const auto at = std::ranges::find(hucreler_, kontrol, &Hucre::kontrol);
  if (at == hucreler_.end() || at->gorunur == gorunur) return;
  at->gorunur = gorunur;
  sutun_ = 0;
  yerlestir();
}

QSize DuzenIzgarasi::minimumSizeHint() const {
  int en = 0;
  for (const Hucre& hucre : hucreler_)
    en = std::max(en, hucre.kontrol->minimumSizeHint().width() +
                          (hucre.yazi ? hucre.yazi->sizeHint().width() + ui::gap : 0));
  return {en, duzen_->totalMinimumSize().height()};
}

void DuzenIzgarasi::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  yerlestir();
}

void DuzenIzgarasi::yerlestir() {
  const int sutun = std::clamp(width() / std::max(enAz_, minimumSizeHint().width()), 1, enCok_);
  if (sutun == sutun_) return;
  sutun_ = sutun;
  while (QLayoutItem* oge = duzen_->takeAt(0)) delete oge;
  for (int s = 0; s < 3 * enCok_; ++s) duzen_->setColumnStretch(s, 0);
  const auto gorunen = std::ranges::count(hucreler_, true, &Hucre::gorunur);
  const int boy = (static_cast<int>(gorunen) + sutun - 1) / sutun;
  int i = 0;
  QWidget* once = nullptr;
  for (const Hucre& hucre : hucreler_) {
    hucre.kontrol->setVisible(hucre.gorunur);
    if (hucre.yazi) hucre.yazi->setVisible(hucre.gorunur);
    if (!hucre.gorunur) continue;
    const int satir = i % boy, yer = i / boy * 2;
    ++i;
    if (hucre.yazi) {
      duzen_->addWidget(hucre.yazi, satir, yer, Qt::AlignRight | Qt::AlignVCenter);
      // A narrow control must not make its whole column narrow.
      const bool dar = hucre.kontrol->maximumWidth() < QWIDGETSIZE_MAX;
      duzen_->addWidget(hucre.kontrol, satir, yer + 1,
                        dar ? Qt::AlignLeft | Qt::AlignVCenter : Qt::Alignment());
    } else {
      duzen_->addWidget(hucre.kontrol, satir, yer, 1, 2);
    }
    duzen_->setColumnStretch(yer + 1, 1);
    if (once) setTabOrder(once, hucre.kontrol);
    once = hucre.kontrol;
  }
  updateGeometry();
}

}  // namespace settings_ui
