#include "MadeImage.h"

#include "TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;

struct Junk {
  const char* path;
  std::uint64_t size;
};

// "~" is the home, "@" the number of the user.
constexpr Junk kJunk[] = {
    {"/Library/Caches/com.example.fonts/store.db", 48'300'000},
    {"/Library/Caches/com.example.updates/package.tmp", 211'000'000},
    {"~/Library/Caches/com.example.browser/Cache.db", 612'400'000},
    {"~/Library/Caches/com.example.browser/fsCachedData/1", 84'000'000},
    {"~/Library/Caches/com.example.maps/tiles.bin", 157'000'000},
    {"~/Library/Caches/.hidden-cache", 2'500'000},
    {"/Library/Logs/DiagnosticReports/kernel.panic", 1'200'000},
    {"~/Library/Logs/Sync/sync.log", 730'000},
    {"/private/var/log/system.log.0.gz", 5'600'000},
    {"/private/var/log/install.log", 940'000},
    {"~/Library/Containers/com.example.notes/Data/Library/Caches/WebKit/NetworkCache", 73'000'000},
    {"~/Library/Containers/com.example.notes/Data/Library/Caches/WebKit/Media", 18'400'000},
    {"~/Library/Containers/com.example.notes/Data/Library/Caches/plain.db", 4'000},
    {"~/Library/Containers/com.example.photos/Data/Library/Caches/Thumbs/256", 341'000'000},
    {"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/A1/offer.pdf", 3'400'000},
    {"~/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/B2/plan.pdf", 8'800'000},
    {"~/Library/Application Support/MobileSync/Backup/00008030-1/Manifest.db", 4'200'000'000},
    {"~/.Trash/old video.mov", 1'900'000'000},
    {"~/.Trash/draft.txt", 1'500},
    {"/Volumes/Stick/.Trashes/@/holiday.zip", 320'000'000},
    {"~/Library/Mobile Documents/com~example~pages/.Trash/letter.pages", 700'000},
    {"~/Library/Developer/Xcode/DerivedData/App-abc/Build/app.o", 2'700'000'000},
    {"~/Library/Developer/Xcode/Archives/2026-10-01/App.xcarchive", 450'000'000},
    {"~/Library/Developer/Xcode/Products/App.app", 36'000'000},
    {"~/Library/Developer/CoreSimulator/Devices/D1/data.img", 5'100'000'000},
};

constexpr const char* kSurvivors[] = {
    "~/Documents/thesis.txt",
    "~/Pictures/wedding.jpg",
    "~/.ssh/id_ed25519",
    "~/Library/Keychains/login.keychain-db",
    "~/Library/Mail/V10/INBOX.mbox/1.emlx",
    "~/Library/Preferences/com.example.notes.plist",
    "~/Library/Application Support/Notes/notes.db",
    "~/Library/Containers/com.example.notes/Data/Documents/note.txt",
    "~/Library/Mobile Documents/com~example~pages/Documents/letter.pages",
    "~/Library/Developer/Xcode/UserData/snippets.plist",
    "/Library/Preferences/com.example.system.plist",
    "/private/var/db/records.db",
    "/Volumes/Stick/photos.zip",
    "/Applications/Notes.app/Contents/Info.plist",
};

std::string placed(const MadeImage& image, std::string path) {
  if (path.front() == '~') return image.home + path.substr(1);
  const std::size_t user = path.find('@');
  if (user != std::string::npos) path.replace(user, 1, std::to_string(::getuid()));
  return image.root + path;
}

}  // namespace

MadeImage MadeImage::build(const std::string& root) {
  MadeImage image{root, root + "/Users/anna", {}};
  for (const Junk& junk : kJunk) {
    const std::string path = placed(image, junk.path);
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path).put('\n');
    fs::resize_file(path, junk.size);
  }
  for (const char* name : kSurvivors) {
    const std::string path = placed(image, name);
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << "keep " << name;
    image.survivors.push_back(path);
  }
  return image;
}

bool MadeImage::isIntact() const {
  return std::all_of(survivors.begin(), survivors.end(),
                     [](const std::string& path) { return contentOf(path).starts_with("keep "); });
}

}  // namespace brisko::test
