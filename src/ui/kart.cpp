#include "ui/kart.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>

#include "ui/resim.h"
#include "ui/theme.h"

namespace ui {

constexpr int headingIcon = 36, buttonIcon = 16;
constexpr int bodyWidth = 980;

Kart::Kart(const QString& iconName, const QString& caption, QWidget* parent)
    : QWidget(parent), caption_(new QLabel(caption)), subcaption_(new QLabel), hint_(new QLabel(this)) {
  setWindowTitle(caption);
  caption_->setProperty("rol", "baslik");
  subcaption_->setProperty("rol", "altbaslik");
  subcaption_->setTextFormat(Qt::PlainText);
  hint_->setProperty("rol", "ipucu");
  hint_->setWordWrap(true);  // its width must not make the window wider than the screen
  hint_->setObjectName("DurumPanel");

  auto* picture = new Resim(headingIcon, iconName);
  auto* titles = new QVBoxLayout;
  titles->setSpacing(0);
  titles->addWidget(caption_);
  titles->addWidget(subcaption_);
  auto* head = new QHBoxLayout;
  head->setSpacing(gap);
  head->addWidget(picture);
  head->addLayout(titles, 1);

  // Small screens scroll the body; heading and buttons stay in sight.
  auto* inner = new QWidget;
  body_ = new QVBoxLayout(inner);
  body_->setContentsMargins(0, 0, 0, 0);
  body_->setSpacing(gapSmall);
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(inner);
  connect(qApp, &QApplication::focusChanged, this, [scroll, inner](QWidget*, QWidget* now) {
    if (now && inner->isAncestorOf(now)) scroll->ensureWidgetVisible(now);
  });

  foot_ = new QHBoxLayout;
  foot_->setSpacing(gap);
  foot_->addWidget(hint_, 1);

  auto* column = new QWidget;
  column->setMaximumWidth(byLetters(bodyWidth));
  auto* all = new QVBoxLayout(column);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(gap);
  all->addLayout(head);
  all->addWidget(scroll, 1);
  all->addLayout(foot_);
  auto* outer = new QHBoxLayout(this);
  outer->setContentsMargins(gapLarge, gap, gapLarge, gap);
  outer->addWidget(column, 1);
  outer->addStretch(0);
}

// A list without a name of its own is called by the frame around it, or by its card. The style sheet's least
// width of a button lets a full row cut captions.
void Kart::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  for (auto* dugme : findChildren<QPushButton*>())
    if (!dugme->text().isEmpty()) dugme->setMinimumWidth(dugme->sizeHint().width());
  for (auto* liste : findChildren<QAbstractItemView*>()) {
    if (!liste->accessibleName().isEmpty()) continue;
    QString ad = caption_->text();
    for (const QWidget* ust = liste->parentWidget(); ust && ust != this; ust = ust->parentWidget())
      if (const auto* cerceve = qobject_cast<const QGroupBox*>(ust); cerceve && !cerceve->title().isEmpty()) {
        ad = cerceve->title();
        break;
      }
    liste->setAccessibleName(ad);
  }
}

void Kart::kapan() {
  if (!isSuruyor()) emit kapandi();
}

bool Kart::isYap(session::Oturum& oturum, const IsTanimi& tanim, const std::function<void()>& is) {
  return uzunIs(this, oturum, tanim, is) == IsSonucu::Bitti;
}

QGroupBox* Kart::frame(const char* name, const QString& caption) {
  auto* box = new QGroupBox(caption);
  box->setObjectName(name);
  return box;
}

QPushButton* Kart::button(const char* name, const QString& caption, const QString& iconName, bool main) {
  auto* result = new QPushButton(captionIcon(main ? iconName + "_ana" : iconName), caption, this);
  result->setIconSize(captionIconSize(buttonIcon));
  result->setObjectName(name);
  if (main) result->setProperty("rol", "ana");
  foot_->addWidget(result);
  return result;
}

std::pair<QPushButton*, QPushButton*> Kart::saveAndLeave(const char* saveName, const char* leaveName,
                                                         std::initializer_list<int> leaveKeys) {
  const std::pair<QPushButton*, QPushButton*> buttons{button(saveName, "Kaydet", "kaydet", true),
                                                      button(leaveName, "Çıkış", "cikis")};
  shortcut(Qt::Key_F2, buttons.first);
  for (const int key : leaveKeys) shortcut(key, buttons.second);
  return buttons;
}

void Kart::darOlunca(int genislik, std::function<void(bool dar)> is) {
  is(width() < byLetters(genislik));
  darlar_.emplace_back(byLetters(genislik), std::move(is));
}

void Kart::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  for (const auto& [genislik, is] : darlar_) is(width() < genislik);
}

void Kart::shortcut(int key, QPushButton* button) {
  auto* shortcut = new QShortcut(QKeySequence(key), this);
  shortcut->setContext(Qt::WindowShortcut);  // wherever the focus is; a hidden card hears nothing
  connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
}

}  // namespace ui
