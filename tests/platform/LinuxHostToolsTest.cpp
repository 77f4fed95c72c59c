#include "HostTools.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

#include <sys/stat.h>

namespace brisko::test {
namespace {

class HostToolsTest : public ::testing::Test {
 protected:
  void SetUp() override { ::setenv("BRISKO_TOOLS", folder_.path().c_str(), 1); }
  void TearDown() override { ::unsetenv("BRISKO_TOOLS"); }

  void makeTool(const std::string& name, const std::string& script) {
    const std::string path = folder_.path() + "/" + name;
    std::ofstream(path) << "#!/bin/sh\n" << script << "\n";
    ::chmod(path.c_str(), 0755);
  }

  TemporaryFolder folder_;
};

TEST_F(HostToolsTest, APrivateToolIsFoundByNameByTheShellAndByAnAbsolutePathTheHostLacks) {
  makeTool("brisko-made-tool", "printf '%s|' \"$@\"");
  EXPECT_EQ(HostTools::run({"brisko-made-tool", "a b", ""}).output, "a b||");
  EXPECT_EQ(HostTools::shell("test \"$(brisko-made-tool x)\" = 'x|'"), 0);
  EXPECT_EQ(HostTools::path("/usr/sbin/brisko-made-tool"), folder_.path() + "/brisko-made-tool");
  EXPECT_EQ(HostTools::path("/bin/sh"), "/bin/sh");
}

TEST_F(HostToolsTest, AQuotedWordReachesTheToolLiterally) {
  makeTool("brisko-made-tool", "printf '%s' \"$1\" > \"$2\"");
  const std::string hostile = "a'b $(exit 3) `exit 4` \"q\" \\ ;\n*";
  const std::string written = folder_.path() + "/written";
  EXPECT_EQ(HostTools::shell("brisko-made-tool " + HostTools::quoted(hostile) + " " +
                             HostTools::quoted(written)),
            0);
  std::ifstream file(written);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), hostile);
}

TEST_F(HostToolsTest, BothStreamsAreCollectedUpToTheLimitAndTheEndIsTold) {
  makeTool("brisko-made-tool", "head -c 300000 /dev/zero; head -c 300000 /dev/zero >&2; exit 7");
  const HostTools::Outcome outcome = HostTools::run({"brisko-made-tool"}, 1000);
  EXPECT_EQ(outcome.status, 7);
  EXPECT_EQ(outcome.output.size(), 1000u);
  EXPECT_EQ(outcome.errors.size(), 1000u);
  EXPECT_EQ(HostTools::run({"sh", "-c", "kill -9 $$"}).status, 128 + 9);
  EXPECT_EQ(HostTools::run({"brisko-no-such-tool"}).status, -1);
}

TEST_F(HostToolsTest, CancellingEndsAToolThatDoesNotListen) {
  makeTool("brisko-made-tool", "trap '' TERM; sleep 60 & wait; sleep 60");
  const auto before = std::chrono::steady_clock::now();
  const HostTools::Outcome outcome =
      HostTools::run({"brisko-made-tool"}, 1000, [] { return true; });
  EXPECT_EQ(outcome.status, 128 + 9);
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(30));
}

}  // namespace
}  // namespace brisko::test
