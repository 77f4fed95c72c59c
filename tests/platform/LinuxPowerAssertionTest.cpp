#include "LinuxPowerAssertion.h"
#include "MockSession.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace brisko::test {
namespace {

using testing::Contains;
using testing::HasSubstr;

class PowerAssertionTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!MockSession::isPossible()) GTEST_SKIP() << "dbus-daemon is not installed";
  }
  void use(const MockSession* system, const MockSession* session) {
    system_.reset();  // puts back what was there, so before the next
    session_.reset();
    const char* nobody = "unix:path=/nonexistent/bus";
    system_ = std::make_unique<Environment>("DBUS_SYSTEM_BUS_ADDRESS",
                                            system ? system->address().c_str() : nobody);
    session_ = std::make_unique<Environment>("DBUS_SESSION_BUS_ADDRESS",
                                             session ? session->address().c_str() : nobody);
  }

  std::unique_ptr<Environment> system_;
  std::unique_ptr<Environment> session_;
  LogCapture log_;
};

TEST_F(PowerAssertionTest, BothLocksAreHeldUntilTheyAreReleased) {
  MockSession mock;
  use(&mock, &mock);
  {
    LinuxPowerAssertion power;
    const auto made = power.create(PowerAssertion::kNoDisplaySleep, PowerAssertion::kLevelOn, "A");
    ASSERT_NE(made.identifier, PowerAssertion::kNoIdentifier) << made.reason;
    EXPECT_THAT(mock.calls(), Contains("Inhibit idle Brisko A block"));
    EXPECT_THAT(mock.calls(), Contains("Inhibit Brisko A"));
    EXPECT_TRUE(mock.holds(1, 1));
    power.create(PowerAssertion::kNoIdleSleep, PowerAssertion::kLevelOn, "B");
    EXPECT_TRUE(mock.holds(2, 1)) << "the display may sleep";
    power.create(PowerAssertion::kNoDisplaySleep, PowerAssertion::kLevelOff, "C");
    EXPECT_TRUE(mock.holds(2, 1)) << "level off";
    EXPECT_TRUE(power.release(made.identifier));
    EXPECT_TRUE(mock.holds(1, 0));
    EXPECT_FALSE(power.release(made.identifier));
    EXPECT_TRUE(power.updateSystemActivity());
    EXPECT_EQ(mock.calls().back(), "SimulateUserActivity");
  }
  EXPECT_TRUE(mock.holds(0, 0));
}

TEST_F(PowerAssertionTest, OneLockIsEnoughAndNoneIsAReason) {
  MockSession mock;
  MockSession empty(false);
  LinuxPowerAssertion power;
  const auto create = [&] {
    return power.create(PowerAssertion::kNoDisplaySleep, PowerAssertion::kLevelOn, "A");
  };
  use(&mock, nullptr);
  EXPECT_NE(create().identifier, PowerAssertion::kNoIdentifier);
  EXPECT_TRUE(mock.holds(1, 0));
  use(&empty, &mock);
  EXPECT_NE(create().identifier, PowerAssertion::kNoIdentifier);
  EXPECT_TRUE(mock.holds(1, 1));
  use(&empty, nullptr);
  const auto none = create();
  EXPECT_EQ(none.identifier, PowerAssertion::kNoIdentifier);
  EXPECT_THAT(none.reason, HasSubstr("session bus"));
  EXPECT_FALSE(power.updateSystemActivity());
}

}  // namespace
}  // namespace brisko::test
