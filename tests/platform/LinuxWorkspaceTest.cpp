#include "Host.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace brisko::test {
namespace {

// Programs of the test's own stand in for the desktop's and write down what they were given.
class RevealTest : public testing::Test {
 protected:
  void program(const std::string& name, int status) {
    const std::string path = folder.file(
        name, "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + (folder / (name + ".part")) + "'\nmv '" +
                  (folder / (name + ".part")) + "' '" + (folder / (name + ".given")) + "'\nexit " +
                  std::to_string(status) + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }
  std::string given(const std::string& name) {
    const std::string path = folder / (name + ".given");
    for (int i = 0; i < 500 && !exists(path); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return exists(path) ? contentOf(path) : "not started";
  }

  TestHost host;
  TemporaryFolder folder;
  Environment searched_{"PATH", (folder.path() + ":/bin:/usr/bin").c_str()};
};

TEST_F(RevealTest, FileManagerIsAskedToSelectThePathWhateverItsBytes) {
  program("dbus-send", 0);
  ASSERT_TRUE(Host::current().workspace->reveal("/a b/$(id),\xff'\n.txt"));
  const std::string call = given("dbus-send");
  EXPECT_NE(call.find("\norg.freedesktop.FileManager1.ShowItems\n"
                      "array:string:file:///a%20b/%24%28id%29%2C%FF%27%0A.txt\nstring:\n"),
            std::string::npos)
      << call;
}

TEST_F(RevealTest, WithoutAFileManagerTheFolderIsOpened) {
  program("dbus-send", 1);
  program("xdg-open", 0);
  ASSERT_TRUE(Host::current().workspace->reveal("/some folder/file"));
  EXPECT_EQ(given("xdg-open"), "file:///some%20folder\n");
}

TEST_F(RevealTest, RelativePathIsRefused) {
  program("dbus-send", 0);
  EXPECT_FALSE(Host::current().workspace->reveal("--help"));
}

}  // namespace
}  // namespace brisko::test
