// Reads what the panel tells of a company in the background: the tree never waits for it.
#pragma once

#include <QObject>
#include <QTimer>
#include <memory>

#include "company/upgrade/eksik.h"
#include "session/firma_bilgisi.h"

namespace session_ui {

struct OkunanBilgi : session::FirmaBilgisi {
  std::optional<company::upgrade::SemaEksigi> eksik;
};

class BilgiOkuyucu : public QObject {
  Q_OBJECT
 public:
  explicit BilgiOkuyucu(QObject* parent = nullptr);
  ~BilgiOkuyucu() override;
  // The last company asked for is the one that is read, after a pause in which others may be asked for.
  void iste(const session::OturumDegerleri& oturum, const session::Dugum& firma);
  // What is on its way is not told any more. A server in this process has closed the connection then, so that
  // it is in nobody's way.
  void birak();

 signals:
  void okundu(qint64 id, const OkunanBilgi& bilgi);

 private:
  struct Ortak;
  void basla();
  session::OturumDegerleri oturum_;
  session::Dugum firma_;
  QTimer bekleme_;
  std::shared_ptr<Ortak> ortak_;
};

}  // namespace session_ui
