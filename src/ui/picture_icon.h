// Icons kept as recorded painter commands (NAME.pic, made of src/ui/icons/NAME.svg when the program is
// built). As a plugin of the toolkit, so that style sheets show them too.
#pragma once

#include <QIconEnginePlugin>

namespace ui {

class PictureIconPlugin : public QIconEnginePlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QIconEngineFactoryInterface_iid FILE "picture_icon.json")

 public:
  QIconEngine* create(const QString& file) override;
};

}  // namespace ui
