#include <clocale>

#include <gtest/gtest.h>

#include "Dispatch.h"

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "C");
  testing::InitGoogleTest(&argc, argv);
  brisko::Dispatch::attachMainThread();
  return RUN_ALL_TESTS();
}
