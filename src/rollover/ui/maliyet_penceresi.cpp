#include "rollover/ui/maliyet_penceresi.h"

#include <QHeaderView>
#include <QLabel>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include "rollover/kanit.h"
#include "rollover/maliyet_gecmisi.h"
#include "ui/secili_kalir.h"
#include "ui/theme.h"
#include "ui/yer.h"

namespace rollover_ui {

namespace {

constexpr int ilkSayi = 3, kolonSayisi = 10;

QStandardItemModel* model(const rollover::MaliyetGecmisi& g, QObject* sahip) {
  auto* m = new QStandardItemModel(0, kolonSayisi, sahip);
  m->setHorizontalHeaderLabels({"Tarih", "Fiş No", "İşlem Tipi", "Ambar", "Giriş", "Çıkış", "Maliyet",
                                "Kalan Miktar", "Kalan Değer", "Birim Maliyet"});
  for (const rollover::MaliyetSatiri& s : g.satirlar) {
    const auto para = [](rollover::Para p) { return ui::text(rollover::paraMetni(p)); };
    const QStringList yazilar = {ui::text(s.tarih),        ui::text(s.fisNo), ui::text(s.islemTipi),
                                 QString::number(s.ambar), para(s.giris),     para(s.cikis),
                                 para(s.maliyet),          para(s.miktar),    para(s.deger),
                                 para(s.birimMaliyet)};
    QList<QStandardItem*> satir;
    for (int i = 0; i < kolonSayisi; ++i) {
      auto* item = new QStandardItem(yazilar[i]);
      item->setEditable(false);
      if (i >= ilkSayi) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      satir.append(item);
    }
    m->appendRow(satir);
  }
  return m;
}

}  // namespace

MaliyetPenceresi::MaliyetPenceresi(session::Oturum& oturum, const std::string& firma,
                                   const std::string& stokKod, QWidget* parent)
    : QDialog(parent) {
  setObjectName("MaliyetHesabi");
  setWindowTitle("Maliyet Hesabı");
  ui::yerlestir(*this, *oturum.platform, "MaliyetHesabi", {ui::byLetters(1100), ui::byLetters(520)});
  const rollover::MaliyetGecmisi g = rollover::Maliyet_Gecmisi(oturum, firma, stokKod);
  const std::string sonuc = g.satirlar.empty() ? "0,00" : rollover::paraMetni(g.satirlar.back().birimMaliyet);
  auto* etiket = new QLabel(g.hata.empty() ? ui::text(g.firma + "   " + g.stokKod + "   " + g.stokAd + "\n" +
                                                      std::to_string(g.satirlar.size()) +
                                                      " hareket, dönem sonunda birim maliyet " + sonuc)
                                           : ui::text(g.hata));
  etiket->setObjectName("OzetLbl");
  auto* tablo = new ui::SeciliKalir<QTableView>;
  tablo->setObjectName("MaliyetGrd");
  tablo->setModel(model(g, tablo));
  tablo->verticalHeader()->hide();
  tablo->setSelectionBehavior(QAbstractItemView::SelectRows);
  static constexpr int enler[] = {95, 115, 165, 60, 85, 85, 85, 100, 110};
  for (int i = 0; i < static_cast<int>(std::size(enler)); ++i)
    tablo->setColumnWidth(i, ui::byLetters(enler[i]));
  tablo->horizontalHeader()->setStretchLastSection(true);
  auto* duzen = new QVBoxLayout(this);
  duzen->setContentsMargins(ui::gapLarge, ui::gapLarge, ui::gapLarge, ui::gapLarge);
  duzen->setSpacing(ui::gap);
  duzen->addWidget(etiket);
  duzen->addWidget(tablo, 1);
}

}  // namespace rollover_ui
