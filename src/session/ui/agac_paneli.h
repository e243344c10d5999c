// The tree of companies and users with what finds things in it: two tabs, a filter, sorted columns.
#pragma once

#include <QWidget>
#include <vector>

#include "session/konsol.h"

class QLabel;
class QLineEdit;
class QTabBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace session_ui {

class AgacPaneli : public QWidget {
  Q_OBJECT
 public:
  explicit AgacPaneli(QWidget* parent = nullptr);

  QTreeWidget* agac() { return agac_; }
  // Replaces all nodes. The current node stays current; where it is gone its neighbour takes its place.
  void doldur(std::vector<session::Dugum> dugumler);
  // An empty node while nothing is current.
  session::Dugum secili() const;
  int altSayisi() const;  // nodes below the current branch
  // The leaf of that name becomes current and visible; false when there is none.
  bool sec(const QString& ad);
  void baglantiKoptu(bool koptu);  // shows or hides the offer to connect again
  void suzgeceGit();

 signals:
  void seciliDegisti();
  void yenidenBaglan();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTreeWidgetItem* ogeYap(std::size_t sira, QTreeWidgetItem* dal);
  void sekmeyiUygula(int sekme);
  void sekmeyiSec(const QTreeWidgetItem* oge);
  void suz();
  void sutunlar();
  QTreeWidgetItem* yaprak(const session::Dugum& dugum) const;

  QTabBar* sekmeler_;
  QLineEdit* suzgec_;
  QTreeWidget* agac_;
  QLabel* bosLbl_;
  QWidget* kopuk_;
  std::vector<session::Dugum> dugumler_;
};

}  // namespace session_ui
