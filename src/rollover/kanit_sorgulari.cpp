#include "rollover/kanit_sorgulari.h"
namespace rollover {
Kanit kanitHazirla(Baglam&) {
  return {};
}
}  // namespace rollover
