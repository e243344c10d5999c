#include "rollover/ui/kanit_penceresi.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include "rollover/ui/kanit_modeli.h"
#include "rollover/ui/maliyet_penceresi.h"
#include "ui/secili_kalir.h"
#include "ui/theme.h"
#include "ui/yer.h"

namespace rollover_ui {

namespace {

// The style sheet draws items by its own rules, which know nothing of a row's colour.
class RenkliSatir : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (const QVariant zemin = index.data(Qt::BackgroundRole); zemin.isValid())
      painter->fillRect(option.rect, zemin.value<QColor>());
    QStyledItemDelegate::paint(painter, option, index);
  }
};

}  // namespace

KanitPenceresi::KanitPenceresi(session::Oturum& oturum, rollover::Kanit kanit, QWidget* parent)
    : QDialog(parent),
      oturum_(oturum),
      kanit_(std::move(kanit)),
      model_(new KanitModeli(kanit_, this)),
      tablo_(new ui::SeciliKalir<QTableView>),
      farklar_(new QCheckBox("Yalnızca farklar")) {
  dosyaSor = [this](const QString& filtre, const QString& onerilen) {
    return QFileDialog::getSaveFileName(this, "Devir Kanıtı", onerilen, filtre);
  };
  setObjectName("DevirKaniti");
  setWindowTitle(kanit_.deneme ? "Devir Kanıtı (deneme)" : "Devir Kanıtı");
  ui::yerlestir(*this, *oturum_.platform, "DevirKaniti", {ui::byLetters(1200), ui::byLetters(640)});
  tablo_->setObjectName("KanitGrd");
  tablo_->setModel(model_);
  tablo_->setItemDelegate(new RenkliSatir(tablo_));
  tablo_->verticalHeader()->hide();
  tablo_->setSelectionBehavior(QAbstractItemView::SelectRows);
  tablo_->setSelectionMode(QAbstractItemView::SingleSelection);
  tablo_->setWordWrap(false);
  static constexpr int enler[] = {265, 105, 165, 105, 105, 100};
  for (int i = 0; i < static_cast<int>(std::size(enler)); ++i)
    tablo_->setColumnWidth(i, ui::byLetters(enler[i]));
  tablo_->horizontalHeader()->setStretchLastSection(true);
  farklar_->setObjectName("YalnizcaFarklar");
  auto* duzen = new QVBoxLayout(this);
  duzen->setContentsMargins(ui::gapLarge, ui::gapLarge, ui::gapLarge, ui::gapLarge);
  duzen->setSpacing(ui::gap);
  duzen->addWidget(ust());
  duzen->addWidget(tablo_, 1);
  auto* alt = new QHBoxLayout;
  const auto dugme = [&](const char* ad, const char* yazi) {
    auto* b = new QPushButton(yazi);
    b->setObjectName(ad);
    b->setAutoDefault(false);
    alt->addWidget(b);
    return b;
  };
  alt->addWidget(farklar_);
  alt->addStretch(1);
  maliyet_ = dugme("MaliyetBtn", "Maliyet Hesabı…");
  auto* html = dugme("HtmlBtn", "Sayfa (HTML)…");
  auto* csv = dugme("CsvBtn", "Tablo (CSV)…");
  auto* kapat = dugme("KapatBtn", "Kapat");
  duzen->addLayout(alt);
  maliyet_->setEnabled(false);
  connect(farklar_, &QCheckBox::toggled, this, [this](bool acik) {
    model_->yalnizcaFarklar(acik);
    secimDegisti();
  });
  connect(html, &QPushButton::clicked, this, [this] { dosyayaYaz("html"); });
  connect(csv, &QPushButton::clicked, this, [this] { dosyayaYaz("csv"); });
  connect(maliyet_, &QPushButton::clicked, this, &KanitPenceresi::maliyetAc);
  connect(kapat, &QPushButton::clicked, this, &QDialog::close);
  connect(tablo_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { secimDegisti(); });
}

QWidget* KanitPenceresi::ust() {
  const auto donem = [](const std::string& ad, const std::string& d) {
    return ui::text(ad) + "  (" + ui::text(d) + ")";
  };
  const std::int64_t n = kanit_.aciklanmayan();
  QString metin =
      donem(kanit_.kaynak, kanit_.kaynakDonemi) + "  →  " + donem(kanit_.hedef, kanit_.hedefDonemi) + "\n";
  metin +=
      n == 0 ? QString("Açıklanmayan fark yok.") : "Açıklanmayan fark: " + QString::number(n) + " satır.";
  if (kanit_.atlananSayisi > 0) {
    metin += "  Aktarılamayan kayıt ya da değer: " + QString::number(kanit_.atlananSayisi) + ".";
    constexpr std::size_t gosterilen = 3;
    for (std::size_t i = 0; i < std::min(gosterilen, kanit_.atlananlar.size()); ++i) {
      const rollover::Atlanan& a = kanit_.atlananlar[i];
      metin += "\n  " + ui::text(a.tablo) + " " + ui::text(a.ad) + ": " + ui::text(a.neden);
    }
    if (kanit_.atlananlar.size() > gosterilen) metin += "\n  … tümü sayfada ve tabloda.";
  }
  auto* etiket = new QLabel(metin);
  etiket->setObjectName("OzetLbl");
  etiket->setWordWrap(true);
  etiket->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return etiket;
}

void KanitPenceresi::secimDegisti() {
  const QModelIndex index = tablo_->currentIndex();
  maliyet_->setEnabled(index.isValid() && model_->satir(index.row()).tur.rfind("Stok ", 0) == 0 &&
                       !model_->satir(index.row()).kod.empty());
}

void KanitPenceresi::maliyetAc() {
  const QModelIndex index = tablo_->currentIndex();
  if (!index.isValid()) return;
  auto* pencere = new MaliyetPenceresi(oturum_, kanit_.kaynak, model_->satir(index.row()).kod, this);
  pencere->setAttribute(Qt::WA_DeleteOnClose);
  pencere->show();
}

void KanitPenceresi::dosyayaYaz(const QString& uzanti) {
  const QString onerilen = "devir-kaniti-" + ui::text(kanit_.hedef) + "." + uzanti;
  const QString yol = dosyaSor("*." + uzanti, onerilen);
  if (yol.isEmpty()) return;
  const std::string hata = rollover::dosyayaYaz(
      ui::utf8(yol), uzanti == "html" ? rollover::kanitHtml(kanit_) : rollover::kanitCsv(kanit_));
  oturum_.kutular->message(hata.empty() ? ui::utf8(yol) + " yazıldı." : hata,
                           hata.empty() ? session::Icon::Information : session::Icon::Stop);
}

}  // namespace rollover_ui
