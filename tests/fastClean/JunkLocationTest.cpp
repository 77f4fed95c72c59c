#include "JunkLocation.h"

#include <gtest/gtest.h>

#include <random>

#include <fnmatch.h>

namespace brisko::test {
namespace {

TEST(NamePattern, agreesWithTheShellsOwnMatcher) {
  std::mt19937 random(7);
  const std::string letters = "ab.*?[a-b]!";
  const auto text = [&](std::size_t longest, std::size_t alphabet) {
    std::string made;
    for (std::size_t i = random() % (longest + 1); i > 0; --i)
      made += letters[random() % alphabet];
    return made;
  };
  int matches = 0;
  for (int i = 0; i < 200'000; ++i) {
    std::string pattern = text(7, 5);
    if (i % 4 == 0) pattern.insert(random() % (pattern.size() + 1), i % 8 == 0 ? "[a-b]" : "[!a]");
    const std::string name = text(6, 3);
    const bool expected = ::fnmatch(pattern.c_str(), name.c_str(), FNM_NOESCAPE) == 0;
    ASSERT_EQ(nameMatches(pattern, name), expected) << pattern << " on " << name;
    matches += expected ? 1 : 0;
  }
  EXPECT_GT(matches, 10'000);
}

TEST(NamePattern, aNameThatIsNotTextIsStillMatched) {
  EXPECT_TRUE(nameMatches("*history*", "zsh_\xFFhistory\xC0"));
  EXPECT_TRUE(nameMatches("?", "\xFF"));
  EXPECT_FALSE(nameMatches("[a-z]", "\xFF"));
  EXPECT_TRUE(nameMatches("a[", "a[")) << "an open bracket is a bracket";
}

TEST(JunkLocationFilter, protectsWhateverTheCaseAndLeavesClaimsToOthers) {
  JunkLocation location;
  location.path = "/c";
  location.exclude = {"*history*"};
  location.kinds = {FileKind::directory};
  location.claimed = {"/c/pip", "/c/go/build"};
  EXPECT_TRUE(location.takes("fontconfig", FileKind::directory));
  EXPECT_FALSE(location.takes("Zsh-History", FileKind::directory));
  EXPECT_FALSE(location.takes("fontconfig", FileKind::symbolicLink));
  EXPECT_FALSE(location.takes("pip", FileKind::directory));
  EXPECT_FALSE(location.takes("go", FileKind::directory)) << "it holds another location";
  EXPECT_TRUE(location.takes("pipx", FileKind::directory));
}

}  // namespace
}  // namespace brisko::test
