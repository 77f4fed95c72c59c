#include "Machine.h"
#include "ProtectedPaths.h"
#include "Removal.h"
#include "Resources.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;

PropertyList builtIn() {
  return PropertyList::parse(*Resources::builtIn("SystemFile.plist"), "SystemFile.plist");
}

ProtectedPaths rulesFor(const std::string& root) {
  ProtectedPaths::Layout layout;
  layout.roots = {"", root};
  layout.homes = {"/srv/people/anna", root + "/srv/people/anna"};
  layout.variables = {{"XDG_DATA_HOME", root + "/data"}, {"XDG_CACHE_HOME", root + "/cache"}};
  return ProtectedPaths(builtIn(), layout);
}

class ProtectedPathsTest : public testing::Test {
 protected:
  TemporaryFolder folder;
};

const char* const kRefused[] = {
    // Clean-ups of the past have taken each of these from somebody.
    "/",
    "/home",
    "/home/anna",
    "/home/.",
    "//home//anna/",
    "/Users/anna",
    "/root",
    "/srv/people/anna",
    "/bin",
    "/bin/sh",
    "/boot/vmlinuz",
    "/dev/null",
    "/etc",
    "/etc/ssh/keys/a",
    "/lib64/x",
    "/proc/1",
    "/run/systemd",
    "/sbin/init",
    "/sys/kernel",
    "/usr",
    "/usr/bin/ls",
    "/usr/local",
    "/usr/local/bin",
    "/usr/share/doc/x/y",
    "/var",
    "/var/cache",
    "/var/cache/apt",
    "/var/cache/apt/archives",
    "/var/lib",
    "/var/lib/dpkg/status",
    "/var/lib/postgresql",
    "/var/spool/cron/crontabs/anna",
    "/opt",
    "/tmp",
    "/var/tmp",
    "/srv",
    "/srv/people",
    "/mnt",
    "/media",
    "/System/Library/x/y",
    "/Library",
    "/Library/Caches",
    "/Library/Logs",
    "/Library/Keychains/a",
    "/Applications",
    "/Applications/Utilities",
    "/Volumes",
    "/Volumes/USB",
    "/Volumes/USB/.Trashes",
    "/private/etc/hosts",
    "/private/var",
    "/private/var/log",
    "/private/var/db/x/y",
    "/home/anna/Documents",
    "/home/anna/Desktop",
    "/home/anna/.config",
    "/home/anna/.local",
    "/home/anna/.local/share",
    "/home/anna/.cache",
    "/home/anna/.local/share/Trash",
    "/home/anna/.local/share/Trash/files",
    "/home/anna/.Trash",
    "/Users/anna/Library",
    "/Users/anna/Library/Caches",
    "/Users/anna/Library/Containers/com.apple.mail",
    "/Users/anna/Library/Application Support/MobileSync/Backup",
    "/home/anna/.ssh",
    "/home/anna/.ssh/id",
    "/root/.ssh/a/b",
    "/home/anna/.gnupg/private-keys-v1.d/k",
    "/home/anna/.local/share/keyrings/login.keyring",
    "/home/anna/.password-store/a.gpg",
    "/Users/anna/Library/Keychains/login.keychain-db",
    "/srv/people/anna/.ssh/id",
    "/Users/anna/Library/Mail/V9/a/b.emlx",
    "/home/anna/Maildir/cur/1",
    "/home/anna/.thunderbird",
    "/home/anna/.thunderbird/x.default",
    "/home/anna/.thunderbird/x.default/Mail",
    "/home/anna/.thunderbird/x.default/ImapMail/imap.example/INBOX",
    "/home/anna/.local/share/evolution/mail/local/cur/1",
    "/var/mail/anna",
    "/var/spool/mail/anna",
    "/var/log",
    "/var/log/syslog",
    "/var/log/Xorg.0.log",
    "/var/log/nginx",
    "/var/log/journal",
    "/var/log/nginx/access.log",
    "/data/keyrings/a",
    "/cache",
};

