// The removal helper as its attackers see it: the real program, fed through its socket.

#include "FileDescriptor.h"
#include "HelperProtocol.h"
#include "LinuxAuthorization.h"
#include "Machine.h"
#include "RootLauncher.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using helper::Message;
using helper::Type;
using testing::HasSubstr;

// A helper that runs for nobody, and our end of its socket.
class Conversation {
 public:
  Conversation() {
    int pair[2];
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair), 0);
    socket_.reset(pair[0]);
    setenv("PKEXEC_UID", std::to_string(kNobody).c_str(), 1);
    process_ = launch({builtHelper()}, pair[1]);
    unsetenv("PKEXEC_UID");
    close(pair[1]);
    const auto hello = helper::receive(socket_.get());
    EXPECT_TRUE(hello && hello->type == Type::hello);
    if (hello) token = hello->token;
  }
  ~Conversation() {
    socket_.reset();
    if (process_ > 0) waitpid(process_, nullptr, 0);
  }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  std::optional<Message> ask(const std::string& path, std::optional<FileIdentity> shown = {}) {
    Message request;
    request.type = Type::remove;
    request.token = token;
    request.path = path;
    request.shown = shown;
    if (!helper::send(socket_.get(), request)) return std::nullopt;
    return helper::receive(socket_.get());
  }
  std::string denial(const std::string& path, std::optional<FileIdentity> shown = {}) {
    const auto reply = ask(path, shown);
    if (!reply) return "no answer";
    return reply->type == Type::denied ? reply->output : "";
  }
  bool sendRaw(const std::string& bytes) {
    return ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
  }
  /// Whether it ends, without a further word, when nothing more is sent.
  bool ends() {
    shutdown(socket_.get(), SHUT_WR);
    char byte;
    const bool silent = ::read(socket_.get(), &byte, 1) <= 0;
    return waitpid(std::exchange(process_, -1), &status_, 0) > 0 && silent && WIFEXITED(status_);
  }
  int socket() const { return socket_.get(); }
  void leave() { socket_.reset(); }
  pid_t process() const { return process_; }

  helper::Token token{};

 private:
  FileDescriptor socket_;
  pid_t process_ = -1;
  int status_ = 0;
};

// Goes with every request for what must not go: should the refusal that is tested fail, this one
// still holds, and nothing of the machine is lost but the test.
const FileIdentity kNoItem{1, 1, FileKind::unknown, 0, 0, 0};

void expectRefused(const std::string& reason, const std::string& path) {
  EXPECT_NE(reason, "") << path;
  EXPECT_NE(reason, "no answer") << path;
  EXPECT_THAT(reason, testing::Not(HasSubstr("not the item"))) << path;
}

class RemovalHelperTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!isRoot()) GTEST_SKIP() << "because the helper works as root only";
  }
  TemporaryFolder folder;
};

TEST_F(RemovalHelperTest, RemovesWhatItIsAskedTo) {
  Conversation conversation;
  folder.file("tree/a/b", std::string(100000, 'x'));
  const auto reply = conversation.ask(folder / "tree", FileIdentity::at(folder / "tree"));
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->type, Type::done);
  EXPECT_EQ(reply->output, "");
  EXPECT_GE(reply->freedBytes, 100000U);
  EXPECT_FALSE(exists(folder / "tree"));

  for (const char* name : {"-rf", "line\nbreak", "$(touch x)", "\xff\xfe", "*", "--help"}) {
    folder.file(std::string("names/") + name);
    folder.file("names/other");
    EXPECT_EQ(conversation.denial(folder / (std::string("names/") + name)), "");
    EXPECT_FALSE(exists(folder / (std::string("names/") + name)));
    EXPECT_TRUE(exists(folder / "names/other"));
  }
}

TEST_F(RemovalHelperTest, RefusesEveryPathThatIsNotPlain) {
  Conversation conversation;
  folder.file("tree/file");
  folder.link("link", folder / "tree");
  const std::string tree = folder / "tree";
  const std::string paths[] = {"",
                               ".",
                               "tree",
                               "/",
                               "//",
                               tree + "/",
                               tree + "//file",
                               tree + "/./file",
                               tree + "/../tree/file",
                               tree + "/..",
                               "/" + tree,
                               tree + std::string("/file\0x", 7),
                               "~/x" + tree,
                               folder / "link/file",
                               "/proc/self/root" + tree,
                               "/proc/self/cwd/tmp",
                               "/dev/fd/0"};
  for (const std::string& path : paths)
    expectRefused(conversation.denial(path, kNoItem), path);
  EXPECT_TRUE(exists(tree + "/file"));
  EXPECT_EQ(conversation.denial(folder / "absent"), "");
  EXPECT_NE(conversation.denial(folder / "absent/below"), "");
}

