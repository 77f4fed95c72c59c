#include "Dispatch.h"
#include "FakeWorkspace.h"
#include "TaskManagerModel.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brisko::test {
namespace {

constexpr const char* kHeader =
    " STARTED USER       PID %CPU    VSZ   RSS     ELAPSED  UTIME STIME MSGSND MSGRCV\n";

TEST(ProcessList, ReadsTheFieldsOfEachLineWhateverItsDate) {
  TestHost host;
  const ProcessList list = processListOf(
      std::string(kHeader) +
      "12:05:58 anna       100 12.5 204800 21124       07:11      - 12:05      -      -\n"
      "  Nov 20 anna       200  0.0   1000    10  1-02:00:00      - Nov20      -      -\n"
      "12:05:58 anna     43951  1.0      7     7       00:01      - 12:06      -      -\n"
      "12:05:58 anna       300  0.0\n");
  EXPECT_EQ(list.size(), 3U) << "a cut line tells nothing";
  EXPECT_EQ(list.at("100").pcpu, "12.5");
  EXPECT_EQ(list.at("200").vsz, "1000");
  EXPECT_EQ(list.at("200").etime, "1-02:00:00");
  EXPECT_TRUE(host.logged("12:05:58 anna 43951 1.0 7 7 00:01 - 12:06"));
}

TEST(ProcessList, TheRealToolTellsOfThisProcess) {
  const auto list = readProcessList();
  if (!list) GTEST_SKIP() << "there is no ps here";
  ASSERT_TRUE(list->contains(std::to_string(::getpid())));
  EXPECT_GT(std::atol(list->at(std::to_string(::getpid())).vsz.c_str()), 0);
}

TEST(UsageLabels, CoresCountByTheirRunningSums) {
  const std::vector<CpuLoad> four(4, CpuLoad{0.2, 0});
  EXPECT_DOUBLE_EQ(TaskManagerModel::load(four), 0.5);
  EXPECT_DOUBLE_EQ(TaskManagerModel::load({{0.1, 0.1}, {0, 0}}), 0.2);
  EXPECT_DOUBLE_EQ(TaskManagerModel::load(std::vector<CpuLoad>(8, CpuLoad{1, 0})), 1);
  EXPECT_DOUBLE_EQ(TaskManagerModel::load({}), 0);
}

LaunchedApplication application(const std::string& name, int process) {
  LaunchedApplication made;
  made.name = name;
  made.processIdentifier = process;
  made.iconName = "icon";
  return made;
}

class TaskManager : public testing::Test {
 protected:
  TaskManager() {
    Dispatch::attachMainThread();
    auto made = std::make_unique<FakeWorkspace>();
    workspace_ = made.get();
    Host::current().workspace = std::move(made);
    ::setenv("BRISKO_TOOLS", tools_.path().c_str(), 1);
  }
  ~TaskManager() override {
    Dispatch::waitForBackground();
    Dispatch::runPending();
    ::unsetenv("BRISKO_TOOLS");
  }

  /// Puts a program of that name before the system's.
  void makeTool(const std::string& name, const std::string& script) {
    ::chmod(tools_.file(name, "#!/bin/sh\n" + script).c_str(), 0755);
  }
  void read() {
    model_.getAllProcess();
    Dispatch::runUntil([&] { return !model_.isReading(); });
  }

  TestHost host_;
  TemporaryFolder tools_;
  FakeWorkspace* workspace_ = nullptr;
  TaskManagerModel model_;
};

TEST_F(TaskManager, ListsEachApplicationOnceAndNeverItself) {
  makeTool("ps",
           std::string("echo '") + kHeader + "12:00:00 anna 7 3.5 2048000 10 01:00 - 12:00 - -'\n");
  workspace_->applications = {application("Mail.app", 7), application("Brisko", 8),
                              application("Mail.app", 7), application("", 9)};
  read();
  read();
  ASSERT_EQ(model_.allApplications().size(), 1U);
  const TaskManagerInfo& row = model_.allApplications()[0];
  EXPECT_EQ(TaskManagerModel::cellText(row, "Name"), "Mail");
  EXPECT_EQ(TaskManagerModel::cellText(row, "cpu"), "3.5%");
  EXPECT_EQ(TaskManagerModel::cellText(row, "memroy"), "2.05 MB");
  EXPECT_EQ(TaskManagerModel::cellText(row, "time"), "01:00");
  EXPECT_EQ(TaskManagerModel::cellText(row, "other"), "");
  EXPECT_EQ(TaskManagerModel::cellText(TaskManagerInfo(), "cpu"), "") << "no figure is no 0";
  EXPECT_EQ(TaskManagerModel::cellText(TaskManagerInfo(), "memroy"), "");
  makeTool("ps", "exit 1\n");
  workspace_->applications.clear();
  read();
  ASSERT_EQ(model_.allApplications().size(), 1U) << "an ended application keeps its row";
  EXPECT_EQ(model_.allApplications()[0].procCpu, "3.5") << "and its figures";
}

TEST_F(TaskManager, SelectionDecidesTheButtonAndTheHeadersBox) {
  workspace_->applications = {application("A", 1), application("B", 2)};
  read();
  EXPECT_FALSE(model_.closeButtonEnabled());
  EXPECT_STREQ(model_.selectAllImage(), "unsel");
  model_.changeCloseButtonState(1);
  EXPECT_TRUE(model_.closeButtonEnabled());
  EXPECT_STREQ(model_.selectAllImage(), "halfsel");
  model_.setAllSelectOrNoSelect(true);
  EXPECT_STREQ(model_.selectAllImage(), "sel");
  model_.changeCloseButtonState(9);
}

TEST_F(TaskManager, ClosesARealProcessAndLeavesANumberThatIsAnothersAlone) {
  const pid_t closed = ::fork();
  if (closed == 0) ::execl("/bin/sleep", "sleep", "60", nullptr);
  const pid_t spared = ::fork();
  if (spared == 0) ::execl("/bin/sleep", "sleep", "60", nullptr);
  workspace_->applications = {application("A", closed), application("B", spared),
                              application("C", 3)};
  read();
  model_.changeCloseButtonState(0);
  model_.changeCloseButtonState(1);
  workspace_->ended.insert(spared);
  model_.getAllProcess();
  model_.closeButtonAction();
  Dispatch::runUntil([&] { return !model_.isReading(); });
  ASSERT_EQ(model_.allApplications().size(), 1U) << "a reading that began before brings none back";
  EXPECT_EQ(model_.allApplications()[0].name, "C");
  int status = 0;
  EXPECT_EQ(::waitpid(closed, &status, 0), closed);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
  EXPECT_EQ(::waitpid(spared, &status, WNOHANG), 0) << "it still runs";
  ::kill(spared, SIGKILL);
  ::waitpid(spared, &status, 0);
  read();
  EXPECT_EQ(model_.allApplications().size(), 2U) << "one that refused is shown again";
}

}  // namespace
}  // namespace brisko::test
