#include "LogCapture.h"
#include "OnDemandLibrary.h"

#include <gtest/gtest.h>

#include <gnu/libc-version.h>

namespace brisko::test {
namespace {

OnDemandLibrary libc{"libc.so.6"};
OnDemandLibrary missing{"libbrisko-none.so.1"};
BRISKO_ON_DEMAND(libc, gnu_get_libc_version);
BRISKO_ON_DEMAND(missing, gnu_get_libc_release);

TEST(OnDemandLibraryTest, AFunctionIsCalledUnderItsName) {
  EXPECT_TRUE(libc.isThere());
  EXPECT_STREQ(test::gnu_get_libc_version(), ::gnu_get_libc_version());
}

TEST(OnDemandLibraryTest, AMissingLibraryIsSaidOnceAndNeverCalled) {
  const LogCapture log;
  EXPECT_FALSE(missing.isThere());
  EXPECT_FALSE(missing.isThere());
  EXPECT_EQ(log.count("A library cannot be loaded: libbrisko-none.so.1"), 1);
  EXPECT_DEATH(test::gnu_get_libc_release(), "");
}

}  // namespace
}  // namespace brisko::test
