#include "DesktopEntries.h"
#include "DesktopEntry.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace brisko {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DesktopEntry, NamesComeInTheUsersLanguageOrTheNearestOne) {
  constexpr std::string_view kText =
      "# a comment\n[Other]\nName=Wrong\n[Desktop Entry]\nType=Application\n"
      "Name=Files\nName[de]=Dateien\nName[de_AT]=Ordner\nName[sr@latin]=Datoteke\n"
      "Name[fr]=\xff\xfe\nExec=files\n[Desktop Action new]\nName=New\n";
  const std::pair<const char*, const char*> cases[] = {{"", "Files"},
                                                       {"C", "Files"},
                                                       {"de_DE.UTF-8", "Dateien"},
                                                       {"de_AT", "Ordner"},
                                                       {"sr_RS@latin", "Datoteke"},
                                                       {"fr_FR.UTF-8", "Files"},
                                                       {"pt_BR", "Files"}};
  for (const auto& [locale, name] : cases) {
    const auto entry = parseDesktopEntry(kText, locale);
    ASSERT_TRUE(entry) << locale;
    EXPECT_EQ(entry->name, name) << locale;
  }
}

TEST(DesktopEntry, WhatIsNoApplicationIsNone) {
  const std::string head = "[Desktop Entry]\nType=Application\n";
  EXPECT_FALSE(parseDesktopEntry("", ""));
  EXPECT_FALSE(parseDesktopEntry(head, "")) << "no name";
  EXPECT_FALSE(parseDesktopEntry(head + "Name= \n", "")) << "an empty name";
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Link\nName=x\n", ""));
  EXPECT_FALSE(parseDesktopEntry("Type=Application\nName=x\n", "")) << "no group";
  EXPECT_FALSE(parseDesktopEntry(head + std::string("Name=a\0b\n", 9), "")) << "binary";
  EXPECT_FALSE(parseDesktopEntry(head + "Name=\xc3\n", "")) << "no text";
}

TEST(DesktopEntry, NoTextBringsControlCharactersIntoTheWindow) {
  const auto entry = parseDesktopEntry(
      "[Desktop Entry]\r\nType=Application\r\nName=Two\\nlines\x1b[31m\r\nIcon=a\\tb\r\n"
      "NoDisplay=true\r\nOnlyShowIn=GNOME;KDE;\r\n",
      "");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "Two lines [31m");
  EXPECT_EQ(entry->icon, "a b");
  EXPECT_TRUE(entry->noDisplay);
  EXPECT_THAT(entry->onlyShowIn, ElementsAre("GNOME", "KDE"));
}

TEST(DesktopEntry, ExecLinesAreCutIntoTheWordsThatAShellWouldNotSee) {
  EXPECT_THAT(execWords("prog --new-window %U"), ElementsAre("prog", "--new-window"));
  EXPECT_THAT(execWords(R"("/opt/My App/run" "a \"b\" \\ \$c" 100%%)"),
              ElementsAre("/opt/My App/run", R"(a "b" \ $c)", "100%"));
  EXPECT_THAT(execWords(R"(prog "" x)"), ElementsAre("prog", "", "x"));
  EXPECT_THAT(execWords("prog \"never closed"), IsEmpty());
  EXPECT_THAT(execWords("\"\\"), IsEmpty());
  EXPECT_THAT(execWords("%"), ElementsAre("%"));
}

TEST(DesktopEntry, TheProgramIsTheOneBehindItsStarters) {
  const std::pair<const char*, const char*> cases[] = {
      {"firefox %u", "firefox"},
      {"env GDK_BACKEND=x11 -u DISPLAY /snap/bin/foo %U", "/snap/bin/foo"},
      {"python3.11 /home/u/tool/main.py", "/home/u/tool/main.py"},
      {"java -jar /home/u/x.jar", "/home/u/x.jar"},
      {"sh -c \"rm -rf ~\"", "sh"},
      {"env A=b", ""},
      {"", ""}};
  for (const auto& [exec, program] : cases)
    EXPECT_EQ(programOf(execWords(exec)), program) << exec;
}

TEST(DesktopEntry, MenusShowWhatIsMeantForTheDesktopInUse) {
  DesktopEntry entry;
  EXPECT_TRUE(isShownIn(entry, "KDE"));
  entry.onlyShowIn = {"GNOME"};
  EXPECT_TRUE(isShownIn(entry, "ubuntu:GNOME"));
  EXPECT_TRUE(isShownIn(entry, ""));
  EXPECT_FALSE(isShownIn(entry, "KDE"));
  entry.onlyShowIn.clear();
  entry.notShowIn = {"KDE"};
  EXPECT_FALSE(isShownIn(entry, "KDE"));
  entry.hidden = true;
  EXPECT_FALSE(isShownIn(entry, ""));
}

TEST(DesktopEntries, TheFirstFolderHoldsAndHostilePlacesAreSurvived) {
  test::TemporaryFolder folder;
  const auto entry = [](const std::string& name) {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\n";
  };
  folder.file("own/a.desktop", entry("Own"));
  folder.file("system/a.desktop", entry("System"));
  folder.file("system/vendor/b.desktop", entry("Nested"));
  folder.file("system/huge.desktop", entry("Huge") + std::string(2u << 20, '#'));
  folder.file("system/.desktop", entry("Nameless"));
  folder.link("system/loop", folder / "system");
  folder.link("system/dangling.desktop", folder / "nowhere");
  ASSERT_EQ(mkfifo((folder / "system/pipe.desktop").c_str(), 0600), 0);
  std::string deep = "system";
  for (int i = 0; i < 40; ++i)
    deep += "/d";
  folder.file(deep + "/deep.desktop", entry("Deep"));
  const auto entries =
      readDesktopEntries({folder / "own", folder / "missing", folder / "system"}, "");
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].id, "a");
  EXPECT_EQ(entries[0].name, "Own");
  EXPECT_THAT(entries[0].shadowed, ElementsAre(folder / "system/a.desktop"));
  EXPECT_EQ(entries[1].id, "vendor-b");
}

}  // namespace
}  // namespace brisko
