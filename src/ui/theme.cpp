#include "ui/theme.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QIconEngine>
#include <QLocale>
#include <QPainter>
#include <QPalette>
#include <QStyleFactory>
#include <QTranslator>

static void loadIcons() {
  Q_INIT_RESOURCE(ui);
}

namespace ui {
namespace {

struct PaletteEntry {
  QPalette::ColorRole role;
  QRgb active, disabled;
};

constexpr PaletteEntry paletteEntries[] = {
    {QPalette::Window, 0xFFF3F5F8, 0xFFF3F5F8},      {QPalette::WindowText, 0xFF1F2D3D, 0xFF8592A0},
    {QPalette::Base, 0xFFFFFFFF, 0xFFF0F2F5},        {QPalette::AlternateBase, 0xFFF7F9FB, 0xFFF0F2F5},
    {QPalette::Text, 0xFF1F2D3D, 0xFF6B7885},        {QPalette::PlaceholderText, 0xFF8592A0, 0xFF8592A0},
    {QPalette::Button, 0xFFFFFFFF, 0xFFF0F2F5},      {QPalette::ButtonText, 0xFF1F2D3D, 0xFF98A4B0},
    {QPalette::Highlight, 0xFF1F5F99, 0xFFC4CED8},   {QPalette::HighlightedText, 0xFFFFFFFF, 0xFF1F2D3D},
    {QPalette::ToolTipBase, 0xFF1F2D3D, 0xFF1F2D3D}, {QPalette::ToolTipText, 0xFFFFFFFF, 0xFFFFFFFF},
    {QPalette::Link, 0xFF1F5F99, 0xFF8592A0},
};

constexpr const char* preferredFonts[] = {"Segoe UI",  "Inter",     "Noto Sans",
                                          "Open Sans", "Cantarell", "DejaVu Sans"};

QFont programFont() {
  const QStringList installed = QFontDatabase::families();
  for (const char* family : preferredFonts)
    if (installed.contains(QLatin1String(family))) return QFont(QLatin1String(family), 10);
  QFont font;
  font.setPointSize(10);
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

}  // namespace

void applyTheme(QApplication& application) {
  loadIcons();
  QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
  QCoreApplication::installTranslator(new QtTurkish(&application));
  application.setStyle(QStyleFactory::create("Fusion"));
  QPalette palette;
  for (const PaletteEntry& entry : paletteEntries) {
    palette.setColor(entry.role, QColor(entry.active));
    palette.setColor(QPalette::Disabled, entry.role, QColor(entry.disabled));
  }
  application.setPalette(palette);
  application.setFont(programFont());
  QFile sheet(":/theme.qss");
  if (sheet.open(QIODevice::ReadOnly)) application.setStyleSheet(QString::fromUtf8(sheet.readAll()));
  application.setWindowIcon(icon("zembera"));
}

QIcon icon(const QString& name) {
  return QIcon(":/icons/" + name + ".svg");
}

QIcon captionIcon(const QString& name) {
  return QIcon(new CaptionIcon(icon(name)));
}

}  // namespace ui
