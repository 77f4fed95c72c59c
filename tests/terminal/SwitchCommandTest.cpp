#include "MockSession.h"
#include "Program.h"
#include "RecordedTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace brisko::test {
namespace {

using testing::Contains;
using testing::HasSubstr;

class SwitchCommand : public testing::Test {
 protected:
  SwitchCommand() { tools_.answer("autohide", "0"); }

  Program program() {
    return Program()
        .variable("HOME", home_.path())
        .variable("BRISKO_TOOLS", tools_.folder())
        .variable("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent")
        .variable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
  }
  Outcome run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "switch");
    return program().run(arguments);
  }

  TemporaryFolder home_;
  RecordedTools tools_;
};

TEST_F(SwitchCommand, ShowsAllInTheOrderOfTheGrid) {
  tools_.answer("CreateDesktop", "FALSE");
  const Outcome outcome = run({"--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.errors;
  const auto all = outcome.json()["switches"];
  ASSERT_EQ(all.size(), 8U);
  EXPECT_EQ(all[0]["index"], 1);
  EXPECT_EQ(all[0]["state"], true);
  EXPECT_EQ(all[0]["label"], "Active");
  EXPECT_TRUE(all[3]["state"].is_null()) << "it has none";
  EXPECT_EQ(all[7]["name"], "hide-dock");
  EXPECT_EQ(all[7]["label"], "Disabled");
  EXPECT_EQ(run({"HIDE-DOCK", "--json"}).json()["switches"][0]["index"], 8);
  EXPECT_THAT(run({"1"}).output, HasSubstr("Active"));
}

TEST_F(SwitchCommand, ChangesOneAndLooksWhetherItDid) {
  tools_.script("defaults", "[ -e \"$HOME/hidden\" ] && echo 1 || echo 0");
  tools_.script("osascript", "touch \"$HOME/hidden\"");
  EXPECT_EQ(run({"hide-dock", "on", "--dry-run"}).output, "Would turn hide-dock on.\n");
  EXPECT_THAT(tools_.calls(), Not(Contains(HasSubstr("osascript"))));
  const Outcome changed = run({"hide-dock", "on", "--json"});
  EXPECT_EQ(changed.status, 0) << changed.errors;
  EXPECT_EQ(changed.json()["switches"][0]["state"], true);
  tools_.calls();
  EXPECT_EQ(run({"hide-dock", "on"}).status, 0);
  EXPECT_THAT(tools_.calls(), Not(Contains(HasSubstr("osascript")))) << "it is on";
  const Outcome stuck = run({"hide-dock", "off"});
  EXPECT_EQ(stuck.status, 1);
  EXPECT_THAT(stuck.errors, HasSubstr("did not change"));
  tools_.refuse("open", "no screen saver");
  const Outcome refused = run({"screen-saver"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.errors, "brisko: screen-saver: no screen saver\n");
  const Outcome awake = run({"keep-awake", "on"});
  EXPECT_EQ(awake.status, 1) << "there is nobody to ask";
  EXPECT_EQ(awake.errorLines(), 1U);
}

TEST_F(SwitchCommand, WrongUsageTouchesNothing) {
  const std::vector<std::vector<std::string>> cases = {
      {"9"}, {"dock"}, {"hide-dock", "maybe"}, {"hide-dock", "on", "off"}, {"screen-saver", "off"}};
  for (const auto& arguments : cases) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments[0];
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
  }
  EXPECT_TRUE(tools_.calls().empty());
}

// The locks go with the process, however it ends.
TEST_F(SwitchCommand, MachineIsAwakeUntilTheCommandEnds) {
  if (!MockSession::isPossible()) GTEST_SKIP() << "dbus-daemon is not installed";
  MockSession mock;
  for (const int signal : {SIGINT, SIGKILL}) {
    const Outcome outcome = program()
                                .variable("DBUS_SYSTEM_BUS_ADDRESS", mock.address())
                                .variable("DBUS_SESSION_BUS_ADDRESS", mock.address())
                                .whenItSpeaks([&](pid_t process) {
                                  EXPECT_TRUE(mock.holds(1, 1));
                                  ::kill(process, signal);
                                })
                                .run({"switch", "keep-awake", "on", "--json"});
    EXPECT_EQ(outcome.status, signal == SIGINT ? 130 : 256 + SIGKILL);
    EXPECT_EQ(outcome.json()["switches"][0]["label"], "Active");
    EXPECT_TRUE(mock.holds(0, 0)) << signal;
  }
}

}  // namespace
}  // namespace brisko::test
