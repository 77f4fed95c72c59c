#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace brisko::test {
namespace {

using testing::HasSubstr;

class LoginItemsCommand : public testing::Test {
 protected:
  Outcome run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "login-items");
    return Program().variable("HOME", home_.path()).run(arguments);
  }

  TemporaryFolder home_;
};

TEST_F(LoginItemsCommand, AddsHidesShowsAndRemovesByTheNumberThatIsPrinted) {
  const std::string first = home_.file("first.txt");
  const std::string second = home_.file("second.txt");
  EXPECT_EQ(run({"add", first}).status, 0);
  const Outcome added = run({"add", second, "--json"});
  EXPECT_EQ(added.status, 0) << added.errors;
  ASSERT_EQ(added.json()["items"].size(), 2U);
  EXPECT_EQ(added.json()["items"][1]["path"], second);
  EXPECT_EQ(run({"hide", "2", "--json"}).json()["items"][1]["bIsSelected"], true);
  EXPECT_EQ(run({"hide", "2", "--json"}).json()["items"][1]["bIsSelected"], true);
  EXPECT_EQ(run({"show", "2", "--json"}).json()["items"][1]["bIsSelected"], false);
  const Outcome plan = run({"remove", "1", "--dry-run", "--json"});
  EXPECT_EQ(plan.json()["items"].size(), 2U);
  EXPECT_EQ(plan.json()["target"], first);
  EXPECT_THAT(run({"show", "2", "--dry-run"}).output, HasSubstr("Nothing would change."));
  EXPECT_EQ(run({"remove", "1", "--json"}).json()["items"][0]["path"], second);
}

TEST_F(LoginItemsCommand, WrongUsageIsOneLineAndStatusTwo) {
  home_.file("file");
  const std::vector<std::vector<std::string>> cases = {
      {"remove", "1"},      {"remove", "0"}, {"hide", "-1"},
      {"show", "x"},        {"remove"},      {"add"},
      {"add", "/no/where"}, {"move", "1"},   {"add", home_ / "file", "more"}};
  for (const auto& arguments : cases) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments[0];
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
    EXPECT_EQ(outcome.output, "");
  }
}

TEST_F(LoginItemsCommand, AnEntryThatIsNotShownIsNotChangedUnasked) {
  const std::string gone = home_.file("a.txt");
  const std::string kept = home_.file("b.txt");
  run({"add", gone});
  run({"add", kept});
  std::filesystem::remove(gone);
  const Outcome refused = run({"remove", "1"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(run({"--json"}).json()["items"].size(), 1U);
  const Outcome removed = run({"remove", "1", "--yes", "--json"});
  EXPECT_THAT(removed.errors, HasSubstr("a.txt.desktop"));
  EXPECT_EQ(removed.json()["items"][0]["path"], kept) << "the entry at the row's place went";
}

}  // namespace
}  // namespace brisko::test