const char* const kAllowed[] = {
    "/Users/anna/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/x",
    "/Users/anna/Library/Containers/com.example.app/Data/Library/Caches/x/y",
    "/Users/anna/Library/Caches/com.example",
    "/Users/anna/Library/Logs/x.log",
    "/Users/anna/Library/Application Support/MobileSync/Backup/0123",
    "/Users/anna/.Trash/Mail",
    "/Users/anna/Library/Developer/Xcode/DerivedData/App-x",
    "/Volumes/USB/.Trashes/501/old",
    "/Users/anna/Library/Mobile Documents/com~example/.Trash/x",
    "/Library/Logs/x.log",
    "/Library/Caches/x",
    "/private/var/log/system.log.0.gz",
    "/private/var/log/system.log",
    "/Applications/App.app",
    "/Users/anna/Applications/App.app",
    "/Users/anna/Library/Widgets/a.wdgt",
    "/Users/anna/Library/Preferences/com.example.plist",
    "/home/anna/.cache/mozilla",
    "/home/anna/.cache/evolution",
    "/home/anna/Documents/Mail",
    "/home/anna/Downloads/big.iso",
    "/home/anna/.config/app",
    "/home/anna/.sshd",
    "/home/anna/x/.ssh",
    "/home/anna/.thunderbird/x.default/Cache2",
    "/home/anna/.local/share/Trash/files/.ssh",
    "/home/anna/.local/share/Trash/info/a.trashinfo",
    "/home/anna/.npm/_cacache",
    "/home/anna/.var/app/org.example.App/cache/x",
    "/home/anna/snap/app/common/.cache/x",
    "/home/anna/go/pkg/mod/cache",
    "/home/anna/.gradle/caches",
    "/home/anna/.kube/cache",
    "/var/cache/apt/archives/a_1_amd64.deb",
    "/var/log/syslog.1",
    "/var/log/syslog.2.gz",
    "/var/log/apt/history.log.1.gz",
    "/var/log/dnf.log-20261101",
    "/var/crash/a.crash",
    "/var/log/journal/0123/system@0005.journal",
    "/var/lib/systemd/coredump/core.a",
    "/tmp/x",
    "/var/tmp/x",
    "/opt/app",
    "/cache/x",
};

TEST_F(ProtectedPathsTest, TheTableRefusesWhatMustStayAndNothingThatIsJunk) {
  const std::string root = folder.folder("image");
  const ProtectedPaths rules = rulesFor(root);
  for (const std::string path : kRefused) {
    EXPECT_TRUE(rules.reasonFor(root + path)) << "below the root: " << path;
    if (path.starts_with("/data") || path.starts_with("/cache")) continue;
    EXPECT_TRUE(rules.reasonFor(path)) << path;
  }
  for (const std::string path : kAllowed) {
    EXPECT_EQ(rules.reasonFor(root + path).value_or(""), "") << "below the root: " << path;
    EXPECT_EQ(rules.reasonFor(path).value_or(""), "") << path;
  }
  EXPECT_TRUE(rules.reasonFor(root));
  EXPECT_TRUE(rules.reasonFor(folder.path())) << "the root lies in it";
}

TEST_F(ProtectedPathsTest, ATableThatIsNotUnderstoodRefusesEverything) {
  ProtectedPaths::Layout layout;
  layout.roots = {""};
  const std::string path = folder / "x";
  const auto array = [](const char* place) { return PropertyList(PropertyList::Array{place}); };
  const auto table = [&](const char* key, PropertyList value) {
    return PropertyList(PropertyList::Dictionary{{key, std::move(value)}});
  };
  EXPECT_FALSE(ProtectedPaths(table("self", array("/a")), layout).reasonFor(path));
  for (const PropertyList& broken :
       {PropertyList(), PropertyList("text"), PropertyList(PropertyList::Dictionary{}),
        table("self", PropertyList("/a")), table("self", PropertyList(PropertyList::Array{})),
        table("slef", array("/a")), table("self", array("a")), table("self", array("")),
        table("self", array("/a/../b")), table("self", array("~anna/x")), table("self", array("$")),
        table("self", PropertyList(PropertyList::Array{1}))}) {
    EXPECT_TRUE(ProtectedPaths(broken, layout).reasonFor(path)) << broken.xml();
    ProtectedPaths added(builtIn(), layout);
    added.add(broken);
    EXPECT_TRUE(added.reasonFor(path)) << broken.xml();
  }
}

