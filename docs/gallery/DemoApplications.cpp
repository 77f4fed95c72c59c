#include "DemoApplications.h"

#include "MadeApplications.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

struct Demo {
  const char* name;
  const char* identifier;
  const char* version;
  std::size_t bytes;
};

constexpr Demo kApplications[] = {
    {"Aurora Editor", "com.example.aurora", "4.2.1", 412'600'000},
    {"Aurora Editor Viewer", "com.example.auroraviewer", "1.3", 38'200'000},
    {"Bluebird", "com.example.bluebird", "12.0.3", 186'400'000},
    {"Cadence", "com.example.cadence", "2.8", 903'700'000},
    {"Field Notes", "com.example.fieldnotes", "7.1", 64'100'000},
    {"Garden Planner", "com.example.garden", "2026.1", 128'900'000},
    {"Lumen", "com.example.lumen", "3.0.2", 251'300'000},
    {"Map of \"Paths\"", "com.example.paths", "", 71'500'000},
    {"Tidewatch", "com.example.tidewatch", "1.9.4", 22'800'000},
};

void makeFile(const std::string& path, std::size_t bytes) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << "x";
  fs::resize_file(path, bytes);
}

InstalledApplication package(const char* id, const char* name, const char* version,
                             std::uint64_t bytes) {
  InstalledApplication application;
  application.kind = InstalledApplication::Kind::package;
  application.desktopID = id;
  application.name = name;
  application.version = version;
  application.packageName = id;
  application.path = "/usr/share/applications/" + application.desktopID + ".desktop";
  application.bytes = bytes;
  application.keys = {id};
  return application;
}

}  // namespace

void makeDemoApplications(const std::string& root) {
  for (const Demo& demo : kApplications) {
    makeBundle(root, {std::string("Applications/") + demo.name + ".app", demo.identifier,
                      demo.version, demo.name, "", demo.bytes});
  }
  makeBundle(root,
             {"Library/Widgets/Clock.wdgt", "com.example.clock", "1.1", "Clock", "", 900'000});
  for (const char* plugin : {"QuickLook/Maps.qlgenerator", "Dictionaries/Nordic.dictionary"})
    makeBundle(root,
               {std::string("Library/") + plugin, "com.example.plugin", "1.0", "", "", 3'400'000});
  const std::string home = root + "/Users/anna/";
  makeFile(home + "Library/Preferences/com.example.aurora.plist", 18'400);
  makeFile(home + "Library/Caches/com.example.aurora/index", 322'800'000);
  makeFile(home + "Library/Application Support/Aurora Editor/themes", 14'200'000);
  makeFile(home + "Library/Application Support/Aurora Editor Viewer/recent", 310'000);
  makeFile(home + "Downloads/Aurora Editor 4.2.dmg", 186'000'000);
  makeFile(home + ".config/sketchbook/brushes", 8'700'000);
  makeFile(home + ".cache/sketchbook-thumbnails/a", 41'300'000);
  makeFile(home + ".local/share/sketchbooks/old", 2'600'000);
}

DemoInstalledApplications::DemoInstalledApplications() {
  applications = {package("sketchbook", "Sketchbook", "5.2.0+dfsg-2", 148'300'000),
                  package("org.example.Studio", "Studio", "24.8-1", 611'000'000)};
  UninstallPlan plan;
  plan.removes = {"sketchbook"};
  plan.alsoRemoves = {"sketchbook-brushes"};
  plan.bytes = 171'600'000;
  plans["sketchbook"] = plan;
}

std::string DemoInstalledApplications::remove(const InstalledApplication& application,
                                              const UninstallPlan& shown,
                                              const std::function<void(double)>& progress) {
  progress(0.4);
  std::this_thread::sleep_for(std::chrono::milliseconds(900));
  std::string reason = FakeInstalledApplications::remove(application, shown, [](double) {});
  // The next picture finds it there again.
  *this = DemoInstalledApplications();
  return reason;
}

}  // namespace brisko::test