TEST_F(RemovalHelperTest, RefusesProtectedPlacesWhateverTheEnvironmentSays) {
  setenv("BRISKO_RESOURCES", folder.path().c_str(), 1);
  setenv("HOME", "/nowhere", 1);
  Conversation conversation;
  unsetenv("BRISKO_RESOURCES");
  setenv("HOME", "/root", 1);
  for (const char* path : {"/etc", "/etc/passwd", "/usr", "/home", "/root", "/root/.ssh/x",
                           "/bin/rm", "/boot/x", "/home/anna", "/home/anna/.ssh/id",
                           "/var/lib/dpkg/status", "/proc/1", "/tmp", "/var/log/syslog"}) {
    expectRefused(conversation.denial(path, kNoItem), path);
  }
  expectRefused(conversation.denial(builtHelper(), kNoItem), builtHelper());
  EXPECT_TRUE(exists("/etc/passwd"));
  EXPECT_TRUE(exists(builtHelper()));
}

TEST_F(RemovalHelperTest, RefusesAnotherItemThanTheOneMeant) {
  Conversation conversation;
  const std::string file = folder.file("file");
  const FileIdentity right = *FileIdentity::at(file);
  for (FileIdentity wrong : {right, right, right}) {
    static int which = 0;
    if (which == 0) ++wrong.device;
    if (which == 1) ++wrong.inode;
    if (which++ == 2) wrong.kind = FileKind::directory;
    EXPECT_THAT(conversation.denial(file, wrong), HasSubstr("not the item"));
  }
  EXPECT_NE(conversation.denial(folder / "absent", right), "");
  EXPECT_EQ(conversation.denial(file, right), "");
  EXPECT_FALSE(exists(file));
}

TEST_F(RemovalHelperTest, RefusesMountsAndWhatHoldsThem) {
  folder.folder("tree/deep/mount");
  folder.file("victim/file", "stays");
  const int result = inMountNamespace([&] {
    if (mount((folder / "victim").c_str(), (folder / "tree/deep/mount").c_str(), nullptr, MS_BIND,
              nullptr) != 0) {
      return 1;
    }
    Conversation conversation;
    return conversation.denial(folder / "tree").find("mounted") != std::string::npos &&
                   conversation.denial(folder / "tree/deep/mount").find("mounted") !=
                       std::string::npos
               ? 0
               : 2;
  });
  if (result == -2) GTEST_SKIP() << "because mount name spaces need root";
  EXPECT_EQ(result, 0);
  EXPECT_EQ(contentOf(folder / "victim/file"), "stays");
}

TEST_F(RemovalHelperTest, EndsAtAnythingThatIsNoRequest) {
  const std::string file = folder.file("file");
  const auto request = [&](const Conversation& conversation) {
    Message message;
    message.type = Type::remove;
    message.token = conversation.token;
    message.path = file;
    return message;
  };
  const std::function<std::string(Conversation&)> attacks[] = {
      [&](Conversation& c) {
        Message m = request(c);
        m.token[31] ^= std::byte{1};
        return helper::encode(m);
      },
      [&](Conversation& c) {
        Message m = request(c);
        m.token = {};
        return helper::encode(m);
      },
      [&](Conversation& c) {
        Message m;
        m.type = Type::hello;
        m.token = c.token;
        return helper::encode(m);
      },
      [](Conversation&) { return std::string("\0\0\0\0", 4); },
      [](Conversation&) { return std::string("\xff\xff\xff\xff", 4) + std::string(100, 'x'); },
      [](Conversation&) { return std::string("\x01\0\0\0X", 5); },
      [](Conversation&) { return std::string("\x05\0\0\0Rabcd", 9); },
      [](Conversation&) { return std::string("rm -rf /\n"); },
      [](Conversation&) { return std::string("\x10\0", 2); },
      [&](Conversation& c) {
        const std::string bytes = helper::encode(request(c));
        return bytes.substr(0, bytes.size() - 3);
      },
      [](Conversation&) { return std::string(); },
  };
  for (const auto& attack : attacks) {
    Conversation conversation;
    EXPECT_TRUE(conversation.sendRaw(attack(conversation)));
    EXPECT_TRUE(conversation.ends()) << &attack - attacks;
    EXPECT_TRUE(exists(file));
  }
  Conversation conversation;
  Message tooLong = request(conversation);
  tooLong.path.assign(helper::kMaximumMessage, 'x');
  EXPECT_EQ(helper::encode(tooLong), "");
  expectRefused(conversation.denial("/tmp/" + std::string(60000, 'x'), kNoItem), "too long");
}

