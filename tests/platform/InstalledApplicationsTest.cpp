// The list of a made system: package database, desktop entries, Flatpaks, snaps, own programs.

#include "FlatpakApplications.h"
#include "MadeApplications.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace brisko {
namespace {

using test::Environment;
using test::makeFlatpak;
using test::TemporaryFolder;
using test::TestHost;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = InstalledApplication::Kind;

std::string entry(const std::string& name, const std::string& exec, const std::string& more = "") {
  return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + exec + "\n" + more;
}

std::string package(const std::string& name, const std::string& status = "install ok installed",
                    const std::string& architecture = "amd64") {
  return "Package: " + name + "\nStatus: " + status +
         "\nInstalled-Size: 686\nArchitecture: " + architecture +
         "\nVersion: 2:9.0-1\nDescription: text\n Essential: yes\n\n";
}

// What Flatpak keeps for a deployed application: origin, commit, no subpaths, size, metadata.
std::string deployOf(const std::string& version) {
  std::string bytes = std::string("flathub") + '\0' + std::string(64, 'a') + '\0';
  const auto align = [&bytes] { bytes.resize((bytes.size() + 7) / 8 * 8); };
  align();
  bytes += std::string("\0\0\0\0\x01\x02\x03\x04", 8);
  bytes += std::string("appdata-name\0\0\0\0Maps\0\0s\x0d", 24);
  bytes += std::string("appdata-version\0", 16);
  align();
  bytes += version + std::string("\0\0s", 3);
  return bytes;
}

class InstalledApplicationsTest : public testing::Test {
 protected:
  const InstalledApplication* find(const std::string& id) {
    listed = host.host().installedApplications->list();
    for (const InstalledApplication& application : listed) {
      if (application.desktopID == id) return &application;
    }
    return nullptr;
  }
  std::vector<std::string> ids() {
    std::vector<std::string> all;
    for (const auto& application : host.host().installedApplications->list())
      all.push_back(application.desktopID);
    return all;
  }
  void program(const std::string& name) { chmod(folder.file(name, "#!/bin/sh\n").c_str(), 0755); }
  std::string home() const { return folder / "Users/anna"; }

