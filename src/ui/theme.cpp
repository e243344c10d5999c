#include "ui/theme.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QIconEngine>
#include <QLocale>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>
#include <QTranslator>
#include <QtPlugin>
#include <utility>

#include "ui/renkler.h"
#include "ui/tekrar.h"

Q_IMPORT_PLUGIN(PictureIconPlugin)

static void loadResources() {
  Q_INIT_RESOURCE(ui);
  Q_INIT_RESOURCE(icons);
}

namespace ui {
namespace {

struct PaletteEntry {
  QPalette::ColorRole role;
  QRgb active, disabled;
};

constexpr PaletteEntry paletteEntries[] = {
    {QPalette::Window, 0xFFF3F5F8, 0xFFF3F5F8},      {QPalette::WindowText, 0xFF1F2D3D, 0xFF5D6A77},
    {QPalette::Base, 0xFFFFFFFF, 0xFFF0F2F5},        {QPalette::AlternateBase, 0xFFF7F9FB, 0xFFF0F2F5},
    {QPalette::Text, 0xFF1F2D3D, 0xFF5D6A77},        {QPalette::PlaceholderText, 0xFF566575, 0xFF5D6A77},
    {QPalette::Button, 0xFFFFFFFF, 0xFFF0F2F5},      {QPalette::ButtonText, 0xFF1F2D3D, 0xFF5D6A77},
    {QPalette::Highlight, 0xFF1F5F99, 0xFFC4CED8},   {QPalette::HighlightedText, 0xFFFFFFFF, 0xFF1F2D3D},
    {QPalette::ToolTipBase, 0xFF1F2D3D, 0xFF1F2D3D}, {QPalette::ToolTipText, 0xFFFFFFFF, 0xFFFFFFFF},
    {QPalette::Link, 0xFF1F5F99, 0xFF5D6A77},
};

constexpr int branchSize = 16;

constexpr const char* preferredFonts[] = {"Segoe UI",  "Inter",     "Noto Sans",
                                          "Open Sans", "Cantarell", "DejaVu Sans"};

constexpr qreal smallestFont = 9, headingShare = 1.5, usualLetterHeight = 15;

// As large as the desktop wants its letters.
QFont programFont(const QFont& desktop) {
  QFont font = desktop;
  if (font.pointSizeF() < smallestFont) font.setPointSizeF(smallestFont + 1);
  const QStringList installed = QFontDatabase::families();
  for (const char* family : preferredFonts)
    if (installed.contains(QLatin1String(family))) {
      font.setFamily(QLatin1String(family));
      break;
    }
  return font;
}

// The few texts of Qt's own that this program shows: the popup menu of text fields.
struct QtText {
  const char *source, *turkish;
};
constexpr QtText qtTexts[] = {
    {"&Undo", "&Geri Al"},        {"&Redo", "&Yinele"},    {"Cu&t", "Ke&s"},
    {"&Copy", "K&opyala"},        {"&Paste", "Ya&pıştır"}, {"Delete", "Sil"},
    {"Select All", "Tümünü Seç"},
};

class QtTurkish : public QTranslator {
 public:
  using QTranslator::QTranslator;
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char*, int) const override {
    if (qstrcmp(context, "QLineEdit") != 0) return {};
    for (const QtText& text : qtTexts)
      if (qstrcmp(source, text.source) == 0) return QString::fromUtf8(text.turkish);
    return {};
  }
};

// Styles put a button's caption close behind its picture; this leaves what is wider than high empty.
class CaptionIcon : public QIconEngine {
 public:
  explicit CaptionIcon(QIcon icon) : icon_(std::move(icon)) {}
  QIconEngine* clone() const override { return new CaptionIcon(*this); }
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const int side = std::min(rect.width(), rect.height());
    icon_.paint(painter, QRect(rect.topLeft(), QSize(side, side)), Qt::AlignCenter, mode, state);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap result(size);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return result;
  }

 private:
  QIcon icon_;
};

// Shows pictures in place of the style's own bitmaps and of images in the style sheet: to read an image, or
// only to look for its size, the toolkit loads the readers of all formats that are installed.
class ProgramStyle : public QProxyStyle {
 public:
  ProgramStyle() : QProxyStyle("Fusion") {}

  // Every menu bar asks for the picture of its overflow.
  QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                     const QWidget* widget) const override {
    return picture == SP_ToolBarHorizontalExtensionButton
               ? icon("devam")
               : QProxyStyle::standardIcon(picture, option, widget);
  }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element != PE_IndicatorBranch) return QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!(option->state & State_Children)) return;
    QRect place(0, 0, branchSize, branchSize);
    place.moveCenter(option->rect.center());
    icon(option->state & State_Open ? "acik" : "kapali").paint(painter, place);
  }
};

// What the toolkit shows while no palette is set.
QPalette desktopPalette() {
  const QPalette own = QApplication::palette();
  QApplication::setPalette(QPalette());
  const QPalette desktop = QApplication::palette();
  QApplication::setPalette(own);
  return desktop;
}

void applyColours(QApplication& application) {
  QPalette palette;
  for (const PaletteEntry& entry : paletteEntries) {
    palette.setColor(entry.role, renk(QColor(entry.active)));
    palette.setColor(QPalette::Disabled, entry.role, renk(QColor(entry.disabled)));
  }
  QApplication::setPalette(palette);
  QFile sheet(":/theme.qss");
  if (!sheet.open(QIODevice::ReadOnly)) return;
  QString rules = QString::fromUtf8(sheet.readAll());
  rules.replace("BASLIK", QString::number(QApplication::font().pointSizeF() * headingShare));
  application.setStyleSheet(sayfaRenkleri(rules, koyuMu()));
}

// Each window is told of a change of the desktop; one look at it is enough.
class DesktopWatch : public QObject {
 public:
  DesktopWatch(QApplication& application, std::function<QPalette()> desktop)
      : QObject(&application), application_(application), desktop_(std::move(desktop)) {
    masaustuneBak(desktop_);
    application.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::ThemeChange && !std::exchange(asked_, true))
      QMetaObject::invokeMethod(
          this, [this] { look(); }, Qt::QueuedConnection);
    return false;
  }

 private:
  void look() {
    asked_ = false;
    if (masaustuneBak(desktop_)) applyColours(application_);
  }
  QApplication& application_;
  std::function<QPalette()> desktop_;
  bool asked_ = false;
};

}  // namespace

void applyTheme(QApplication& application, std::function<QPalette()> desktop) {
  loadResources();
  tekrarSuzgeciKur(application);
  QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
  QCoreApplication::installTranslator(new QtTurkish(&application));
  application.setStyle(new ProgramStyle);
  new DesktopWatch(application, desktop ? std::move(desktop) : desktopPalette);
  application.setFont(programFont(application.font()));
  applyColours(application);
  // Of a drawing a window system would be given 128 pixels too, which stay in memory for each window.
  QIcon windowIcon;
  for (const int edge : {16, 24, 32, 48, 64}) windowIcon.addPixmap(icon("zembera").pixmap(edge, edge));
  application.setWindowIcon(windowIcon);
}

int byLetters(int width) {
  const qreal share = QFontMetricsF(QApplication::font()).height() / usualLetterHeight;
  return qRound(width * std::max(share, 1.0));
}

QIcon icon(const QString& name) {
  return QIcon(":/icons/" + name + ".pic");
}

QIcon captionIcon(const QString& name) {
  return QIcon(new CaptionIcon(icon(name)));
}

}  // namespace ui
