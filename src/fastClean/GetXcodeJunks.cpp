#include "GetXcodeJunks.h"

#include "CommUti.h"

namespace brisko {

std::vector<std::string> GetXcodeJunks::getXcodeJunks() {
  std::vector<std::string> paths;
  CommUti::getXcodePaths(paths);
  return paths;
}

}  // namespace brisko
