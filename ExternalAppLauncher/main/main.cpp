#include "ExternalAppLauncher/Launcher.h"
#include "ExternalAppLauncher/System.h"

int main(int count, char** words) {
  try {
    quarn::Launcher::open({words + (count > 0 ? 1 : 0), words + count});
    return 0;
  } catch (const quarn::Launcher::Complaint& complaint) {
    quarn::System::tell(complaint.sentence);
    return 1;
  }
}
