#include "maintenance/ui/servis_menu.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>

#include "platform/files.h"
#include "session/izgara.h"
#include "ui/form.h"
#include "ui/theme.h"

namespace maintenance_ui {
namespace {

using maintenance::Bulgu;

constexpr const char* islemYazilari[] = {"Kullanıcı Kontrolü", "Fatura-İrsaliye Bağlantıları"};

// Heading and rows, as spreadsheets take them.
std::vector<std::vector<std::string>> tablo(const Bulgu& bulgu) {
  std::vector<std::vector<std::string>> sonuc{bulgu.basliklar};
  sonuc.insert(sonuc.end(), bulgu.satirlar.begin(), bulgu.satirlar.end());
  return sonuc;
}

std::string csvHucresi(const std::string& metin) {
  if (metin.find_first_of(";\"\n") == std::string::npos) return metin;
  std::string sonuc = "\"";
  for (const char c : metin) sonuc += c == '"' ? std::string("\"\"") : std::string(1, c);
  return sonuc + "\"";
}

}  // namespace

ServisMenu::ServisMenu(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("servis", "Servis İşlemleri"),
      oturum_(oturum),
      firma_(new QComboBox),
      islemler_(new QTableWidget),
      satirlar_(new QTableWidget),
      bulguListesi_(new QListWidget),
      anlam_(new QLabel) {
  setObjectName("ServisMenu");
  firma_->setObjectName("Firma_Combo");
  firma_->setMinimumContentsLength(24);
  auto* ust = new QHBoxLayout;
  ust->setSpacing(ui::gap);
  ust->addWidget(ui::caption("İşlem Yapılacak Firma :", firma_));
  ust->addWidget(firma_);
  ust->addStretch(1);
  body()->addLayout(ust);
  islemlerKur();
  body()->addWidget(islemler_);
  body()->addWidget(bulguPaneli(), 1);
  auto* denetleBtn = button("DenetleBtn", "Bütün Denetimler", "incele");
  auto* baslaBtn = button("BaslaBtn", "Başla", "kaydet", true);
  auto* cikisBtn = button("CikisBtn", "Çıkış", "cikis");
  shortcut(Qt::Key_F3, cikisBtn);
  shortcut(Qt::Key_Escape, cikisBtn);
  hint()->setText("Boşluk ya da tıklama: seç    Escape: çıkış");
  connect(denetleBtn, &QPushButton::clicked, this, &ServisMenu::denetle);
  connect(baslaBtn, &QPushButton::clicked, this, &ServisMenu::basla);
  connect(cikisBtn, &QPushButton::clicked, this, [this] { kapan(); });
}

void ServisMenu::islemlerKur() {
  islemler_->setObjectName("ServisGrd");
  islemler_->setColumnCount(2);
  islemler_->setHorizontalHeaderLabels({"Secim", "Islem"});
  islemler_->verticalHeader()->hide();
  islemler_->horizontalHeader()->hide();
  islemler_->horizontalHeader()->setStretchLastSection(true);
  islemler_->setSelectionBehavior(QAbstractItemView::SelectRows);
  islemler_->setSelectionMode(QAbstractItemView::SingleSelection);
  islemler_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  islemler_->setRowCount(static_cast<int>(std::size(islemYazilari)));
  for (int satir = 0; satir < islemler_->rowCount(); ++satir) {
    auto* secim = new QTableWidgetItem;
    secim->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    secim->setCheckState(Qt::Unchecked);
    islemler_->setItem(satir, 0, secim);
    islemler_->setItem(satir, 1, new QTableWidgetItem(islemYazilari[satir]));
  }
  islemler_->setColumnWidth(0, 36);
  islemler_->setFixedHeight(islemler_->rowHeight(0) * islemler_->rowCount() + 2 * islemler_->frameWidth() +
                            2);
  islemler_->installEventFilter(this);
  connect(islemler_, &QTableWidget::cellClicked, this, [this](int satir) { cevir(satir); });
}

QWidget* ServisMenu::bulguPaneli() {
  auto* panel = new QWidget;
  panel->setObjectName("BulguPaneli");
  bulguListesi_->setObjectName("BulguListesi");
  bulguListesi_->setAccessibleName("Denetimler");
  satirlar_->setObjectName("BulguGrd");
  satirlar_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  satirlar_->setSelectionBehavior(QAbstractItemView::SelectRows);
  satirlar_->verticalHeader()->hide();
  satirlar_->installEventFilter(this);
  anlam_->setObjectName("BulguAnlami");
  anlam_->setWordWrap(true);
  kopyala_ = new QPushButton(ui::icon("ekle"), "Kopyala");
  kopyala_->setObjectName("KopyalaBtn");
  kopyala_->setToolTip("Satırları başlığıyla panoya koyar");
  csv_ = new QPushButton(ui::icon("kaydet"), "CSV'ye Yaz…");
  csv_->setObjectName("CsvBtn");
  auto* tuslar = new QHBoxLayout;
  tuslar->addWidget(anlam_, 1);
  tuslar->addWidget(kopyala_);
  tuslar->addWidget(csv_);
  auto* sag = new QVBoxLayout;
  sag->addWidget(satirlar_, 1);
  sag->addLayout(tuslar);
  auto* duzen = new QHBoxLayout(panel);
  duzen->setContentsMargins(0, 0, 0, 0);
  duzen->setSpacing(ui::gap);
  duzen->addWidget(bulguListesi_, 2);
  duzen->addLayout(sag, 5);
  connect(bulguListesi_, &QListWidget::currentRowChanged, this, &ServisMenu::bulguSecildi);
  connect(kopyala_, &QPushButton::clicked, this, &ServisMenu::kopyala);
  connect(csv_, &QPushButton::clicked, this, &ServisMenu::csvYaz);
  return panel;
}

void ServisMenu::ac() {
  firma_->clear();
  for (const std::string& ad : maintenance::firmaAdlari(oturum_)) firma_->addItem(ui::text(ad));
  firma_->setCurrentIndex(firma_->count() > 0 ? 0 : -1);
  for (int satir = 0; satir < islemler_->rowCount(); ++satir)
    islemler_->item(satir, 0)->setCheckState(Qt::Unchecked);
  islemler_->selectRow(0);
  goster({});
  islemler_->setFocus();
}

bool ServisMenu::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto* tus = static_cast<QKeyEvent*>(event);
    if (watched == islemler_ && tus->key() == Qt::Key_Space) {
      cevir(islemler_->currentRow());
      return true;
    }
    if (watched == satirlar_ && tus->matches(QKeySequence::Copy)) {
      kopyala();
      return true;
    }
  }
  return Kart::eventFilter(watched, event);
}

