#include "HostRelatedLocations.h"
#include "Resources.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace brisko::test {
namespace {

// The folders (below the home) in which an entry of this name would be taken for the key.
std::string takenIn(const std::string& entry, const std::string& key, const std::string& home) {
  std::string folders;
  for (const HostRelatedLocation& location : hostRelatedLocations()) {
    if (location.matches(entry, key)) folders += location.folder.substr(home.size()) + " ";
  }
  return folders;
}

TEST(HostRelatedLocationsTest, FilesAreFoundByTheirBeginningAndWhatOthersShareIsNot) {
  const TestHost host("/made");
  const std::string home = "/made/Users/anna";
  const std::string four = "/.config /.cache /.local/share /.local/state ";
  EXPECT_EQ(takenIn("org.gnome.Maps", "org.gnome.Maps", home), four + "/.var/app /snap ");
  EXPECT_EQ(takenIn("GIMP", "gimp", home), four);
  EXPECT_EQ(takenIn("tor-browser", "tor-browser", home), four + "/.var/app /snap ");
  EXPECT_EQ(takenIn("TorBrowser-data", "tor browser", home), four);
  EXPECT_EQ(takenIn("übung.conf", "Übung", home), four);
  EXPECT_EQ(takenIn("vim.desktop", "vim", home),
            four + "/.config/autostart /.local/share/applications ");
  const std::pair<const char*, const char*> never[] = {
      {"mygimp", "gimp"}, {"gimp", " "}, {"gimp", ""}};
  for (const auto& [entry, key] : never)
    EXPECT_EQ(takenIn(entry, key, home), "") << entry;
  const auto isTakenIn = [&](const std::string& folder, const std::string& entry) {
    return takenIn(entry, entry, home).find(folder + " ") != std::string::npos;
  };
  EXPECT_FALSE(isTakenIn("/.local/share", "keyrings"));
  EXPECT_FALSE(isTakenIn("/.local/share", "Trash"));
  EXPECT_FALSE(isTakenIn("/.local/share", "applications"));
  EXPECT_FALSE(isTakenIn("/.config", "systemd"));
  EXPECT_FALSE(isTakenIn("/.config", "dconf"));
}

TEST(HostRelatedLocationsTest, ATableThatIsNotUnderstoodFindsNothing) {
  const TestHost host;
  const auto rows = [](const PropertyList::Dictionary& row) {
    PropertyList table;
    table.set("locations",
              PropertyList::Array{
                  PropertyList::Dictionary{{"location", "${HOME}/a"}, {"name", "${KEY}"}}, row});
    return hostRelatedLocations(table,
                                [](std::string_view name) -> std::optional<std::string> {
                                  return name == "HOME" ? std::optional<std::string>("/home/u")
                                                        : std::nullopt;
                                })
        .size();
  };
  EXPECT_EQ(rows({{"location", "${HOME}/b"}, {"name", "${KEY}.x"}}), 2U);
  EXPECT_EQ(rows({{"location", "${OTHER}/b"}, {"name", "${KEY}"}}), 1U) << "an unknown base";
  EXPECT_EQ(rows({{"location", "/etc"}, {"name", "${KEY}"}}), 0U);
  EXPECT_EQ(rows({{"location", "${HOME}/b"}, {"name", "all"}}), 0U);
  EXPECT_EQ(rows({{"location", "${HOME}/b"}, {"name", "${KEY}"}, {"hwole", true}}), 0U);
  EXPECT_FALSE(host.log().empty());
}

}  // namespace
}  // namespace brisko::test
