// The screens of this room on a server with two companies; the console only counts.
#pragma once

#include "rights/ortam.h"
#include "ui/console_port.h"
#include "ui/screen.h"

namespace rights::test {

struct Konsol : ui::ConsolePort {
  void Durum_Yaz(const QString&) override {}
  void Alan_Listesi_Doldur() override { ++dolduruldu; }
  int dolduruldu = 0;
};

class EkranTest : public OrtamTest {
 protected:
  Konsol konsol;
};

}  // namespace rights::test
