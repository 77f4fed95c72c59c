#include "HostLocations.h"
#include "JunkTestHost.h"
#include "Resources.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include <sys/stat.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

// The program's own table with its absolute locations moved below `root`.
PropertyList tableBelow(const std::string& root) {
  PropertyList table = PropertyList::parse(*Resources::builtIn("HostLocations.plist"), "table");
  PropertyList::Array rows = table["locations"].array();
  for (PropertyList& row : rows) {
    const std::string location = row["location"].string();
    if (location.starts_with("/")) row.set("location", "${ROOT}" + location);
  }
  table.set("locations", rows);
  PropertyList lists = table["lists"];
  PropertyList::Array skipped = lists["notRotatedFolders"].array();
  for (PropertyList& path : skipped)
    path = PropertyList(root + path.string());
  lists.set("notRotatedFolders", skipped);
  table.set("lists", lists);
  return table;
}

HostLocations::Variables variablesBelow(const std::string& root) {
  return [root](std::string_view name) -> std::vector<std::string> {
    const std::map<std::string_view, std::string> values = {
        {"ROOT", root},
        {"HOME", root + "/home"},
        {"UID", "1000"},
        {"VOLUME", root + "/media/stick"},
        {"XDG_CACHE_HOME", root + "/home/.cache"},
        {"XDG_CONFIG_HOME", root + "/home/.config"},
        {"XDG_DATA_HOME", root + "/home/.local/share"},
    };
    const auto found = values.find(name);
    if (found == values.end()) return {};
    return {found->second};
  };
}

// What a scan of these locations would take, as "category path-below-the-root".
std::vector<std::string> takenBelow(const TemporaryFolder& folder) {
  const HostLocations host(tableBelow(folder.path()), variablesBelow(folder.path()));
  std::vector<std::string> taken;
  std::vector<SkippedPath> skipped;
  const std::atomic<bool> goOn{false};
  for (int category = 0; category < kJunkCategoryCount; ++category) {
    for (const JunkLocation& location : host.locations(category)) {
      JunkEntries found(location, skipped);
      for (JunkEntry& entry : found.entries()) {
        found.measure(entry, goOn);
        if (entry.isLeftOut) continue;
        taken.push_back(std::to_string(category) + " " +
                        entry.path.substr(folder.path().size() + 1));
      }
    }
  }
  return taken;
}

const std::vector<std::string> kMatches = {
    "0 home/.cache/fontconfig/a",
    "0 home/.cache/thumbnails/normal/x.png",
    "0 home/.cache/mesa_shader_cache/00/x",
    "0 var/cache/apt/archives/*vim_9.0_amd64.deb",
    "0 var/log/*syslog.1",
    "0 var/log/*syslog.2.gz",
    "0 var/log/*Xorg.0.log.old",
    "0 var/log/nginx/*access.log.14.gz",
    "0 var/log/libvirt/qemu/*vm.log.1",
    "0 var/log/*cron-20261101.xz",
    "0 var/crash/*_usr_bin_app.1000.crash",
    "0 var/lib/systemd/coredump/*core.app.1000.zst",
    "1 home/.cache/mozilla/firefox/p/cache2/entries/A",
    "1 home/.cache/google-chrome/Default/Cache/f",
    "1 home/.config/Slack/Cache/f",
    "1 home/.config/Slack/Code Cache/f",
    "1 home/.config/chromium/Default/GPUCache/f",
    "1 home/.var/app/org.example.App/cache/webkit/f",
    "1 home/snap/player/42/.cache/player/f",
    "1 home/snap/player/common/.cache/mesa/f",
    "2 home/.cache/thunderbird/p.default/cache2/f",
    "2 home/.cache/evolution/http/f",
    "3 home/.cache/media-art/album.jpeg",
    "3 home/.cache/rhythmbox/info/x",
    "3 home/.cache/spotify/Data/a/b",
    "4 home/.local/share/Trash/files/*old.txt",
    "4 home/.local/share/Trash/files/folder/inside",
    "4 media/stick/.Trash-1000/files/*photo.jpg",
    "4 media/stick/.Trash/1000/files/*song.ogg",
    "5 home/.cache/pip/http/a",
    "5 home/.npm/_cacache/index/a",
    "5 home/.gradle/caches/modules-2/a",
    "5 home/.cargo/registry/cache/a.crate",
    "5 home/.cargo/registry/src/a/lib.rs",
    "5 home/.cargo/git/checkouts/a/b",
    "5 home/.cache/go-build/0a/x",
    "5 home/go/pkg/mod/cache/download/a.zip",
    "5 home/.cache/ccache/3/x",
    "5 home/.ccache/f/x",
    "5 home/.cache/pypoetry/artifacts/a",
};

