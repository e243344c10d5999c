#include "ui/fields.h"

#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "screen.h"
#include "ui/boxes.h"
#include "ui/date_edit.h"
#include "ui/progress.h"

namespace {

using namespace screen;

struct Form : QWidget {
  Form() {
    auto* layout = new QVBoxLayout(this);
    for (const char* name : {"Bir", "Gizli", "Kapali", "Son"}) {
      auto* field = new QLineEdit("metin");
      field->setObjectName(name);
      layout->addWidget(field);
      fields.push_back(field);
    }
    for (int index : {0, 1}) {
      auto* button = new QPushButton("x");
      button->setObjectName("Dugme");
      button->setProperty(ui::indexProperty, index);
      layout->addWidget(button);
      buttons.push_back(button);
    }
    fields[1]->setVisible(false);
    fields[2]->setEnabled(false);
    auto* keys = new ui::FieldKeys(this, ui::cardColours, true);
    keys->watch(fields[0], "dugme(1);Bir;SON;Gizli|Kapali|Yok|Son");
    keys->watch(fields[3], ";Gizli;Dugme(0);Dugme(1)");
    keys->watch(buttons[1], "Bir;;;");
    screen::show(*this);
  }
  std::vector<QLineEdit*> fields;
  std::vector<QPushButton*> buttons;
};

TEST(Fields, TagMapSkipsHiddenAndDisabledTargets) {
  Form form;
  for (const Qt::Key down : {Qt::Key_Down, Qt::Key_Return}) {
    form.fields[0]->setFocus();
    key(down);
    EXPECT_EQ(focusName(), "Son");
  }
  key(Qt::Key_Up);  // the only candidate is hidden
  EXPECT_EQ(focusName(), "Son");
  key(Qt::Key_Down);
  EXPECT_EQ(QApplication::focusWidget(), form.buttons[1]);
  key(Qt::Key_Left);
  EXPECT_EQ(focusName(), "Bir");
}

TEST(Fields, LeftAndRightStayInTheTextUntilItsEnds) {
  Form form;
  QLineEdit* field = form.fields[0];
  field->setFocus();
  field->setCursorPosition(1);
  key(Qt::Key_Left);
  EXPECT_EQ(focusName(), "Bir");
  EXPECT_EQ(field->cursorPosition(), 0);
  key(Qt::Key_Left);
  EXPECT_EQ(QApplication::focusWidget(), form.buttons[1]);

  field->setFocus();
  field->setCursorPosition(4);
  key(Qt::Key_Right);
  EXPECT_EQ(focusName(), "Bir");
  key(Qt::Key_Right);
  EXPECT_EQ(focusName(), "Son");
}

TEST(Fields, FocusPaintsOrangeAndSelects) {
  Form form;
  form.fields[0]->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(form.fields[0]->selectedText(), "metin");
  EXPECT_EQ(background(*form.fields[0]), 0xFF8000U);
  EXPECT_EQ(background(*form.fields[3]), 0xFFFFFFU);
  form.fields[3]->setFocus(Qt::TabFocusReason);
  EXPECT_EQ(background(*form.fields[0]), 0xFFFFFFU);
  EXPECT_EQ(background(*form.fields[3]), 0xFF8000U);
}

TEST(Fields, AClickSelectsTheWholeTextOnceAndThenPlacesTheCaret) {
  const int interval = QApplication::doubleClickInterval();
  QApplication::setDoubleClickInterval(0);  // two clicks, never a double click
  Form form;
  form.fields[3]->setFocus();
  QLineEdit* field = form.fields[0];
  QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(20, field->height() / 2));
  QCoreApplication::processEvents();
  EXPECT_EQ(field->selectedText(), "metin");
  QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(20, field->height() / 2));
  QCoreApplication::processEvents();
  EXPECT_EQ(field->selectedText(), "");
  QApplication::setDoubleClickInterval(interval);
}

TEST(Fields, PopupMenuOfTextFieldsIsTurkish) {
  QLineEdit field("metin");
  const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
  for (const QAction* action : menu->actions())
    for (const char* english : {"Undo", "Redo", "Cut", "Copy", "Paste", "Delete", "Select"})
      EXPECT_FALSE(action->text().remove('&').contains(english)) << action->text().toStdString();
}

struct DateForm : QWidget {
  DateForm() : date(boxes) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(&date);
    layout->addWidget(&other);
    screen::show(*this);
    date.setFocus();
  }
  ~DateForm() override {
    date.setParent(nullptr);
    other.setParent(nullptr);
  }
  support::FakeBoxes boxes;
  ui::DateEdit date;
  QLineEdit other;
};

