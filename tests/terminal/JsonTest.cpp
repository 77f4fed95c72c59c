#include "Json.h"

#include <gtest/gtest.h>

namespace brisko::test {
namespace {

TEST(JsonPaths, keepTheirBytesWhenTheyAreNoText) {
  Json object;
  setPath(object, "path", "/tmp/größe");
  EXPECT_EQ(object.dump(), R"({"path":"/tmp/größe"})");
  setPath(object, "path", "/tmp/a\xFF\xC3(b");
  EXPECT_EQ(object["path"], "/tmp/a\xEF\xBF\xBD\xEF\xBF\xBD(b");
  EXPECT_EQ(object["pathBytes"], "L3RtcC9h/8MoYg==");
  setPaths(object, "removed", {"/a", "/\xFE"});
  EXPECT_EQ(object["removed"].size(), 2U);
  EXPECT_EQ(object["removedBytes"], (Json{"L2E=", "L/4="}));
  EXPECT_FALSE(documentText(object).empty());
}

TEST(JsonPaths, base64EndsAsItShould) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("M"), "TQ==");
  EXPECT_EQ(base64("Ma"), "TWE=");
  EXPECT_EQ(base64("Man"), "TWFu");
}

TEST(JsonDates, areIsoInUtc) {
  EXPECT_EQ(isoDate(0), "1970-01-01T00:00:00Z");
  EXPECT_EQ(isoDate(1'795'219'200), "2026-11-21T00:00:00Z");
  EXPECT_EQ(isoDate(-1), "1969-12-31T23:59:59Z");
}

}  // namespace
}  // namespace brisko::test
