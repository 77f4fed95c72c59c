#include "PlainSearch.h"
#include "crc.h"
#include "fileAttrbItem.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace brisko {
namespace {

TEST(Crc, KnownValuesAndStartRules) {
  EXPECT_EQ(crc::crc64("123456789", 9), 0xCAA717168609F281);
  EXPECT_EQ(crc64("123456789", 9), 0xCAA717168609F281);
  EXPECT_EQ(crc::crc64(nullptr, 5), 0U);
  EXPECT_EQ(crc::crc64("", 0), 0xFFFFFFFFFFFFFFFF);
  EXPECT_EQ(crc::crc64Buffer(nullptr, 5, true, 7), 0U);
  EXPECT_EQ(crc::crc64Buffer("x", 0, false, 7), 7U);
  EXPECT_EQ(crc::crc64Buffer("x", 0, true, 7), 0xFFFFFFFFFFFFFFFF);
  const std::uint64_t head = crc64Buffer("1234", 4, true, 99);
  EXPECT_EQ(crc64Buffer("56789", 5, false, head), 0xCAA717168609F281);
}

TEST(Crc, EveryKernelAgreesWithThePlainTableAtAnyLengthAndAlignment) {
  std::mt19937_64 random(1);
  std::vector<unsigned char> bytes(9000);
  for (unsigned char& byte : bytes)
    byte = static_cast<unsigned char>(random());
  int kernels = 0;
  for (const CrcKernel* kernel = crcKernels(); kernel->name != nullptr; ++kernel) {
    if (!kernel->isSupported()) continue;
    ++kernels;
    for (std::size_t length = 0; length < 1300; ++length) {
      const std::size_t offset = random() % 70;
      const std::uint64_t start = random();
      ASSERT_EQ(kernel->update(start, bytes.data() + offset, length),
                test::PlainSearch::crc(bytes.data() + offset, length, start))
          << kernel->name << " " << length;
    }
    ASSERT_EQ(kernel->update(7, bytes.data() + 1, 8999),
              test::PlainSearch::crc(bytes.data() + 1, 8999, 7))
        << kernel->name;
  }
  EXPECT_GE(kernels, 2);
}

TEST(Crc, RecordsAreEqualOnlyByAKnownDigest) {
  fileAttrbItem a;
  fileAttrbItem b;
  EXPECT_FALSE(fileAttrbItem::isEqual(&a, &b));
  a.md5 = b.md5 = 5;
  EXPECT_TRUE(fileAttrbItem::isEqual(&a, &b));
  EXPECT_FALSE(fileAttrbItem::isEqual(&a, nullptr));
  EXPECT_EQ(pathExtension("/a.b/c"), "");
  EXPECT_EQ(pathExtension("/a/x.tar.gz"), "gz");
  EXPECT_EQ(pathExtension("/a/.profile"), "");
}

}  // namespace
}  // namespace brisko
