// Drive, folder tree and files of the chosen folder, side by side.
#pragma once

#include <QWidget>
#include <filesystem>

class QComboBox;
class QFileSystemModel;
class QLineEdit;
class QListWidget;
class QTreeView;

namespace maintenance_ui {

class KlasorSecici : public QWidget {
  Q_OBJECT
 public:
  // Names of the three controls.
  struct Adlar {
    const char *surucu, *klasor, *dosya;
  };
  explicit KlasorSecici(const Adlar& adlar, QWidget* parent = nullptr);

  std::filesystem::path klasor() const;
  // A folder that is not there leaves everything as it stands; false then.
  bool git(const std::filesystem::path& klasor);
  void yenile();  // the files of the folder
  QTreeView* agac() { return agac_; }

 signals:
  void degisti();
  void menuIstendi(const QPoint& ekranda);

 private:
  void surucuDegisti();

  QFileSystemModel* model_;
  QComboBox* surucu_;
  QTreeView* agac_;
  QLineEdit* yol_;
  QListWidget* dosyalar_;
};

}  // namespace maintenance_ui
