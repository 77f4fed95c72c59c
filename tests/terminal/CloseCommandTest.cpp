#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

using testing::HasSubstr;

/// A program of the user's own with a desktop entry, and a process that runs it.
class RunningApplication {
 public:
  explicit RunningApplication(bool refuses) {
    program_ = home_ / "made-up-editor";
    std::filesystem::copy_file("/bin/sleep", program_);
    home_.file(".local/share/applications/made-up.desktop",
               "[Desktop Entry]\nType=Application\nName=Made-up Editor\nExec=" + program_ + "\n");
    int started[2];
    EXPECT_EQ(::pipe2(started, O_CLOEXEC), 0);
    process_ = ::fork();
    if (process_ == 0) {
      if (refuses) ::signal(SIGTERM, SIG_IGN);
      ::execl(program_.c_str(), program_.c_str(), "60", nullptr);
      ::_exit(127);
    }
    ::close(started[1]);
    char none;
    EXPECT_EQ(::read(started[0], &none, 1), 0) << "it ends when the program runs";
    ::close(started[0]);
  }
  ~RunningApplication() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }

  std::string number() const { return std::to_string(process_); }
  Outcome run(const std::vector<std::string>& arguments) const {
    return Program().variable("HOME", home_.path()).run(arguments);
  }

 private:
  TemporaryFolder home_;
  std::string program_;
  pid_t process_ = -1;
};

TEST(CloseCommand, ClosesWhatIsListedAndSaysSo) {
  const RunningApplication application(false);
  const Outcome listed = application.run({"processes", "--json"});
  ASSERT_EQ(listed.json()["items"].size(), 1U) << listed.output;
  EXPECT_EQ(listed.json()["items"][0]["name"], "Made-up Editor");
  EXPECT_EQ(std::to_string(listed.json()["items"][0]["pID"].get<int>()), application.number());
  EXPECT_NE(listed.json()["items"][0]["procVss"], "");
  EXPECT_EQ(
      application.run({"close", application.number(), application.number(), "--dry-run"}).output,
      "Would close Made-up Editor (" + application.number() + ").\n");
  const Outcome closed = application.run({"close", application.number(), "--yes"});
  EXPECT_EQ(closed.status, 0) << closed.errors;
  EXPECT_THAT(closed.output, HasSubstr("Closed Made-up Editor"));
}

TEST(CloseCommand, WhatRefusesIsNotSaidToBeClosed) {
  const RunningApplication application(true);
  const Outcome refused = application.run({"close", application.number(), "--yes", "--json"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.json()["items"][0]["closed"], false);
}

TEST(CloseCommand, RefusesNumbersOfAnythingElse) {
  const RunningApplication application(false);
  for (const std::string number : {"1", "0", "-5", "x", "99999999"}) {
    const Outcome outcome = application.run({"close", "--yes", "--", number});
    EXPECT_EQ(outcome.status, 2) << number;
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
  }
  EXPECT_EQ(application.run({"close", application.number()}).status, 2) << "nobody can be asked";
  EXPECT_EQ(application.run({"processes", "--json"}).json()["items"].size(), 1U);
}

}  // namespace
}  // namespace brisko::test
