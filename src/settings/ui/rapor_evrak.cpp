#include "settings/ui/rapor_evrak.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTextDocument>

#include "settings/rapor.h"
#include "ui/theme.h"

namespace settings_ui {

namespace {

constexpr int kisimBasligi = 48;  // two lines

QTableWidget* tablo(const char* ad, int satir, int sutun) {
  auto* t = new QTableWidget(satir, sutun);
  t->setObjectName(ad);
  t->setEditTriggers(QAbstractItemView::NoEditTriggers);
  t->setSelectionMode(QAbstractItemView::SingleSelection);
  t->verticalHeader()->hide();
  t->setTabKeyNavigation(false);
  return t;
}

}  // namespace

RaporEvrak::RaporEvrak(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("tasarim", "Rapor Evrak Tasarım"), oturum_(oturum) {
  setObjectName("RprEvrakTsrFrm");
  const auto moduller = settings::raporModulleri();
  const auto kisimlar = settings::raporKisimlari();
  PRModulFlx_ = tablo("PRModulFlx", static_cast<int>(moduller.size()), 2);
  PRModulFlx_->setHorizontalHeaderLabels({"Modül", "Modül Adı"});
  PRModulFlx_->setSelectionBehavior(QAbstractItemView::SelectRows);
  for (std::size_t i = 0; i < moduller.size(); ++i) {
    PRModulFlx_->setItem(static_cast<int>(i), 0, new QTableWidgetItem(QString::number(i + 1)));
    PRModulFlx_->setItem(static_cast<int>(i), 1, new QTableWidgetItem(ui::text(moduller[i])));
  }
  PRModulFlx_->setColumnWidth(0, fontMetrics().horizontalAdvance("Modül") + 2 * ui::gap);
  PRModulFlx_->horizontalHeader()->setStretchLastSection(true);
  PRModulFlx_->setFixedWidth(ui::byLetters(190));
  KisimFlx_ = tablo("KisimFlx", 1, static_cast<int>(kisimlar.size()));
  for (std::size_t i = 0; i < kisimlar.size(); ++i) {
    KisimFlx_->setHorizontalHeaderItem(static_cast<int>(i), new QTableWidgetItem(ui::text(kisimlar[i])));
    KisimFlx_->setItem(0, static_cast<int>(i), new QTableWidgetItem);
  }
  KisimFlx_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  KisimFlx_->horizontalHeader()->setDefaultAlignment(Qt::Alignment(Qt::AlignCenter) |
                                                     Qt::Alignment::fromInt(Qt::TextWordWrap));
  KisimFlx_->horizontalHeader()->setMinimumHeight(ui::byLetters(kisimBasligi));
  KisimFlx_->setMinimumWidth(static_cast<int>(kisimlar.size()) *
                             (fontMetrics().horizontalAdvance("RAPORLARI") + 2 * ui::gap));
  KisimFlx_->setFixedHeight(ui::byLetters(kisimBasligi + 40));
  PRSQL_ = new QPlainTextEdit;
  PRSQL_->setObjectName("PRSQL");
  PRSQL_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  PRSQL_->setMinimumHeight(240);
  auto* sag = new QVBoxLayout;
  sag->setSpacing(ui::gapSmall);
  sag->addWidget(KisimFlx_);
  sag->addWidget(PRSQL_, 1);
  auto* duzen = new QHBoxLayout;
  duzen->setSpacing(ui::gap);
  duzen->addWidget(PRModulFlx_);
  duzen->addLayout(sag, 1);
  body()->addLayout(duzen, 1);
  const auto [kaydetBtn, cikis] = saveAndLeave("PrtKaydet", "CikisBtn");
  connect(PRModulFlx_, &QTableWidget::currentCellChanged, this, [this](int satir, int, int once, int) {
    if (satir < 0 || satir == once) return;
    if (!birakilir()) return geri(PRModulFlx_, once, 0);
    Secili_Modul_ = satir + 1;
    yukle();
  });
  connect(KisimFlx_, &QTableWidget::currentCellChanged, this, [this](int, int sutun, int, int once) {
    if (sutun < 0 || sutun == once) return;
    if (!birakilir()) return geri(KisimFlx_, 0, once);
    Secili_Kisim_ = sutun + 1;
    yukle();
  });
  connect(kaydetBtn, &QPushButton::clicked, this, &RaporEvrak::kaydet);
  connect(cikis, &QPushButton::clicked, this, [this] {
    if (birakilir()) kapan();
  });
}

void RaporEvrak::ac() {
  for (QTableWidget* t : {PRModulFlx_, KisimFlx_}) {
    const QSignalBlocker sessiz(t);
    t->setCurrentCell(-1, -1);
  }
  Secili_Modul_ = Secili_Kisim_ = 0;
  PRSQL_->clear();
  PRSQL_->document()->setModified(false);
  subheading()->setText("Modül ve bölüm seçin");
  settings::Rapor_Bagla(oturum_);
  PRModulFlx_->setFocus();
}

// The selection is still at work on the move: it goes back behind it.
void RaporEvrak::geri(QTableWidget* tablo, int satir, int sutun) {
  QMetaObject::invokeMethod(
      this,
      [tablo, satir, sutun] {
        const QSignalBlocker sessiz(tablo);
        tablo->setCurrentCell(satir, sutun);
      },
      Qt::QueuedConnection);
}

void RaporEvrak::yukle() {
  PRSQL_->setPlainText(ui::text(settings::Rapor_Oku(oturum_, Secili_Modul_, Secili_Kisim_)));
  PRSQL_->document()->setModified(false);
  const auto ad = [](auto liste, int sira) {
    return sira > 0 ? ui::text(liste[static_cast<std::size_t>(sira - 1)]) : QString("…");
  };
  subheading()->setText(ad(settings::raporModulleri(), Secili_Modul_) + "  /  " +
                        ad(settings::raporKisimlari(), Secili_Kisim_));
}

void RaporEvrak::kaydet() {
  if (!settings::Rapor_Kaydet(oturum_, Secili_Modul_, Secili_Kisim_, ui::utf8(PRSQL_->toPlainText()))) return;
  PRSQL_->document()->setModified(false);
  oturum_.kutular->message("Kayıt Başarı İle Gerçekleştirildi !");
}

bool RaporEvrak::birakilir() {
  if (!PRSQL_->document()->isModified() || Secili_Modul_ == 0 || Secili_Kisim_ == 0) return true;
  return oturum_.kutular->ask("Kaydedilmemiş değişiklikler var. Kaydetmeden devam etmek istiyor musunuz?");
}

}  // namespace settings_ui
