#include "DemoRoot.h"

#include "UnlinkGuard.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

struct Item {
  const char* path;
  std::size_t size;
};

constexpr Item kItems[] = {
    {"Library/Caches/com.example.Indexer/index.db", 184'320'000},
    {"Library/Caches/FontRegistry/fonts.cache", 12'400'000},
    {"Users/anna/Library/Caches/Firefox/entries.bin", 402'900'000},
    {"Users/anna/Library/Caches/Thumbnails/large.bin", 96'100'000},
    {"Users/anna/Library/Caches/com.example.Maps/tiles.db", 233'700'000},
    {"Users/anna/Library/Caches/Music Artwork/covers.bin", 61'250'000},
    {"Users/anna/Library/Caches/pip/wheels.bin", 148'020'000},
    {"Users/anna/Library/Caches/GeoServices.cache", 7'480'000},
    {"Users/anna/Library/Caches/Preview of \"Summer\nHoliday\".pdf", 2'130'000},
    {"Users/anna/Library/Logs/Sync.log", 1'940'000},
    {"private/var/log/system.log.1", 8'210'000},
    {"Users/anna/Library/Containers/com.example.Notes/Data/Library/Caches/previews/a.bin",
     318'400'000},
    {"Users/anna/Library/Containers/com.example.Chat/Data/Library/Caches/media/b.bin", 95'700'000},
    {"Users/anna/Library/Containers/com.apple.mail/Data/Library/Mail Downloads/Invoice.pdf",
     24'600'000},
    {"Users/anna/.Trash/Old presentation.key", 512'300'000},
    {"Users/anna/.Trash/Screen recording.mov", 1'204'000'000},
    {"Users/anna/Library/Developer/Xcode/DerivedData/Garden-abc/build.bin", 743'000'000},
};

}  // namespace

void DemoRoot::makeFile(std::string_view name, std::size_t size) const {
  const fs::path path = path_ + "/" + std::string(name);
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary);
  fs::resize_file(path, size);
}

void DemoRoot::fill() {
  for (const Item& item : kItems)
    makeFile(item.path, item.size);
  // The probe for full-disk access finds its folder and can list it.
  fs::create_directories(path_ + "/Users/anna/Library/Safari");
}

void DemoRoot::clear() {
  for (const auto& entry : fs::directory_iterator(path())) {
    fs::remove_all(entry.path());
  }
  fs::create_directories(path_ + "/Users/anna/Library/Safari");
}

void DemoRoot::changeOneFile() {
  makeFile("Users/anna/Library/Caches/Preview of \"Summer\nHoliday\".pdf", 2'340'000);
}

DemoRoot::DemoRoot() : path_((fs::temp_directory_path() / "brisko-demo").string()) {
  if (::mkdir(path_.c_str(), 0700) != 0) {
    std::perror(path_.c_str());
    std::exit(1);
  }
  UnlinkGuard::allow(path_);
  fill();
  const std::string home = path_ + "/Users/anna";
  ::setenv("HOME", home.c_str(), 1);
  ::setenv("USER", "anna", 1);
}

DemoRoot::~DemoRoot() {
  std::error_code error;
  fs::remove_all(path_, error);
}

}  // namespace brisko::test
