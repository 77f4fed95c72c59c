// srm: overwrites files in place and removes them. Started by the File Shredder, and of use alone.

#include "EraseWalk.h"
#include "EraserOptions.h"
#include "EraserRun.h"

#include <cstdio>

using namespace brisko::srm;

int main(int argc, char** argv) {
  EraserOptions options;
  std::string problem;
  if (!readOptions(argc, argv, options, problem)) {
    if (problem.empty()) return 0;
    std::fprintf(stderr, "srm: %s\n", problem.c_str());
    return 2;
  }
  EraserRun::watchSignals();
  EraserRun run(options);
  std::size_t tried = 0;
  for (; tried < options.paths.size() && !EraserRun::isStopped(); ++tried)
    EraseWalk(run, options.paths[tried]).erase();
  if (EraserRun::isStopped()) {
    for (; tried < options.paths.size(); ++tried)
      run.fail(options.paths[tried], "stopped: not touched");
    std::fprintf(stderr, "srm: interrupted: %llu erased\n",
                 static_cast<unsigned long long>(run.erased()));
    return 130;
  }
  return run.failed() == 0 ? 0 : 1;
}
