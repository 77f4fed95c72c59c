#include "Dispatch.h"
#include "UnlinkGuard.h"

#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "C");
  // Named here so that every test program links the guard.
  brisko::test::UnlinkGuard::allow(BRISKO_TEST_BUILD_TREE);
  testing::InitGoogleTest(&argc, argv);
  brisko::Dispatch::attachMainThread();
  return RUN_ALL_TESTS();
}