TEST_F(RemovalHelperTest, WorksForNobodyButAClientOnASocket) {
  const auto statusOf = [](std::vector<std::string> command) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    const pid_t process = launch(command, nothing);
    close(nothing);
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  };
  EXPECT_EQ(statusOf({builtHelper()}), 1);
  setenv("PKEXEC_UID", "0x10", 1);
  EXPECT_EQ(statusOf({builtHelper()}), 1);
  unsetenv("PKEXEC_UID");
  constexpr int kOutOfReach = 4;
  const int asNobody = asUser(kNobody, [&] {
    if (access(builtHelper().c_str(), X_OK) != 0) return kOutOfReach;
    int pair[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) return 2;
    const pid_t process = launch({builtHelper()}, pair[1]);
    close(pair[1]);
    const bool spoke = helper::receive(pair[0]).has_value();
    int status = 0;
    waitpid(process, &status, 0);
    return spoke ? 3 : WEXITSTATUS(status);
  });
  if (asNobody == kOutOfReach) GTEST_SKIP() << "because others may not enter the build folder";
  EXPECT_EQ(asNobody, 1);
}

TEST_F(RemovalHelperTest, EndsWithItsClientAlsoWhileRmRuns) {
  // Enough that rm is busy for a while.
  constexpr int kFiles = 25000;
  const int wide = open(folder.folder("wide").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (int i = 0; i < kFiles; ++i) {
    close(openat(wide, std::to_string(i).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
  }
  Conversation conversation;
  Message request;
  request.type = Type::remove;
  request.token = conversation.token;
  request.path = folder / "wide";
  ASSERT_TRUE(helper::send(conversation.socket(), request));
  struct stat status;
  do {
    usleep(500);
    fstat(wide, &status);
  } while (status.st_nlink > 0 && faccessat(wide, "0", F_OK, 0) == 0 &&
           faccessat(wide, "24999", F_OK, 0) == 0);
  conversation.leave();
  int ended = 0;
  waitpid(conversation.process(), &ended, 0);
  EXPECT_TRUE(WIFEXITED(ended));
  const auto left = [&] {
    return exists(folder / "wide") ? std::distance(fs::directory_iterator(folder / "wide"), {}) : 0;
  };
  const auto before = left();
  usleep(200'000);
  EXPECT_EQ(left(), before) << "rm went on without anybody to ask for it";
  close(wide);
}

TEST_F(RemovalHelperTest, InAUsersFolderItWorksAsThatUserFirst) {
  // What rm does as nobody cannot touch root's file behind a link that is swapped in; here: that
  // nobody's rights were enough, the folder's permissions for root being of no account.
  ASSERT_EQ(chown(folder.folder("theirs").c_str(), kNobody, kNobody), 0);
  folder.file("theirs/tree/file");
  ASSERT_EQ(chown((folder / "theirs/tree").c_str(), kNobody, kNobody), 0);
  chmod(folder.path().c_str(), 0755);
  Conversation conversation;
  EXPECT_EQ(conversation.denial(folder / "theirs/tree"), "");
  EXPECT_FALSE(exists(folder / "theirs/tree"));

  folder.file("theirs/root's/file");
  EXPECT_EQ(conversation.denial(folder / "theirs/root's"), "");
  EXPECT_FALSE(exists(folder / "theirs/root's"));
}

TEST_F(RemovalHelperTest, ALinkIsRemovedItself) {
  folder.file("target/file", "stays");
  Conversation conversation;
  EXPECT_EQ(conversation.denial(folder.link("link", "target")), "");
  EXPECT_FALSE(exists(folder / "link"));
  EXPECT_EQ(contentOf(folder / "target/file"), "stays");
}

TEST(HelperProtocolTest, WhatIsDecodedIsWhatWasEncodedAndNothingElseIs) {
  Message message;
  message.type = Type::remove;
  for (std::size_t i = 0; i < message.token.size(); ++i)
    message.token[i] = std::byte(i);
  message.shown = FileIdentity{1ULL << 63, 7, FileKind::directory, 0, 0, 0};
  message.path = std::string("/a\0\n\xff", 5);
  const std::string bytes = helper::encode(message);
  const auto read = helper::decode(std::string_view(bytes).substr(4));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->path, message.path);
  EXPECT_EQ(read->shown, message.shown);
  EXPECT_TRUE(helper::isSame(read->token, message.token));
  for (std::size_t cut = 5; cut < 4 + 1 + 32 + 18; ++cut) {
    EXPECT_FALSE(helper::decode(std::string_view(bytes).substr(4, cut - 4))) << cut;
  }
}

}  // namespace
}  // namespace brisko::test
