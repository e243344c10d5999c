#include "maintenance/ui/offline_ayarlar_frm.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "session/tarih.h"
#include "ui/date_edit.h"
#include "ui/fields.h"
#include "ui/form.h"
#include "ui/theme.h"

namespace maintenance_ui {
namespace {

using maintenance::OfflineAlani;
using maintenance::OfflineTuru;

constexpr int kisaMetin = 5;  // below it a blank fills in the present day or time

QString saat(const db::DateTime& an) {
  return QString("%1:%2:%3")
      .arg(an.hour, 2, 10, QChar('0'))
      .arg(an.minute, 2, 10, QChar('0'))
      .arg(an.second, 2, 10, QChar('0'));
}

}  // namespace

OfflineAyarlarFrm::OfflineAyarlarFrm(session::Oturum& oturum, ui::ConsolePort&)
    : Kart("sube", "Offline Bağlantı Ayarları"),
      oturum_(oturum),
      otoGon_(new QCheckBox("Otomatik Bilgi Gönder")) {
  setObjectName("Offline_AyarlarFRM");
  otoGon_->setObjectName("OtoGon");
  auto* kutu = frame("Frame1", "Merkez ve Bilgi Alışverişi");
  auto* grid = new QGridLayout(kutu);
  grid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  grid->setHorizontalSpacing(ui::gap);
  grid->setColumnStretch(1, 1);
  auto* keys = new ui::FieldKeys(this, ui::cardColours, true);
  const auto tablo = maintenance::offlineAlanlari();
  QString onceki;
  for (const OfflineAlani& alan : tablo) {
    QLineEdit* edit = alan.tur == OfflineTuru::Tarih ? new ui::DateEdit(*oturum_.kutular) : new QLineEdit;
    const QString ad = ui::text(alan.column);
    edit->setObjectName(ad);
    if (alan.tur == OfflineTuru::Sifre) edit->setEchoMode(QLineEdit::Password);
    alanlar_.push_back(edit);
    if (!alan.yazilir) {
      edit->setReadOnly(true);
      edit->setFocusPolicy(Qt::NoFocus);
    }
    ui::row(grid, grid->rowCount(), alan.yazi.empty() ? QString("Son Transfer Firması") : ui::text(alan.yazi),
            edit);
    if (!alan.yazilir) continue;
    const auto sira = static_cast<std::size_t>(&alan - tablo.data());
    std::size_t sonra = sira + 1;
    while (sonra < tablo.size() && !tablo[sonra].yazilir) ++sonra;
    const QString asagi = sonra < tablo.size() ? ui::text(tablo[sonra].column) : QString("OtoGon");
    keys->watch(edit, (";" + onceki + ";;" + asagi).toUtf8());
    if (alan.tur == OfflineTuru::Tarih || alan.tur == OfflineTuru::Saat) edit->installEventFilter(this);
    if (alan.tur == OfflineTuru::Saat)
      connect(edit, &QLineEdit::textEdited, this, [this, edit] { saatMaskesi(edit); });
    onceki = ad;
  }
  grid->addWidget(otoGon_, grid->rowCount(), 1);
  keys->watch(otoGon_, (";" + onceki + ";;TamamBtn").toUtf8());
  body()->addWidget(kutu);
  body()->addStretch(1);
  const auto [tamamBtn, iptalBtn] = saveAndLeave("TamamBtn", "IptalBtn");
  keys->watch(tamamBtn, ";OtoGon;IptalBtn;");
  keys->watch(iptalBtn, "TamamBtn;;;");
  hint()->setText("  Escape (Çıkış)  F2 (Kaydet)");
  connect(tamamBtn, &QPushButton::clicked, this, &OfflineAyarlarFrm::kaydet);
  connect(iptalBtn, &QPushButton::clicked, this, [this] { kapan(); });
}

void OfflineAyarlarFrm::ac() {
  maintenance::OfflineAyarlari ayarlar;
  if (maintenance::Offline_Ac(oturum_, ayarlar) != maintenance::OfflineAcilis::Acik) {
    // The console is still opening the screen.
    QTimer::singleShot(0, this, [this] { kapan(); });
    return;
  }
  const auto tablo = maintenance::offlineAlanlari();
  for (std::size_t i = 0; i < alanlar_.size(); ++i) alanlar_[i]->setText(ui::text(ayarlar.*tablo[i].metin));
  otoGon_->setChecked(ayarlar.OtoGon);
  alanlar_[0]->setFocus(Qt::OtherFocusReason);
}

// A blank in a short date or time field fills in the present one.
bool OfflineAyarlarFrm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
    auto* alan = static_cast<QLineEdit*>(watched);
    if (alan->text().size() < kisaMetin) {
      const db::DateTime simdi = oturum_.saat->now();
      alan->setText(alan->objectName() == "SonAlimTarih" ? ui::text(session::tarihYaz(simdi)) : saat(simdi));
      return true;
    }
  }
  return Kart::eventFilter(watched, event);
}

// Digits only, with ":" behind hour and minute as they are typed.
void OfflineAyarlarFrm::saatMaskesi(QLineEdit* alan) {
  QString metin;
  for (const QChar c : alan->text()) {
    if (!c.isDigit() || metin.size() >= 8) continue;
    if (metin.size() == 2 || metin.size() == 5) metin += ':';
    metin += c;
  }
  if (metin != alan->text()) alan->setText(metin);
}

void OfflineAyarlarFrm::kaydet() {
  maintenance::OfflineAyarlari ayarlar;
  const auto tablo = maintenance::offlineAlanlari();
  for (std::size_t i = 0; i < alanlar_.size(); ++i) ayarlar.*tablo[i].metin = ui::utf8(alanlar_[i]->text());
  ayarlar.OtoGon = otoGon_->isChecked();
  if (const auto hatali = maintenance::Offline_Kontrol(oturum_, ayarlar); !hatali.empty()) {
    oturum_.kutular->message(oturum_.Son_Hata, session::Icon::Stop);
    findChild<QLineEdit*>(ui::text(hatali))->setFocus();
    return;
  }
  if (maintenance::Offline_Kaydet(oturum_, ayarlar)) kapan();
}

}  // namespace maintenance_ui
