#include "Terminal.h"
#include "WindowLaunch.h"

int main(int argc, char** argv) {
  const bool hasDisplay = brisko::displayIsAvailable();
  return brisko::runTerminal(argc, argv, hasDisplay ? brisko::launchWindow : brisko::WindowEntry());
}
