#include "settings/ui/karsilastirma.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "session/metin.h"
#include "settings/ui/parametre_formu.h"
#include "ui/theme.h"

namespace settings_ui {

namespace {
constexpr QSize boyut(820, 460);
}

Karsilastirma::Karsilastirma(session::Oturum& oturum, const settings::FirmaKaydi& kayit, ParametreFormu& form,
                             settings::ParametreEkrani ekran, QWidget* ana)
    : QDialog(ana),
      oturum_(oturum),
      form_(form),
      ekran_(ekran),
      firma_(new QComboBox),
      liste_(new QTableWidget(0, 3)),
      sonuc_(new QLabel),
      al_(new QPushButton("Değeri al")) {
  setWindowTitle("Parametre karşılaştırması");
  setObjectName("Karsilastirma");
  resize(boyut);
  for (const auto& firma : settings::Firma_Listesi(oturum))
    if (firma.sysfrm_dbnm != kayit.sysfrm_dbnm)
      firma_->addItem(ui::text(firma.sysfrm_dbnm + "  (" + firma.sysfrm_kd + ")"),
                      ui::text(firma.sysfrm_dbnm));
  firma_->setObjectName("Diger_Firma");
  firma_->setMinimumContentsLength(24);
  liste_->setObjectName("FarkGrd");
  liste_->setHorizontalHeaderLabels({"Parametre", ui::text(kayit.sysfrm_dbnm), "Diğer firma"});
  liste_->setSelectionBehavior(QAbstractItemView::SelectRows);
  liste_->setSelectionMode(QAbstractItemView::SingleSelection);
  liste_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  liste_->verticalHeader()->hide();
  liste_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  liste_->horizontalHeader()->resizeSection(1, 210);
  liste_->horizontalHeader()->resizeSection(2, 210);
  al_->setObjectName("AlBtn");
  al_->setToolTip("Seçili parametrenin diğer firmadaki değerini ekrana alır; kayıt Kaydet ile yapılır");
  auto* kapat = new QPushButton("Kapat");
  auto* ust = new QHBoxLayout;
  ust->addWidget(new QLabel("Karşılaştırılacak firma :"));
  ust->addWidget(firma_);
  ust->addStretch(1);
  auto* alt = new QHBoxLayout;
  alt->addWidget(sonuc_, 1);
  alt->addWidget(al_);
  alt->addWidget(kapat);
  auto* duzen = new QVBoxLayout(this);
  duzen->addLayout(ust);
  duzen->addWidget(liste_, 1);
  duzen->addLayout(alt);
  connect(firma_, &QComboBox::currentIndexChanged, this, &Karsilastirma::listele);
  connect(al_, &QPushButton::clicked, this, &Karsilastirma::al);
  connect(liste_, &QTableWidget::itemDoubleClicked, this, &Karsilastirma::al);
  connect(kapat, &QPushButton::clicked, this, &QDialog::accept);
  listele();
}

// A shown value as a person reads it: choices by their texts.
std::string Karsilastirma::yazi(std::size_t sira, const std::string& deger) const {
  const auto& p = settings::parametreler()[sira];
  if (p.tur == settings::ParametreTuru::Tik) return deger == "1" ? "Evet" : "Hayır";
  if (p.secenekler.empty() || deger.empty()) return deger;
  return session::Trim(p.secenekler[static_cast<std::size_t>(std::atoi(deger.c_str()))]);
}

void Karsilastirma::listele() {
  liste_->setRowCount(0);
  siralar_.clear();
  const auto kayit = settings::Firma_Kaydi_Ac(oturum_, ui::utf8(firma_->currentData().toString()));
  if (!kayit) {
    sonuc_->setText(firma_->count() == 0 ? QString("Karşılaştırılacak başka firma yok.")
                                         : ui::text(oturum_.Son_Hata));
    al_->setEnabled(false);
    return;
  }
  std::vector<std::string> hatalar;
  diger_ = settings::Parametre_Yukle(*kayit, hatalar);
  const auto tablo = settings::parametreler();
  for (std::size_t i = 0; i < tablo.size(); ++i) {
    const std::string bu = form_.oku(i);
    if (tablo[i].ekran != ekran_ || bu == diger_[i]) continue;
    const int satir = liste_->rowCount();
    liste_->insertRow(satir);
    liste_->setItem(satir, 0, new QTableWidgetItem(ui::text(settings::parametreAdi(tablo[i]))));
    liste_->setItem(satir, 1, new QTableWidgetItem(ui::text(yazi(i, bu))));
    liste_->setItem(satir, 2, new QTableWidgetItem(ui::text(yazi(i, diger_[i]))));
    siralar_.push_back(i);
  }
  al_->setEnabled(!siralar_.empty());
  if (!siralar_.empty()) liste_->setCurrentCell(0, 0);
  sonuc_->setText(siralar_.empty() ? QString("Parametreler aynı.")
                                   : QString("%1 parametre farklı").arg(siralar_.size()));
}

void Karsilastirma::al() {
  const int satir = liste_->currentRow();
  if (satir < 0) return;
  const std::size_t sira = siralar_[static_cast<std::size_t>(satir)];
  form_.goster(sira, diger_[sira]);
  listele();
  liste_->setCurrentCell(std::min(satir, liste_->rowCount() - 1), 0);
}

}  // namespace settings_ui