void ServisMenu::cevir(int satir) {
  if (satir < 0) return;
  QTableWidgetItem* secim = islemler_->item(satir, 0);
  secim->setCheckState(secim->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

bool ServisMenu::secili(int satir) const {
  return islemler_->item(satir, 0)->checkState() == Qt::Checked;
}

void ServisMenu::basla() {
  const std::string firma = ui::utf8(firma_->currentText());
  const bool kilitler = secili(0), baglantilar = secili(1);
  std::vector<Bulgu> bulgular;
  isYap(oturum_, {"Servis işlemleri"}, [&] {
    if (!maintenance::servisFirmasi(oturum_, firma)) return;
    if (kilitler) maintenance::Kilitleri_Temizle(oturum_);
    if (baglantilar) bulgular = maintenance::Fatura_Irsaliye_Baglantilari(oturum_);
  });
  goster(std::move(bulgular));
}

void ServisMenu::denetle() {
  const std::string firma = ui::utf8(firma_->currentText());
  std::vector<Bulgu> bulgular;
  if (isYap(oturum_, {"Defter denetleniyor", ui::Vazgec::Var}, [&] {
        if (maintenance::servisFirmasi(oturum_, firma)) bulgular = maintenance::Denetle(oturum_, firma);
      }))
    goster(std::move(bulgular));
}

void ServisMenu::goster(std::vector<Bulgu> bulgular) {
  bulgular_ = std::move(bulgular);
  bulguListesi_->clear();
  int ilk = bulgular_.empty() ? -1 : 0;
  for (std::size_t i = bulgular_.size(); i-- > 0;)
    if (!bulgular_[i].satirlar.empty()) ilk = static_cast<int>(i);
  for (const Bulgu& bulgu : bulgular_) {
    const QString sayi = bulgu.hata.empty() ? QString::number(bulgu.satirlar.size()) : QString("?");
    auto* oge =
        new QListWidgetItem(ui::icon(bulgu.satirlar.empty() && bulgu.hata.empty() ? "bilgi" : "uyari"),
                            ui::text(bulgu.denetim->ad) + "  (" + sayi + ")");
    bulguListesi_->addItem(oge);
  }
  bulguListesi_->setCurrentRow(ilk);
  bulguSecildi(ilk);
}

void ServisMenu::bulguSecildi(int sira) {
  satirlar_->clear();
  satirlar_->setRowCount(0);
  satirlar_->setColumnCount(0);
  const bool var = sira >= 0 && sira < static_cast<int>(bulgular_.size());
  const Bulgu bos;
  const Bulgu& bulgu = var ? bulgular_[static_cast<std::size_t>(sira)] : bos;
  kopyala_->setEnabled(!bulgu.satirlar.empty());
  csv_->setEnabled(!bulgu.satirlar.empty());
  anlam_->setText(
      !var ? QString("Denetimlerin bulduğu satırlar burada gösterilir; hiçbir şey kendiliğinden onarılmaz.")
      : bulgu.hata.empty() ? ui::text(bulgu.denetim->anlam)
                           : ui::text(bulgu.hata));
  QStringList basliklar;
  for (const std::string& baslik : bulgu.basliklar) basliklar << ui::text(baslik);
  satirlar_->setColumnCount(static_cast<int>(basliklar.size()));
  satirlar_->setHorizontalHeaderLabels(basliklar);
  satirlar_->setRowCount(static_cast<int>(bulgu.satirlar.size()));
  for (int satir = 0; satir < satirlar_->rowCount(); ++satir)
    for (int kolon = 0; kolon < satirlar_->columnCount(); ++kolon)
      satirlar_->setItem(
          satir, kolon,
          new QTableWidgetItem(
              ui::text(bulgu.satirlar[static_cast<std::size_t>(satir)][static_cast<std::size_t>(kolon)])));
  satirlar_->resizeColumnsToContents();
}

void ServisMenu::kopyala() {
  const int sira = bulguListesi_->currentRow();
  if (sira < 0 || bulgular_.empty()) return;
  QApplication::clipboard()->setText(
      ui::text(session::tabloYaz(tablo(bulgular_[static_cast<std::size_t>(sira)]))));
}

void ServisMenu::csvYaz() {
  const int sira = bulguListesi_->currentRow();
  if (sira < 0) return;
  const QString dosya = QFileDialog::getSaveFileName(this, "CSV'ye Yaz", {}, "CSV (*.csv)");
  if (dosya.isEmpty()) return;
  std::string metin = "\xEF\xBB\xBF";  // spreadsheets take the text for UTF-8 by it
  for (const auto& satir : tablo(bulgular_[static_cast<std::size_t>(sira)])) {
    std::string ayrac;
    for (const std::string& hucre : satir) {
      metin += ayrac + csvHucresi(hucre);
      ayrac = ";";
    }
    metin += "\r\n";
  }
  if (const auto hata = platform::writeFileSafely(ui::utf8(dosya), metin))
    oturum_.kutular->message("Dosya yazılamadı: " + hata.message(), session::Icon::Stop);
}

}  // namespace maintenance_ui
