#include "Terminal.h"
#include "Window.h"

int main(int argc, char** argv) {
  if (argc > 1 || !brisko::displayIsAvailable()) return brisko::runTerminal(argc, argv);
  return brisko::runWindow(argc, argv);
}