  TemporaryFolder folder;
  Environment locale{"LC_ALL", "C"};
  TestHost host{folder.path()};
  std::vector<InstalledApplication> listed;
};

TEST_F(InstalledApplicationsTest, PackagesAreFoundByTheirListsOfFiles) {
  folder.file("var/lib/dpkg/status", package("dpkg") + package("vim") +
                                         package("gone", "deinstall ok config-files") +
                                         package("wine", "install ok installed", "i386") +
                                         package("held", "hold ok installed"));
  const auto owns = [this](const std::string& list, const std::string& file,
                           const std::string& id) {
    folder.file("var/lib/dpkg/info/" + list + ".list", "/.\n/usr\n" + file + "\n/usr/share/doc\n");
    folder.file(file.substr(1), entry(id, "/usr/bin/" + id));
  };
  owns("vim", "/usr/share/applications/vim.desktop", "Vim");
  owns("gone", "/usr/share/applications/gone.desktop", "Gone");
  owns("wine:i386", "/usr/share/applications/wine.desktop", "Wine");
  owns("held", "/usr/share/applications/kde/held.desktop", "Held");
  folder.file("usr/share/applications/stray.desktop", entry("Stray", "/usr/bin/stray"));
  folder.file("usr/share/applications/hidden.desktop", entry("Hidden", "x", "NoDisplay=true\n"));

  const InstalledApplication* vim = find("vim");
  ASSERT_NE(vim, nullptr);
  EXPECT_EQ(vim->kind, Kind::package);
  EXPECT_EQ(vim->packageName, "vim");
  EXPECT_EQ(vim->version, "2:9.0-1");
  EXPECT_EQ(vim->bytes, 686U * 1024);
  EXPECT_GT(vim->date, 0);
  EXPECT_EQ(vim->path, folder / "usr/share/applications/vim.desktop");
  EXPECT_THAT(vim->keys, ElementsAre("vim", "Vim"));
  EXPECT_EQ(find("wine")->packageName, "wine:i386");
  EXPECT_THAT(ids(), ElementsAre("kde-held", "vim", "wine"));
  EXPECT_NE(host.host().installedApplications->plan(*find("vim")).refusal, "")
      << "another system's package manager cannot be used";
}

TEST_F(InstalledApplicationsTest, TheUsersOwnEntryHidesOrChangesThePackagesOne) {
  folder.file("var/lib/dpkg/status", package("one") + package("two"));
  for (const char* name : {"one", "two"}) {
    const std::string path = std::string("usr/share/applications/") + name + ".desktop";
    folder.file(std::string("var/lib/dpkg/info/") + name + ".list", "/" + path + "\n");
    folder.file(path, entry(name, name));
  }
  const std::string own = "Users/anna/.local/share/applications/";
  folder.file(own + "one.desktop", entry("My One", "/usr/bin/one --mine"));
  folder.file(own + "two.desktop", entry("Two", "two", "Hidden=true\n"));
  EXPECT_THAT(ids(), ElementsAre("one"));
  EXPECT_EQ(find("one")->name, "My One");
  EXPECT_EQ(find("one")->packageName, "one");
}

TEST_F(InstalledApplicationsTest, AnEntryThatNoPackageListsBelongsToTheOneWhoseProgramItStarts) {
  folder.file("var/lib/dpkg/status", package("chrome") + package("python3"));
  folder.file("var/lib/dpkg/info/chrome.list", "/opt/chrome/chrome\n");
  folder.file("var/lib/dpkg/info/python3.list", "/usr/bin/python3\n");
  folder.file("usr/share/applications/chrome.desktop", entry("Chrome", "/opt/chrome/chrome %U"));
  folder.file("usr/share/applications/script.desktop", entry("Script", "/usr/bin/python3 -m x"));
  folder.file("Users/anna/.local/share/applications/page.desktop",
              entry("Page", "/opt/chrome/chrome --app=x"));
  EXPECT_THAT(ids(), ElementsAre("chrome"));
}

TEST_F(InstalledApplicationsTest, FlatpaksAndSnapsAreReadFromTheirOwnFolders) {
  const std::string id = "org.gnome.Maps";
  makeFlatpak(folder / "var/lib/flatpak", id, "org.gnome.Platform/x86_64/45", deployOf("45.5"));
  const InstalledApplication* maps = find(id);
  ASSERT_NE(maps, nullptr);
  EXPECT_EQ(maps->kind, Kind::flatpak);
  EXPECT_EQ(maps->packageName, "app/org.gnome.Maps/x86_64/stable");
  EXPECT_EQ(maps->version, "45.5");
  EXPECT_EQ(maps->bytes, 0x01020304U);
  EXPECT_FALSE(maps->isForUser);
  EXPECT_THAT(maps->keys, ElementsAre(id));

  folder.file("snap/foo/7/meta/snap.yaml", "name: foo\nversion: '1.2'\nsummary: type: base\n");
  folder.link("snap/foo/current", "7");
  folder.file("var/lib/snapd/snaps/foo_7.snap", "12345");
  folder.file("var/lib/snapd/desktop/applications/foo_gui.desktop",
              entry("Foo", "env BAMF=x /snap/bin/foo.gui", "X-SnapInstanceName=foo\n"));
  folder.file("var/lib/snapd/desktop/applications/gone_gone.desktop", entry("Gone", "gone"));
  const InstalledApplication* snap = find("foo_gui");
  ASSERT_NE(snap, nullptr);
  EXPECT_EQ(snap->kind, Kind::snap);
  EXPECT_EQ(snap->packageName, "foo");
  EXPECT_EQ(snap->version, "1.2");
  EXPECT_EQ(snap->bytes, 5U);
  EXPECT_EQ(find("gone_gone"), nullptr);
}

TEST_F(InstalledApplicationsTest, AFlatpaksPlanNamesWhatGoesAlongAndWhatIsLeftUnused) {
  makeFlatpak(folder / "fp", "org.a.One", "org.Base/x86_64/1");
  makeFlatpak(folder / "fp", "org.a.Two", "org.Base/x86_64/1");
  folder.folder("fp/runtime/org.a.One.Locale/x86_64/stable");
  folder.link("fp/app/evil/current", "../../../etc");
  const FlatpakInstallation installation(folder / "fp", true);
  const std::string ref = "app/org.a.One/x86_64/stable";
  UninstallPlan plan = installation.plan(ref, installation.deployments());
  EXPECT_TRUE(plan.mayGo()) << plan.refusal;
  EXPECT_THAT(plan.removes, ElementsAre(ref));
  EXPECT_THAT(plan.alsoRemoves, ElementsAre("runtime/org.a.One.Locale/x86_64/stable"));
  EXPECT_THAT(plan.leavesUnused, IsEmpty());
  plan = installation.plan(ref, {*installation.deployment("org.a.One")});
  EXPECT_THAT(plan.leavesUnused, ElementsAre("runtime/org.Base/x86_64/1"));
  EXPECT_FALSE(installation.plan("app/org.a.One/x86_64/beta", {}).mayGo());
  EXPECT_FALSE(installation.deployment("evil"));
  EXPECT_FALSE(installation.deployment("../app/org.a.One"));
}

TEST(FlatpakDeployTest, NoCutFileIsReadBeyondItsEnd) {
  const std::string whole = deployOf("1.0");
  std::string version;
  std::uint64_t bytes = 0;
  for (std::size_t cut = 0; cut < whole.size(); ++cut) {
    const std::string part = whole.substr(0, cut);
    readFlatpakDeploy(part, version, bytes);
    EXPECT_EQ(version, "") << cut;
  }
}

TEST_F(InstalledApplicationsTest, OwnProgramsGoAsTheirImageOrTheirOwnFolderAndNeverMore) {
  const std::string own = "Users/anna/.local/share/applications/";
  const auto add = [&](const std::string& id, const std::string& exec,
                       const std::string& more = "") {
    folder.file(own + id + ".desktop", entry(id, exec, more));
  };
  const auto filesOf = [this](const std::string& id) {
    const InstalledApplication* found = find(id);
    return found == nullptr || found->kind != Kind::files ? std::vector<std::string>{"none"}
                                                          : found->files;
  };
  program("Users/anna/Tools/Krita-5.AppImage");
  program("Users/anna/Tools/other");
  add("krita", "\"" + home() + "/Tools/Krita-5.AppImage\" %F", "X-AppImage-Version=5.2\n");
  add("other", home() + "/Tools/other");
  program("Users/anna/blender-4.0/blender");
  add("blender", "env X=1 " + home() + "/blender-4.0/blender");
  program("Users/anna/.local/opt/idea-IU/bin/idea.sh");
  add("idea", home() + "/.local/opt/idea-IU/bin/idea.sh");
  program("Users/anna/runme");
  add("anna", home() + "/runme");
  program("Users/anna/code/mytool/mytool.py");
  folder.folder("Users/anna/code/mytool/.git");
  add("mytool", "python3 " + home() + "/code/mytool/mytool.py");
  program("Users/anna/tunes/tunes-player.sh");
  add("tunes-player", home() + "/tunes/tunes-player.sh");
  add("climbs", home() + "/x/../../../usr/bin/vim");
  add("stale", home() + "/gone/gone");
  add("shell", "sh -c 'rm -rf ~'");

  const auto desktop = [&](const std::string& id) { return folder / own + id + ".desktop"; };
  EXPECT_THAT(filesOf("krita"), ElementsAre(home() + "/Tools/Krita-5.AppImage", desktop("krita")));
  EXPECT_EQ(find("krita")->version, "5.2");
  EXPECT_THAT(filesOf("other"), ElementsAre(home() + "/Tools/other", desktop("other")));
  EXPECT_THAT(filesOf("blender"), ElementsAre(home() + "/blender-4.0", desktop("blender")));
  EXPECT_THAT(filesOf("idea"), ElementsAre(home() + "/.local/opt/idea-IU", desktop("idea")));
  EXPECT_THAT(filesOf("anna"), ElementsAre(home() + "/runme", desktop("anna")));
  EXPECT_THAT(filesOf("mytool"), ElementsAre(home() + "/code/mytool/mytool.py", desktop("mytool")));
  EXPECT_THAT(filesOf("tunes-player"),
              ElementsAre(home() + "/tunes/tunes-player.sh", desktop("tunes-player")))
      << "the folder may hold anything besides";
  for (const char* id : {"climbs", "stale", "shell"})
    EXPECT_THAT(filesOf(id), ElementsAre("none")) << id;
  EXPECT_NE(host.host().installedApplications->remove(*find("krita"), {}, nullptr), "");
}

}  // namespace
}  // namespace brisko