TEST(DateField, SeparatorsComeByThemselvesAndGoWithBackspace) {
  DateForm form;
  QTest::keyClicks(&form.date, "0102201234");
  EXPECT_EQ(form.date.text(), "01/02/2012");
  for (int i = 0; i < 4; ++i) key(Qt::Key_Backspace);
  EXPECT_EQ(form.date.text(), "01/02");
  QTest::keyClicks(&form.date, "abc");
  EXPECT_EQ(form.date.text().left(5), "01/02");
  EXPECT_FALSE(form.date.text().contains('a'));
}

TEST(DateField, IsTypedAndPastedAsPeopleDo) {
  for (const char* typed : {"1/2/2012", "1.2.2012", "01.02.2012", "01022012", "1-2-2012", "01/02/2012"}) {
    DateForm form;
    QTest::keyClicks(&form.date, typed);
    EXPECT_EQ(form.date.text(), "01/02/2012") << typed;
  }
  DateForm form;
  QApplication::clipboard()->setText("2012-03-15");
  form.date.paste();
  EXPECT_EQ(form.date.text(), "15/03/2012");
  form.date.setCursorPosition(3);
  key(Qt::Key_Backspace);  // the digit before the separator, which stays
  EXPECT_EQ(form.date.text(), "1/03/2012");
  EXPECT_EQ(form.date.cursorPosition(), 1);
  form.date.setCursorPosition(1);
  key(Qt::Key_Delete);
  EXPECT_EQ(form.date.text(), "1/3/2012");
  form.other.setFocus(Qt::TabFocusReason);
  EXPECT_EQ(form.date.text(), "01/03/2012");
  EXPECT_TRUE(form.boxes.shown.empty());
}

TEST(DateField, LeavingChecksDayAndMonth) {
  const struct {
    const char *typed, *left, *message;
  } cases[] = {{"32012012", "", "Gün alanını yanlış girdiniz."},
               {"01132012", "", "Ay alanını yanlış girdiniz."},
               {"31022012", "31/02/2012", ""},
               {"0503", "05/03", ""}};
  for (const auto& c : cases) {
    DateForm form;
    QTest::keyClicks(&form.date, c.typed);
    form.other.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(form.date.text().toStdString(), c.left) << c.typed;
    EXPECT_EQ(form.boxes.last(), c.message) << c.typed;
  }
}

// Answers the box that comes up by `answer`; returns what ask() gave.
bool askWith(const std::function<void(QMessageBox&)>& answer) {
  QTimer::singleShot(0, [&answer] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->windowTitle(), "Korvena");
    answer(*box);
  });
  return ui::DesktopBoxes().ask("<b>Emin misiniz?</b>", session::Icon::Question, "Korvena");
}

TEST(Boxes, QuestionsStopOnNo) {
  const auto press = [](Qt::Key key) { return [key](QMessageBox& box) { QTest::keyClick(&box, key); }; };
  EXPECT_FALSE(askWith(press(Qt::Key_Return)));
  EXPECT_FALSE(askWith(press(Qt::Key_Escape)));
  EXPECT_TRUE(askWith([](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    for (QAbstractButton* button : box.buttons())
      if (button->text() == "Evet") QTest::mouseClick(button, Qt::LeftButton);
  }));
}

TEST(Boxes, ALongStatementScrollsAndAShortTextShowsWhole) {
  const std::pair<std::string, bool> cases[] = {{"Şifreniz Geçerli Değil!", false},
                                                {"bir\niki\nüç\ndört", false},
                                                {std::string(9000, 'x') + " son", true},
                                                {std::string(200, '\n'), true}};
  for (const auto& [text, scrolls] : cases) {
    QTimer::singleShot(0, [scrolls = scrolls] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_LT(box->height(), 500);
      EXPECT_EQ(box->findChild<QPlainTextEdit*>("UzunMetin") != nullptr, scrolls);
      const auto* label = box->findChild<QLabel*>("qt_msgbox_label");
      EXPECT_TRUE(scrolls || label->width() >= label->sizeHint().width());
      EXPECT_TRUE(scrolls || label->height() >= label->sizeHint().height());
      QTest::keyClick(box, Qt::Key_Return);
    });
    ui::DesktopBoxes().message(text);
  }
}

TEST(Progress, PercentagesAreWrittenBehindTheNumber) {
  ui::ProgressPanel panel;
  const std::pair<int, const char*> cases[] = {{0, "%"}, {1, "33%"}, {2, "67%"}, {3, "100%"}};
  for (const auto& [value, text] : cases) {
    panel.step(value, 3);
    const auto labels = panel.findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [t = text](QLabel* l) { return l->text() == t; }))
        << text;
  }
}

}  // namespace
