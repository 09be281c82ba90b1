// Sleeps as many seconds as its argument says. A Mac may refuse to run a copy of its own /bin/sleep, so the
// tests copy this one into the bundles that they let run.
#include <cstdlib>
#include <unistd.h>

int main(int count, char** words) {
  return count > 1 ? static_cast<int>(::sleep(static_cast<unsigned>(std::atoi(words[1])))) : 0;
}
