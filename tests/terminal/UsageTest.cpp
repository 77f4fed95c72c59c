#include "MadeImage.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisko::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(TerminalUsage, wrongUsageIsOneLineAndStatusTwo) {
  TemporaryFolder folder;
  const std::string file = folder.file("file");
  const std::string loop = folder.link("loop", folder / "loop");
  const MadeImage image = MadeImage::build(folder.folder("image"));
  const std::string& root = image.root;
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"frobnicate"}, "\"frobnicate\" is not understood"},
      {{"junk", "--frobnicate"}, "\"--frobnicate\" is not understood"},
      {{"junk", "--root"}, "--root"},
      {{"junk", "--root", folder / "missing"}, "No such file or directory"},
      {{"junk", "--root", file}, "not a folder"},
      {{"junk", "--root", loop}, "Too many levels"},
      {{"junk", "--root", root, "6"}, "no category \"6\""},
      {{"junk", "--root", root, "--clean", "--yes", "Trash"}, "no category \"Trash\""},
      {{"junk", "--root", root, "-1"}, "-1"},
      {{"junk", "--root", root, "a\nb\033[31m"}, "a\\nb\\x1B[31m"},
      {{"junk", "--root", root, "--clean"}, "--yes"},
      {{"junk", "--root", root, "--clean", "--json", "4"}, "--yes"},
  };
  for (const auto& [arguments, text] : cases) {
    const Outcome outcome = Program().run(arguments);
    EXPECT_EQ(outcome.status, 2) << text;
    EXPECT_EQ(outcome.output, "") << text;
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
    EXPECT_THAT(outcome.errors, StartsWith("brisko: "));
    EXPECT_THAT(outcome.errors, HasSubstr(text));
  }
  EXPECT_TRUE(exists(root + "/Library/Caches/com.example.fonts")) << "nothing was touched";
}

TEST(TerminalUsage, helpListsWhatThereIs) {
  const Outcome help = Program().run({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* option : {"--json", "--yes", "--dry-run", "--root", "--verbose", "--version"}) {
    EXPECT_THAT(help.output, HasSubstr(option));
  }
  EXPECT_THAT(help.output, HasSubstr("junk"));
  const Outcome junk = Program().run({"junk", "--help"});
  EXPECT_EQ(junk.status, 0);
  EXPECT_THAT(junk.output, HasSubstr("--clean"));
  const Outcome version = Program().run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output, "brisko " BRISKO_VERSION "\n");
}

TEST(TerminalUsage, withoutCommandAndDisplayTheJunkIsReportedAndThatIsSaid) {
  TemporaryFolder folder;
  MadeImage::build(folder.path());
  const Outcome outcome = Program().run({"--root", folder.path()});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.errors, HasSubstr("brisko junk"));
  EXPECT_THAT(outcome.output, HasSubstr("System Junk"));
  const Outcome byVariable = Program().variable("BRISKO_ROOT", folder.path()).run({});
  EXPECT_EQ(byVariable.output, outcome.output);
  const Outcome staleDisplay =
      Program().variable("DISPLAY", ":4711").run({"--root", folder.path()});
  EXPECT_EQ(staleDisplay.output, outcome.output);
  // The folder is made absolute and free of links.
  TemporaryFolder elsewhere;
  const std::string link = elsewhere.link("link", folder.path());
  const Outcome byLink = Program().run({"junk", "--root", link + "/./"});
  EXPECT_EQ(byLink.output, outcome.output);
}

TEST(TerminalUsage, verboseWritesTheLogToStandardError) {
  TemporaryFolder folder;
  const MadeImage image = MadeImage::build(folder.path());
  const std::vector<std::string> quiet = {"junk", "--root", folder.path(), "--json"};
  EXPECT_EQ(Program().run(quiet).errors, "");
  std::vector<std::string> loud = quiet;
  loud.push_back("--verbose");
  const Outcome outcome = Program().run(loud);
  EXPECT_THAT(outcome.errors, HasSubstr("-------" + image.home + "/Library/Containers/"));
  EXPECT_EQ(outcome.json()["categories"].size(), 6U);
}

TEST(TerminalUsage, outputThatCannotBeWrittenIsNoSuccess) {
  TemporaryFolder folder;
  MadeImage::build(folder.path());
  const std::string command =
      std::string(BRISKO_PROGRAM) + " junk --root " + folder.path() + " >/dev/full 2>/dev/null";
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
}

}  // namespace
}  // namespace brisko::test
