#include "EraserOptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <getopt.h>

namespace brisko::srm {
namespace {

constexpr const char* kHelp =
    "usage: srm [-fsvrzEm] [--names N | --all-names] PATH...\n"
    "\n"
    "Overwrites files in place, then removes them. Without -s, -E or -m: 35 passes.\n"
    "\n"
    "  -s            one random pass\n"
    "  -E            three passes: random, random, zeroes\n"
    "  -m            seven passes: character, complement, random, twice over\n"
    "  -z            a pass of zeroes after the others\n"
    "  -r            folders with all they hold\n"
    "  -f            a missing path is no failure; write protection is lifted\n"
    "  -v            say what is done\n"
    "  --names N     erase a file also when it has up to N names (hard links)\n"
    "  --all-names   erase a file however many names it has\n"
    "\n"
    "Exit status: 0 all erased, 1 something was not, 2 wrong usage, 130 interrupted.\n";

enum : int { kNames = 256, kAllNames, kHelpWanted };

const option kLongOptions[] = {{"names", required_argument, nullptr, kNames},
                               {"all-names", no_argument, nullptr, kAllNames},
                               {"help", no_argument, nullptr, kHelpWanted},
                               {nullptr, 0, nullptr, 0}};

bool readNumber(const char* text, std::uint64_t& number) {
  char* end = nullptr;
  number = std::strtoull(text, &end, 10);
  return *text >= '1' && *text <= '9' && *end == '\0';
}

bool take(int letter, EraserOptions& options, std::string& problem) {
  switch (letter) {
    case 'f':
      options.force = true;
      return true;
    case 's':
      options.scheme = Scheme::simple;
      return true;
    case 'E':
      options.scheme = Scheme::doe;
      return true;
    case 'm':
      options.scheme = Scheme::dod;
      return true;
    case 'v':
      options.verbose = true;
      return true;
    case 'r':
      options.recursive = true;
      return true;
    case 'z':
      options.zero = true;
      return true;
    case kNames:
      if (readNumber(optarg, options.names)) return true;
      problem = "--names takes a number above 0";
      return false;
    case kAllNames:
      options.names = std::numeric_limits<std::uint64_t>::max();
      return true;
    case kHelpWanted:
      std::fputs(kHelp, stdout);
      return false;
    default:
      problem = "unknown option; --help lists them";
      return false;
  }
}

}  // namespace

bool readOptions(int argc, char** argv, EraserOptions& options, std::string& problem) {
  opterr = 0;
  for (int letter; (letter = ::getopt_long(argc, argv, "fsvrzEm", kLongOptions, nullptr)) != -1;) {
    if (!take(letter, options, problem)) return false;
  }
  options.paths.assign(argv + optind, argv + argc);
  if (options.paths.empty()) {
    problem = "no path was given";
  } else if (std::find(options.paths.begin(), options.paths.end(), "") != options.paths.end()) {
    problem = "a path is empty";  // of a script whose variable is not set, say
  }
  return problem.empty();
}

}  // namespace brisko::srm