TEST_F(ProtectedPathsTest, TheEnvironmentAddsRulesAndTakesNoneAway) {
  const TestHost host(folder.folder("image"));
  folder.file("resources/SystemFile.plist",
              "<plist version=\"1.0\"><dict><key>everything</key><array>"
              "<string>~/Thesis</string></array></dict></plist>");
  const Environment variable("BRISKO_RESOURCES", (folder / "resources").c_str());
  const auto refuses = [&](const std::string& path) {
    return ProtectedPaths::current()->reasonFor(path).has_value();
  };
  EXPECT_TRUE(refuses(folder / "image/Users/anna/Thesis/chapter"));
  EXPECT_TRUE(refuses(folder / "image/Users/anna/.ssh/id"));
  EXPECT_TRUE(refuses("/etc/passwd"));
  EXPECT_FALSE(refuses(folder / "image/Users/anna/.cache/x"));

  const Environment broken("BRISKO_RESOURCES", folder.folder("other").c_str());
  folder.file("other/SystemFile.plist", "<plist><dict><key>");
  EXPECT_TRUE(refuses(folder / "image/Users/anna/.cache/x"));
}

TEST_F(ProtectedPathsTest, AProtectedPlaceIsKnownUnderEveryName) {
  const std::string root = folder.folder("image");
  folder.file("image/home/anna/.ssh/id", "key");
  folder.file("image/elsewhere/keys/id", "key");
  folder.folder("image/home/bert");
  folder.link("image/home/bert/.ssh", root + "/elsewhere/keys");
  folder.link("image/home/bert/to anna", "../anna");
  folder.folder("image/mnt/ssh");
  const ProtectedPaths rules = rulesFor(root);
  EXPECT_TRUE(rules.reasonFor(root + "/elsewhere/keys/id")) << "what a protected link leads to";
  EXPECT_TRUE(rules.reasonFor(root + "/elsewhere"));
  EXPECT_TRUE(rules.reasonFor(root + "/home/bert/.ssh"));
  EXPECT_TRUE(
      RemovalEngine(RemovalCalls::system(), &rules).refusal(root + "/home/bert/to anna/.ssh/id"));

  const int result = inMountNamespace([&] {
    if (mount((root + "/home/anna/.ssh").c_str(), (root + "/mnt/ssh").c_str(), nullptr, MS_BIND,
              nullptr) != 0) {
      return 1;
    }
    return rules.reasonFor(root + "/mnt/ssh/id") ? 0 : 2;
  });
  EXPECT_TRUE(result == 0 || result == -2) << result;
}

TEST_F(ProtectedPathsTest, NobodyProtectsAnotherUsersFilesByALink) {
  if (!isRoot()) GTEST_SKIP() << "because files of another user need root";
  const std::string root = folder.folder("image");
  folder.folder("image/home/bert");
  folder.file("image/home/anna/.cache/x");
  ASSERT_EQ(lchown(folder.link("image/home/bert/.ssh", root + "/home/anna/.cache").c_str(), kNobody,
                   kNobody),
            0);
  EXPECT_FALSE(rulesFor(root).reasonFor(root + "/home/anna/.cache/x"));
}

TEST_F(ProtectedPathsTest, TheProgramItselfStays) {
  const std::string self = fs::read_symlink("/proc/self/exe");
  EXPECT_TRUE(ProtectedPaths::current()->reasonFor(self));
  EXPECT_TRUE(ProtectedPaths::current()->reasonFor(fs::path(self).parent_path()));
  EXPECT_TRUE(
      ProtectedPaths::current()->reasonFor(buildTree() + "/libexec/brisko/brisko-removal-helper"));
}

TEST(PatternTest, StarsAndDigits) {
  const auto matches = [](const char* name, const char* pattern) {
    return matchesPattern(name, pattern);
  };
  EXPECT_TRUE(matches("a", "a"));
  EXPECT_TRUE(matches("", "*"));
  EXPECT_TRUE(matches("x.12.gz", "*.#.gz"));
  EXPECT_TRUE(matches("\xff.1", "*.#"));
  EXPECT_FALSE(matches("x.", "*.#"));
  EXPECT_FALSE(matches("x.1a", "*.#"));
  EXPECT_FALSE(matches("ab", "a"));
  EXPECT_FALSE(matches("", "#"));
}

}  // namespace
}  // namespace brisko::test
