#include "QuarnCLI/move/TakenTurn.h"

#include "QuarnCLI/Console.h"

namespace quarn {
namespace {

void sayOnce() {
  static bool wasSaid = false;
  if (!wasSaid) Console::writeError("Waiting for another run of quarn to finish.\n");
  wasSaid = true;
}

}  // namespace

TakenTurn::TakenTurn(Platform& platform)
    : turn_(platform, [this] {
        hadToWait_ = true;
        sayOnce();
      }) {}

}  // namespace quarn