const std::vector<std::string> kSurvivors = {
    // in the cache folder, and yet no cache
    "home/.cache/rclone/vfs/remote/not-uploaded.doc",
    "home/.cache/rclone/bisync/a.lst",
    "home/.cache/JetBrains/IdeaIC2026.1/LocalHistory/changes.storageData",
    "home/.cache/Google/AndroidStudio2026.1/LocalHistory/changes.storageData",
    "home/.cache/nvim/undo/file",
    "home/.cache/vim/swap/file.swp",
    "home/.cache/emacs/auto-save/file",
    "home/.cache/xournalpp/autosaves/1.xopp",
    "home/.cache/mypaint/doc.1/autosave/data",
    "home/.cache/RawTherapee/profiles/a.pp3",
    "home/.cache/zsh/history",
    "home/.cache/sessions/xfce4-session-host:0",
    "home/.cache/keyring-AB12/control",
    "home/.cache/keepassxc/keepassxc.ini",
    "home/.cache/ibus/dbus-1",
    "home/.cache/clipboard-indicator@example/registry.txt",
    "home/.cache/huggingface/token",
    "home/.cache/pypoetry/virtualenvs/a/pyvenv.cfg",
    "home/.cache/deno/location_data/kv.sqlite3",
    "home/.cache/containers/short-name-aliases.conf",
    "home/.cache/evolution/calendar/offline.db",
    "home/.cache/evolution/mail/a/folders.db",
    "home/.cache/thunderbird/p.default/records",
    "home/.cache/spotify/Storage/offline-song",
    "home/.cache/rhythmbox/album-art/own-cover.jpg",
    "home/.cache/go-build/fuzz/found-input",
    "home/.cache/ccache/ccache.conf",
    "home/.cache/rofi3.runcache",
    "home/.cache/lonely.db",
    // a program that no rule names, told by what it keeps
    "home/.cache/unknown-editor/autosave/novel.txt",
    "home/.cache/unknown-game/saves/slot1",
    "home/.cache/unknown-tool/data/.git/HEAD",
    "home/.cache/unknown-browser/user-data/Login Data",
    "home/.cache/unknown-client/Session.dat",
    // the same programs inside Flatpak and Snap
    "home/.var/app/com.github.xournalpp/cache/xournalpp/autosaves/1.xopp",
    "home/.var/app/org.example.App/cache/tmp/unsaved",
    "home/.var/app/org.example.App/data/state.db",
    "home/.var/app/org.example.App/config/settings",
    "home/snap/player/42/.config/settings",
    "home/snap/player/common/library.db",
    // next to what may go
    "home/.config/Slack/Local Storage/leveldb/1",
    "home/.config/Slack/Preferences",
    "home/.config/PlainApp/Cache/only-copy",
    "home/.config/chromium/Default/Login Data",
    "home/.config/google-chrome/Default/History",
    "home/.mozilla/firefox/p/places.sqlite",
    "home/.thunderbird/p.default/Mail/Local Folders/Inbox",
    "home/.npm/_npx/running/index.js",
    "home/.npmrc",
    "home/.gradle/gradle.properties",
    "home/.gradle/wrapper/dists/a",
    "home/.m2/repository/own/artifact.jar",
    "home/.cargo/credentials.toml",
    "home/.cargo/bin/tool",
    "home/.cargo/registry/index/a",
    "home/.cargo/git/db/a",
    "home/go/src/own/main.go",
    "home/go/bin/tool",
    "home/go/pkg/mod/own@v1/a.go",
    "home/.local/share/Trash/info/old.txt.trashinfo",
    "home/.local/share/keyrings/login.keyring",
    "home/Documents/thesis.odt",
    "home/.ssh/id_ed25519",
    "media/stick/photos/a.jpg",
    "media/stick/.Trash-1001/files/of-another-user",
    // the system's
    "var/cache/apt/archives/partial/half.deb",
    "var/cache/apt/archives/lock",
    "var/cache/apt/pkgcache.bin",
    "var/log/syslog",
    "var/log/Xorg.0.log",
    "var/log/wtmp",
    "var/log/app.d",
    "var/log/dump.sql.gz",
    "var/log/apt/eipp.log.xz",
    "var/log/nginx/access.log",
    "var/log/mysql/mariadb-bin.000001",
    "var/log/mysql/relay.1",
    "var/log/installer/initial-status.1.gz",
    "var/log/dist-upgrade/state.1.gz",
    "var/log/journal/0123/system.journal",
    "var/crash/202611210900/vmcore",
    "var/lib/systemd/random-seed",
};

// "category path", in which the entry is the part up to the fifth name or the "*".
std::string entryOf(const std::string& match, const std::vector<std::string>& taken) {
  std::string plain = match;
  std::erase(plain, '*');
  for (const std::string& entry : taken) {
    if (plain == entry || plain.starts_with(entry + "/")) return entry;
  }
  return "";
}

