// Behaviour that the fields of all screens share: focus colours, movement by the Tag map, selection.
#pragma once

#include <QObject>

class QAbstractButton;
class QLineEdit;
class QWidget;

namespace ui {

// Background and writing of a field with and without the focus; the values stand in theme.qss.
struct FocusColours {
  const char* focused;
  const char* normal;
};
inline constexpr FocusColours cardColours{"renk", "normal"};         // orange with white, white with black
inline constexpr FocusColours loginColours{"giris", "girisnormal"};  // 0xD5FBF8, 0xF9F9F9 (blue byte first)

void Odak_Renk(QWidget* control, const FocusColours& colours = cardColours);
void Odak_Normal(QWidget* control, const FocusColours& colours = cardColours);
// Selects the whole text.
void Alan_Sec(QLineEdit* field);

// "Tag" (left;up;right;down targets) and "Index" (element of a control array) are dynamic properties.
inline constexpr const char* tagProperty = "Tag";
inline constexpr const char* indexProperty = "Index";

// Moves the focus from `control` by its Tag. `key` is a Windows key code (37 to 40, 13); `inText` keeps
// left and right inside a text field until its ends. True when the focus moved.
bool Alan_Gecis_Tus(QWidget& form, int key, QWidget* control, bool inText);
// The Windows code of a Qt key that the map knows; 0 for any other.
int windowsKey(int qtKey);

// Enter presses the button as the blank does.
void pressByEnter(QAbstractButton* button);

// Gives the fields of one form their colours, selection and keys. Owned by the form.
class FieldKeys : public QObject {
  Q_OBJECT
 public:
  // With `enterMoves` Enter acts like down in text fields; without it Enter is left to the form.
  FieldKeys(QWidget* form, const FocusColours& colours, bool enterMoves);
  void watch(QLineEdit* field, const char* tag);
  void watch(QAbstractButton* button, const char* tag);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool key(QWidget* control, int qtKey);
  QWidget* form_;
  FocusColours colours_;
  bool enterMoves_;
  const QObject* clicked_ = nullptr;  // the field that a click has just given the focus
};

}  // namespace ui
