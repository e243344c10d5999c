#include "settings/ui/firma_secimi.h"

#include <QHBoxLayout>
#include <QLabel>

#include "ui/form.h"
#include "ui/theme.h"

namespace settings_ui {

FirmaSecimi::FirmaSecimi(const QString& yazi, QWidget* parent) : QWidget(parent), combo_(new QComboBox) {
  combo_->setObjectName("Firma_Combo");
  combo_->setMinimumContentsLength(24);
  auto* duzen = new QHBoxLayout(this);
  duzen->setContentsMargins(0, 0, 0, 0);
  duzen->setSpacing(ui::gap);
  duzen->addWidget(ui::caption(yazi, combo_));
  duzen->addWidget(combo_);
  duzen->addStretch(1);
  connect(combo_, &QComboBox::currentIndexChanged, this, &FirmaSecimi::degisti);
}

void FirmaSecimi::doldur(const std::vector<settings::Firma>& firmalar) {
  const QSignalBlocker sessiz(combo_);
  combo_->clear();
  for (const auto& firma : firmalar)
    combo_->addItem(ui::text(firma.sysfrm_dbnm + "  (" + firma.sysfrm_kd + ")"), ui::text(firma.sysfrm_dbnm));
  combo_->setCurrentIndex(firmalar.empty() ? -1 : 0);
}

std::string FirmaSecimi::firma() const {
  return ui::utf8(combo_->currentData().toString());
}

void FirmaSecimi::sec(const std::string& firma) {
  const QSignalBlocker sessiz(combo_);
  combo_->setCurrentIndex(combo_->findData(ui::text(firma)));
}

void FirmaSecimi::sagaEkle(QWidget* parca) {
  layout()->addWidget(parca);
}

}  // namespace settings_ui