TEST(HostLocationRules, takeWhatIsJunkInItsCategoryAndNothingThatMustSurvive) {
  TemporaryFolder folder;
  TestHost host(folder.path());
  for (const std::string& match : kMatches) {
    std::string path = match.substr(2);
    std::erase(path, '*');
    folder.file(path, "junk");
  }
  for (const std::string& path : kSurvivors)
    folder.file(path, "keep");
  fs::permissions(folder / "media/stick/.Trash", fs::perms::sticky_bit, fs::perm_options::add);
  // Links, sockets and pipes in a cache belong to somebody's set-up.
  folder.file("data/models/big");
  folder.link("home/.cache/models", folder / "data/models");
  ASSERT_EQ(mkfifo((folder / "home/.cache/control").c_str(), 0600), 0);
  // Links on the way lead to what is not ours.
  folder.file("elsewhere/cache/webkit/f");
  folder.link("home/.var/app/org.example.Link", folder / "elsewhere");
  folder.link("home/snap/player/current", folder / "home/snap/player/42");

  const std::vector<std::string> taken = takenBelow(folder);
  std::set<std::string> used;
  for (const std::string& match : kMatches) {
    const std::string entry = entryOf(match, taken);
    EXPECT_NE(entry, "") << "not found: " << match;
    used.insert(entry);
  }
  for (const std::string& path : kSurvivors) {
    for (const std::string& entry : taken) {
      EXPECT_FALSE(path == entry.substr(2) || path.starts_with(entry.substr(2) + "/"))
          << entry << " would take " << path;
    }
  }
  for (const std::string& entry : taken)
    EXPECT_TRUE(used.contains(entry)) << "unexpected: " << entry;
  EXPECT_EQ(std::set<std::string>(taken.begin(), taken.end()).size(), taken.size())
      << "an entry stands in one category only";
}

TEST(HostLocationRules, aSharedTrashCountsOnlyWhileItsFolderIsSticky) {
  TemporaryFolder folder;
  TestHost host(folder.path());
  folder.file("media/stick/.Trash/1000/files/a");
  EXPECT_THAT(takenBelow(folder), IsEmpty());
  fs::permissions(folder / "media/stick/.Trash", fs::perms::sticky_bit, fs::perm_options::add);
  EXPECT_THAT(takenBelow(folder), ElementsAre("4 media/stick/.Trash/1000/files/a"));
  fs::rename(folder / "media/stick/.Trash", folder / "media/stick/real");
  folder.link("media/stick/.Trash", folder / "media/stick/real");
  EXPECT_THAT(takenBelow(folder), IsEmpty());
}

TEST(HostLocationRules, aTableThatIsNotUnderstoodGivesNothing) {
  TemporaryFolder folder;
  TestHost host(folder.path());
  folder.file("home/.cache/fontconfig/a");
  const auto locationsOf = [&](const PropertyList& row) {
    PropertyList good;
    good.set("category", 0);
    good.set("location", "${XDG_CACHE_HOME}");
    PropertyList table;
    table.set("locations", PropertyList::Array{good, row});
    return HostLocations(table, variablesBelow(folder.path())).locations(0).size();
  };
  PropertyList row;
  row.set("category", 1);
  row.set("location", "${HOME}");
  EXPECT_EQ(locationsOf(row), 1U);
  for (const auto& [key, value] :
       std::map<std::string, PropertyList>{{"exclude", PropertyList::Array{"@unknown"}},
                                           {"exclude", PropertyList("history")},
                                           {"include", PropertyList::Array{}},
                                           {"kinds", PropertyList::Array{"fifo"}},
                                           {"excludes", PropertyList::Array{"a"}},
                                           {"category", 6},
                                           {"category", PropertyList()},
                                           {"location", PropertyList("")}}) {
    PropertyList broken = row;
    broken.set(key, value);
    EXPECT_EQ(locationsOf(broken), 0U) << key;
  }
  EXPECT_TRUE(host.logged(
      "HostLocations.plist: location 2: unknown list @unknown; no host locations are used"));
}

// A cache folder that is the home, or holds the home or other data, is somebody's mistake.
TEST(HostLocationRules, aBaseFolderThatHoldsMoreThanACacheIsNotBelieved) {
  TemporaryFolder folder;
  TestHost outer(folder.path());
  folder.file("home/thesis/chapter1.txt");
  const std::string home = folder / "home";
  const Environment homeVariable("HOME", home.c_str());
  const auto cacheLocations = [&](const std::string& cache) {
    const Environment variable("XDG_CACHE_HOME", cache.c_str());
    auto before = Host::install(makeHost({}));
    Host::current().workspace = std::make_unique<FakeWorkspace>();
    const auto locations = HostLocations::current().locations(0);
    Host::install(std::move(before));
    return std::count_if(locations.begin(), locations.end(),
                         [&](const JunkLocation& location) { return location.path == cache; });
  };
  EXPECT_EQ(cacheLocations(folder / "home/.cache"), 1);
  EXPECT_EQ(cacheLocations(folder / "scratch/cache"), 1);
  for (const std::string& wrong :
       {home, folder.path(), std::string("/"), std::string("/home"), home + "/.local",
        home + "/.config", home + "/x/../../home", std::string("relative")}) {
    EXPECT_EQ(cacheLocations(wrong), 0) << wrong;
  }
}

TEST(HostLocationRules, areLeftOutBelowAnotherRoot) {
  TemporaryFolder folder;
  JunkTestHost host(folder.path());
  folder.file("Users/anna/.cache/fontconfig/a");
  for (int category = 0; category < kJunkCategoryCount; ++category) {
    EXPECT_TRUE(HostLocations::current().locations(category).empty());
  }
}

}  // namespace
}  // namespace brisko::test
