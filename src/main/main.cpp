#include "Terminal.h"
#include "Window.h"

int main(int argc, char** argv) {
  const bool hasDisplay = brisko::displayIsAvailable();
  return brisko::runTerminal(argc, argv, hasDisplay ? brisko::runWindow : brisko::WindowEntry());
}
