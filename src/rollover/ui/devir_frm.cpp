#include "rollover/ui/devir_frm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>

#include "catalog/katalog.h"
#include "rollover/ui/kanit_penceresi.h"
#include "session/statements.h"
#include "ui/console_port.h"
#include "ui/fields.h"
#include "ui/form.h"
#include "ui/theme.h"
#include "ui/tik_agaci.h"

namespace rollover_ui {

using rollover::DevirTarafi;

namespace {

struct Alan {
  const char* ad;
  std::array<const char*, 2> yazi;
  std::string DevirTarafi::*metin;
};
constexpr std::array<Alan, 5> alanlar = {{
    {"Firma_Unvani", {"Firma Unvanı :", "Firma Unvanı :"}, &DevirTarafi::Firma_Unvani},
    {"Firma_Kodu", {"Firma Kodu  :", "Firma Kodu  :"}, &DevirTarafi::Firma_Kodu},
    {"Firma_Adi", {"Firma Adı  :", "Database Adı  :"}, &DevirTarafi::Firma_Adi},
    {"Bas_Tar", {"Mali Yıl Başı :", "Mali Yıl Başı :"}, &DevirTarafi::Bas_Tar},
    {"Bit_Tar", {"Mali Yıl Bitiş :", "Mali Yıl Bitiş :"}, &DevirTarafi::Bit_Tar},
}};
constexpr std::array<const char*, 2> cerceveYazilari = {"Devredilecek Firma Bilgileri",
                                                        "Devrin Yapılacağı Firma Bilgileri"};
constexpr int tarihUzunlugu = 10, enCokGun = 36'500;

session::TikAgaci secenekAgaci() {
  std::vector<session::TikSatiri> satirlar;
  for (const rollover::SecenekSatiri& s : rollover::secenekSatirlari())
    satirlar.push_back({s.cocuk == 0 ? 1 : 2, std::string(s.metin), rollover::secenekYolu(s)});
  return session::TikAgaci(std::move(satirlar), true);
}

}  // namespace

DevirFrm::DevirFrm(session::Oturum& oturum, ui::ConsolePort& konsol)
    : Kart("devir", "Firma Devri"), oturum_(oturum), konsol_(konsol) {
  setObjectName("DevirFrm");
  auto* sol = new QVBoxLayout;
  sol->setSpacing(ui::gap);
  for (int i = 0; i < 2; ++i) sol->addWidget(tarafCercevesi(i));
  sol->addStretch(1);
  auto* yan = new QHBoxLayout;
  yan->setSpacing(ui::gap);
  constexpr int solEn = 430;
  auto* taraflar = new QWidget;
  taraflar->setMaximumWidth(ui::byLetters(solEn));
  sol->setContentsMargins(0, 0, 0, 0);
  taraflar->setLayout(sol);
  yan->addWidget(taraflar);
  yan->addWidget(secenekCercevesi(), 1);
  body()->addLayout(yan, 1);
  kanit_ = button("KanitBtn", "Devir Kanıtı", "incele");
  deneme_ = button("DenemeBtn", "Deneme", "soru");
  tamam_ = button("TamamBtn", "Başla", "kaydet", true);
  auto* iptal = button("IptalBtn", "Çıkış", "cikis");
  kanit_->setEnabled(false);
  hint()->setText("  Escape (Çıkış)  F2 (Başla)  F5 (Deneme)");
  shortcut(Qt::Key_F2, tamam_);
  shortcut(Qt::Key_F5, deneme_);
  shortcut(Qt::Key_Escape, iptal);
  connect(tamam_, &QPushButton::clicked, this, [this] { basla(false); });
  connect(deneme_, &QPushButton::clicked, this, [this] { basla(true); });
  connect(kanit_, &QPushButton::clicked, this, &DevirFrm::kanitGoster);
  connect(iptal, &QPushButton::clicked, this, [this] { kapan(); });
}

QWidget* DevirFrm::tarafCercevesi(int i) {
  QGroupBox* kutu = frame(i == 0 ? "Kaynak" : "Hedef", cerceveYazilari[static_cast<std::size_t>(i)]);
  auto* grid = new QGridLayout(kutu);
  grid->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  grid->setHorizontalSpacing(ui::gap);
  grid->setVerticalSpacing(ui::gapSmall);
  grid->setColumnStretch(1, 1);
  grid->setColumnMinimumWidth(0, fontMetrics().horizontalAdvance("Database Adı  :") + ui::gap);
  Taraf& t = taraf_[static_cast<std::size_t>(i)];
  t.combo = new QComboBox;
  t.combo->setObjectName("Firma_Combo" + QString::number(i));
  t.combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  t.combo->setMinimumContentsLength(10);
  auto* etiket = new QLabel("Firmayı Seçiniz");
  etiket->setBuddy(t.combo);
  etiket->setProperty("rol", "alan");
  grid->addWidget(etiket, 0, 0, Qt::AlignRight | Qt::AlignVCenter);
  grid->addWidget(t.combo, 0, 1);
  auto* keys = new ui::FieldKeys(this, ui::cardColours, true);
  auto* tarihler = new QHBoxLayout;
  tarihler->setSpacing(ui::gapSmall);
  for (std::size_t a = 0; a < alanlar.size(); ++a) {
    auto* edit = new QLineEdit;
    edit->setObjectName(alanlar[a].ad + QString::number(i));
    edit->setReadOnly(i == 0);
    if (alanlar[a].metin == &DevirTarafi::Bas_Tar || alanlar[a].metin == &DevirTarafi::Bit_Tar) {
      edit->setMaxLength(tarihUzunlugu);
      edit->setPlaceholderText("GG.AA.YYYY");
      edit->setMinimumWidth(fontMetrics().horizontalAdvance("00.00.0000") + 2 * ui::gap);
    } else {
      edit->setMaxLength(50);
    }
    // Both ends of the period share a line.
    if (alanlar[a].metin == &DevirTarafi::Bit_Tar) {
      auto* bitis = new QLabel(alanlar[a].yazi[static_cast<std::size_t>(i)]);
      bitis->setBuddy(edit);
      bitis->setProperty("rol", "alan");
      tarihler->addWidget(bitis);
      tarihler->addWidget(edit, 1);
    } else if (alanlar[a].metin == &DevirTarafi::Bas_Tar) {
      auto* bas = new QLabel(alanlar[a].yazi[static_cast<std::size_t>(i)]);
      bas->setBuddy(edit);
      bas->setProperty("rol", "alan");
      grid->addWidget(bas, grid->rowCount(), 0, Qt::AlignRight | Qt::AlignVCenter);
      tarihler->addWidget(edit, 1);
      grid->addLayout(tarihler, grid->rowCount() - 1, 1);
    } else {
      ui::row(grid, grid->rowCount(), alanlar[a].yazi[static_cast<std::size_t>(i)], edit);
    }
    t.alan[a] = edit;
    const std::string onceki = a == 0 ? "" : alanlar[a - 1].ad + std::to_string(i);
    const std::string sonraki = a + 1 == alanlar.size() ? "TamamBtn" : alanlar[a + 1].ad + std::to_string(i);
    if (i == 1) keys->watch(edit, (";" + onceki + ";;" + sonraki).c_str());
  }
  connect(t.combo, &QComboBox::currentIndexChanged, this, [this, i] {
    if (!doluyor_) comboDegisti(i);
  });
  return kutu;
}

QWidget* DevirFrm::secenekCercevesi() {
  QGroupBox* kutu = frame("Secenekler", "Devredilecekler");
  auto* duzen = new QVBoxLayout(kutu);
  duzen->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  duzen->setSpacing(ui::gapSmall);
  agac_ = new ui::TikAgaciGorunumu(secenekAgaci());
  agac_->setObjectName("DevirParametreList");
  agac_->satirdanTikla(true);
  agac_->header()->hide();
  agac_->expandAll();
  connect(&agac_->model(), &ui::TikAgaciModeli::tikDegisti, this, &DevirFrm::tikDegisti);
  duzen->addWidget(agac_, 1);
  eksi_ = new QCheckBox("Eksiye Düşmüş Stoklar Devredilsin Mi ?");
  eksi_->setObjectName("STEksi");
  ciro_ = new QLineEdit;
  ciro_->setObjectName("Ciro_Takip_Suresi");
  ciro_->setValidator(new QIntValidator(0, enCokGun, ciro_));
  ciro_->setMaximumWidth(ui::byLetters(90));
  auto* etiket = new QLabel("Ciro Takip Süresi");
  etiket->setBuddy(ciro_);
  auto* satir = new QHBoxLayout;
  satir->addWidget(etiket);
  satir->addWidget(ciro_);
  satir->addWidget(new QLabel("gün"));
  satir->addStretch(1);
  duzen->addWidget(eksi_);
  duzen->addLayout(satir);
  return kutu;
}

void DevirFrm::ac() {
  if (oturum_.Baglanti) oturum_.Baglanti->close();
  oturum_.Katalog_Adi = catalog::catalogDatabase;
  try {
    session::Katalog_Bagla(oturum_, oturum_.Katalog_Adi);
  } catch (const db::SqlError& hata) {
    oturum_.kutular->message(hata.what(), session::Icon::Stop);
  }
  secenekler_ = {};
  for (int i = 0; i < agac_->agac().boy(); ++i) agac_->agac().koy(i, true);
  agac_->model().yenile();
  agac_->expandAll();
  sonuc_ = {};
  kanit_->setEnabled(false);
  listeleriDoldur();
  taraf_[0].combo->setFocus(Qt::OtherFocusReason);
}

void DevirFrm::listeleriDoldur() {
  {
    const QScopedValueRollback<bool> kilit(doluyor_, true);
    const auto firmalar = rollover::Firmalari_Yukle(oturum_);
    for (Taraf& t : taraf_) {
      t.combo->clear();
      for (const auto& f : firmalar)
        t.combo->addItem(ui::text(f.ad) + "    " + ui::text(f.kod), ui::text(f.ad));
    }
    taraf_[1].combo->addItem(ui::text(rollover::yeniFirmaAc), ui::text(rollover::yeniFirmaAc));
  }
  comboDegisti(0);
  comboDegisti(1);
}

void DevirFrm::comboDegisti(int i) {
  const auto secili = [&](int n) {
    return ui::utf8(taraf_[static_cast<std::size_t>(n)].combo->currentData().toString());
  };
  if (secili(i) != rollover::yeniFirmaAc) {
    DevirTarafi t;
    if (!secili(i).empty()) rollover::Firma_Kayit_Getir(oturum_, secili(i), t);
    goster(i, t);
  }
  // The proposal follows the source.
  if (secili(1) == rollover::yeniFirmaAc) {
    std::array<DevirTarafi, 2> taraflar = {oku(0), DevirTarafi{}};
    rollover::Yeni_Firma_Bilgileri_Olustur(oturum_, taraflar);
    goster(1, taraflar[1]);
  }
}

void DevirFrm::goster(int i, const DevirTarafi& t) {
  Taraf& taraf = taraf_[static_cast<std::size_t>(i)];
  taraf.id = t.Firma_ID;
  for (std::size_t a = 0; a < alanlar.size(); ++a) {
    taraf.alan[a]->setText(ui::text(t.*alanlar[a].metin));
    taraf.alan[a]->setCursorPosition(0);
  }
}

DevirTarafi DevirFrm::oku(int i) const {
  const Taraf& taraf = taraf_[static_cast<std::size_t>(i)];
  DevirTarafi t;
  t.Firma_ID = taraf.id;
  for (std::size_t a = 0; a < alanlar.size(); ++a) t.*alanlar[a].metin = ui::utf8(taraf.alan[a]->text());
  for (std::string* tarih : {&t.Bas_Tar, &t.Bit_Tar}) std::replace(tarih->begin(), tarih->end(), '/', '.');
  return t;
}

rollover::DevirGirdisi DevirFrm::girdi(bool deneme) const {
  rollover::DevirGirdisi g;
  for (int i = 0; i < 2; ++i) g.taraf[static_cast<std::size_t>(i)] = oku(i);
  g.secenekler = secenekler_;
  g.STEksi = eksi_->isChecked();
  g.Ciro_Takip_Suresi = ui::utf8(ciro_->text());
  g.deneme = deneme;
  return g;
}

void DevirFrm::tikDegisti(int satir) {
  secenekler_.tikla(static_cast<std::size_t>(satir), agac_->agac().isaretli(satir));
  for (int i = 0; i < agac_->agac().boy(); ++i)
    agac_->agac().koy(i, secenekler_.isaretli(static_cast<std::size_t>(i)));
  agac_->model().yenile();
}

void DevirFrm::basla(bool deneme) {
  const rollover::DevirGirdisi g = girdi(deneme);
  if (const std::string hata = rollover::Devir_kontrol(g.taraf); !hata.empty()) {
    oturum_.kutular->message(hata, session::Icon::Stop);
    return;
  }
  if (!deneme) {
    const std::string uyari = rollover::hedefUyarisi(oturum_, g);
    if (!uyari.empty() && !oturum_.kutular->ask(uyari)) return;
  }
  rollover::DevirSonucu sonuc;
  const QString baslik = deneme ? "Devir deneniyor" : "Firma devrediliyor";
  isYap(oturum_, {baslik, ui::Vazgec::Var}, [&] { sonuc = rollover::Devret(oturum_, g); });
  if (!sonuc.tamam) {
    const std::string ne = sonuc.iptal ? "Devirden vazgeçildi." : sonuc.hata;
    if (!ne.empty())
      oturum_.kutular->message(ne + "\nHedefte hiçbir şey değişmedi.",
                               sonuc.iptal ? session::Icon::Information : session::Icon::Stop);
    return;
  }
  sonuc_ = std::move(sonuc);
  kanit_->setEnabled(true);
  if (!deneme) {
    konsol_.Alan_Listesi_Doldur();
    oturum_.kutular->message("Devir İşlemi Başarı İle Tamamlandı", session::Icon::Information);
    listeleriYenile();
  }
  kanitGoster();
}

// The new company is in the lists and stays the chosen target.
void DevirFrm::listeleriYenile() {
  const QString kaynak = taraf_[0].combo->currentData().toString(), hedef = taraf_[1].alan[2]->text();
  listeleriDoldur();
  taraf_[0].combo->setCurrentIndex(std::max(0, taraf_[0].combo->findData(kaynak)));
  taraf_[1].combo->setCurrentIndex(std::max(0, taraf_[1].combo->findData(hedef)));
}

void DevirFrm::kanitGoster() {
  auto* pencere = new KanitPenceresi(oturum_, sonuc_.kanit, this);
  pencere->setAttribute(Qt::WA_DeleteOnClose);
  pencere->show();
}

}  // namespace rollover_ui
