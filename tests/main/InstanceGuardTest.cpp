#include "Host.h"
#include "InstanceGuard.h"
#include "Machine.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "WindowFixture.h"

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brisko;
using namespace brisko::test;

namespace {

/// Programs of this user find each other in a folder of the test's own.
class Instances : public testing::Test {
 protected:
  Instances() : runtime("XDG_RUNTIME_DIR", folder.path().c_str()) {}

  TemporaryFolder folder;
  TestHost host;
  Environment runtime;
};

TEST_F(Instances, SecondOneRaisesTheFirst) {
  InstanceGuard first("");
  int raised = 0;
  QObject::connect(&first, &InstanceGuard::raiseRequested, [&raised] { ++raised; });
  ASSERT_EQ(first.claim(), InstanceGuard::Role::first);
  struct stat status {};
  ASSERT_EQ(::stat(first.socketPath().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0077, 0U) << "others could connect";

  std::atomic<int> role{-1};
  std::thread second([&role] { role = static_cast<int>(InstanceGuard("").claim()); });
  EXPECT_TRUE(waitUntil([&role] { return role >= 0; }));
  second.join();
  EXPECT_EQ(role, static_cast<int>(InstanceGuard::Role::second));
  EXPECT_EQ(raised, 1);

  EXPECT_EQ(InstanceGuard("/mnt/backup").claim(), InstanceGuard::Role::first)
      << "another root is another program";
}

TEST_F(Instances, SocketLeftBehindByACrashIsTakenOver) {
  const std::string path = InstanceGuard("").socketPath();
  const pid_t child = ::fork();
  if (child == 0) {
    // A process that dies holding lock and socket.
    const int lock = ::open((path + ".lock").c_str(), O_RDWR | O_CREAT, 0600);
    ::mknod(path.c_str(), S_IFSOCK | 0600, 0);
    ::raise(SIGKILL);
    ::_exit(lock);
  }
  ::waitpid(child, nullptr, 0);
  ASSERT_TRUE(exists(path));
  EXPECT_EQ(InstanceGuard("").claim(), InstanceGuard::Role::first);
}

TEST_F(Instances, FolderThatOthersCanWriteToIsNotUsed) {
  ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
  EXPECT_FALSE(InstanceGuard("").socketPath().starts_with(folder.path()));
  ASSERT_EQ(::chmod(folder.path().c_str(), 0700), 0);
  EXPECT_TRUE(InstanceGuard("").socketPath().starts_with(folder.path()));
}

/// The program itself, started and ended by the test.
class Program {
 public:
  explicit Program(const std::string& root) {
    const std::string program = test::buildTree() + "/bin/brisko";
    std::string option = "--root=" + root;
    char* arguments[] = {const_cast<char*>(program.c_str()), option.data(), nullptr};
    if (::posix_spawn(&process_, program.c_str(), nullptr, nullptr, arguments, environ) != 0) {
      process_ = -1;
    }
  }
  ~Program() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  bool hasStarted() const { return process_ > 0; }

  /// The exit status when it ended within `milliseconds`, else -1.
  int exitStatus(int milliseconds) {
    for (int waited = 0; waited < milliseconds; waited += 20) {
      int status = 0;
      if (::waitpid(process_, &status, WNOHANG) == process_) {
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
      }
      ::usleep(20'000);
    }
    return -1;
  }

 private:
  pid_t process_ = -1;
};

/// Lets the program find that it has introduced itself, which would open the user's browser.
void markIntroduced(const TemporaryFolder& root) {
  const char* user = ::getenv("USER");
  root.file(std::string("Users/") + (user != nullptr ? user : "") +
                "/.config/brisko/Preferences/com.brisko.Brisko.plist",
            "<plist><dict><key>AFristLoad</key><string>YES</string></dict></plist>");
}

TEST_F(Instances, ProgramEndsWhenAnotherOneShowsTheSameRoot) {
  const Environment platform("QT_QPA_PLATFORM", "offscreen");
  const TemporaryFolder root;
  const TemporaryFolder otherRoot;
  for (const TemporaryFolder* each : {&root, &otherRoot})
    markIntroduced(*each);
  Program first(root.path());
  ASSERT_TRUE(first.hasStarted());
  ASSERT_TRUE(waitUntil([&] { return exists(InstanceGuard(root.path()).socketPath()); }));
  Program second(root.path());
  EXPECT_EQ(second.exitStatus(8000), 0);
  Program other(otherRoot.path());
  EXPECT_EQ(other.exitStatus(700), -1) << "it runs beside the first";
  EXPECT_EQ(first.exitStatus(100), -1);
}

}  // namespace
