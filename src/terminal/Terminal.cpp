#include "Terminal.h"

namespace brisko {

int runTerminal(int, char**) { return 2; }

}  // namespace brisko
