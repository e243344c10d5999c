#include "ui/tik_agaci.h"

#include "screen.h"

namespace {

session::TikAgaci agac() {
  return session::TikAgaci({{1, "Kasa"}, {2, "Kart"}, {3, "Ekle"}, {3, "Sil"}, {1, "Stok"}});
}
std::string ticks(ui::TikAgaciGorunumu& view) {
  std::string out;
  for (int i = 0; i < view.agac().boy(); ++i)
    out += view.model().index(i).data(Qt::CheckStateRole).toInt() == Qt::Checked ? '1' : '0';
  return out;
}
// The middle of the box before a row's caption.
QPoint box(ui::TikAgaciGorunumu& view, int row) {
  const QRect rect = view.visualRect(view.model().index(row));
  return {rect.left() + 12, rect.center().y()};
}

TEST(TikAgaciGorunumu, BlankAndBoxChangeTicksOfCollapsedRowsToo) {
  ui::TikAgaciGorunumu view(agac());
  view.resize(300, 300);
  screen::show(view);
  view.setCurrentIndex(view.model().index(0));
  screen::key(Qt::Key_Space);
  EXPECT_EQ(ticks(view), "11110");
  view.expandAll();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box(view, 2));
  EXPECT_EQ(ticks(view), "11010");
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box(view, 3));
  EXPECT_EQ(ticks(view), "00000");
}

TEST(TikAgaciGorunumu, AClickOnTheRowChangesItOnlyWhenAsked) {
  ui::TikAgaciGorunumu view(agac());
  view.resize(300, 300);
  screen::show(view);
  const QRect row = view.visualRect(view.model().index(4));
  const QPoint caption = row.center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, caption);
  EXPECT_EQ(ticks(view), "00000");
  view.satirdanTikla(true);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, caption);
  EXPECT_EQ(ticks(view), "00001");
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, box(view, 4));
  EXPECT_EQ(ticks(view), "00000");
  view.model().saltOkunur(true);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, caption);
  EXPECT_EQ(ticks(view), "00000");
}

TEST(TikAgaciGorunumu, ARowIsBroughtIntoSight) {
  ui::TikAgaciGorunumu view(agac());
  screen::show(view);
  view.goster(3);
  EXPECT_EQ(view.currentIndex().data().toString(), "Sil");
  EXPECT_TRUE(view.isExpanded(view.model().index(0)));
  EXPECT_FALSE(view.visualRect(view.currentIndex()).isEmpty());
}

}  // namespace
