#include "NSArray.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace brisko {
namespace {

using Object = std::shared_ptr<std::string>;

Object object(const char* text) {
  return std::make_shared<std::string>(text);
}

TEST(NSArray, IdentityIsNotEquality) {
  const Object a = object("same");
  const Object b = object("same");
  const std::vector<Object> array = {object("x"), a};
  EXPECT_TRUE(NSArray::containsObjectIdenticalTo(array, a));
  EXPECT_FALSE(NSArray::containsObjectIdenticalTo(array, b));
  EXPECT_TRUE(NSArray::containsAnyObjectsIdenticalTo(array, {b, a}));
  EXPECT_FALSE(NSArray::containsAnyObjectsIdenticalTo(array, {b}));
  EXPECT_FALSE(NSArray::containsAnyObjectsIdenticalTo(array, {}));
  EXPECT_EQ(NSArray::indexesOfObjects(array, {b, a}), (std::set<std::size_t>{1}));
}

TEST(NSArray, InsertedObjectsKeepTheirOrderAndStopAtTheEnd) {
  std::vector<int> array = {1, 2, 3};
  NSMutableArray::insertObjectsFromArray(array, {8, 9}, 1);
  EXPECT_EQ(array, (std::vector<int>{1, 8, 9, 2, 3}));
  NSMutableArray::insertObjectsFromArray(array, array, 99);
  EXPECT_EQ(array, (std::vector<int>{1, 8, 9, 2, 3, 1, 8, 9, 2, 3}));
}

}  // namespace
}  // namespace brisko
