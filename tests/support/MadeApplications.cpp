#include "MadeApplications.h"

#include "PropertyList.h"

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

// A binary list with an identifier, a version and a name.
constexpr char kBinaryInformation[] =
    "bplist00\xd3\x01\x02\x03\x04\x05\x06_\x10\x12"
    "CFBundleIdentifier\x5c"
    "CFBundleName_\x10\x1a"
    "CFBundleShortVersionString_\x10\x12"
    "com.example.binaryVBinaryS2.5\x08\x0f$1Ncj\x00\x00\x00\x00\x00\x00\x01\x01\x00\x00"
    "\x00\x00\x00\x00\x00\x07\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00n";

void makeFile(const fs::path& path, std::size_t bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << "x";
  fs::resize_file(path, bytes);
}

void makeText(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

void setInformation(const std::string& bundle, const std::string& text) {
  makeText(bundle + "/Contents/Info.plist", text);
}

}  // namespace

std::string makeBundle(const std::string& root, const MadeBundle& bundle) {
  const std::string path = root + "/" + bundle.path;
  PropertyList::Dictionary facts;
  const auto set = [&](const char* key, const std::string& value) {
    if (!value.empty()) facts[key] = value;
  };
  set("CFBundleIdentifier", bundle.identifier);
  set("CFBundleShortVersionString", bundle.version);
  set("CFBundleName", bundle.name);
  set("CFBundleExecutable", bundle.executable);
  setInformation(path, PropertyList(std::move(facts)).xml());
  makeFile(path + "/Contents/MacOS/program", bundle.bytes);
  return path;
}

void makeFortyBundles(const std::string& root) {
  const std::string home = root + "/Users/anna";
  // 22 plain ones, at any depth.
  for (int i = 0; i < 22; ++i) {
    const std::string name = "Tool " + std::to_string(i);
    const char* folder = i < 12   ? "Applications/"
                         : i < 18 ? "Applications/Suite/Inner/"
                                  : "Users/anna/Applications/";
    makeBundle(root,
               {folder + name + ".app", "com.example.tool" + std::to_string(i),
                "1." + std::to_string(i), name, "", 10'000 * static_cast<std::size_t>(i + 1)});
  }
  makeBundle(
      root, {"Applications/Test App.app", "com.example.testapp", "3.1", "Test App", "", 2'000'000});
  makeBundle(root, {"Applications/Notes.app", "com.example.notes", "1.0", "Notes", "", 500'000});
  makeBundle(root, {"Applications/Notes Pro.app", "com.example.notespro", "2.0", "Notes Pro", ""});
  makeBundle(root, {"Developer/Applications/Probe.app", "com.example.probe", "0.9", "Probe", ""});
  // Four whose descriptions are no use, or in another form.
  fs::create_directories(root + "/Applications/Bare.app");
  setInformation(root + "/Applications/Broken.app", "<plist><dict><key>CFBundle");
  setInformation(root + "/Applications/Huge.app", "");
  fs::resize_file(root + "/Applications/Huge.app/Contents/Info.plist", 1U << 30U);
  setInformation(root + "/Applications/Binary.app",
                 std::string(kBinaryInformation, sizeof kBinaryInformation - 1));
  // Not listed: the system's own, one inside another, a file, a folder without a name.
  makeBundle(root, {"Users/anna/Applications/Mail.app", "com.apple.mail", "9", "Mail", ""});
  makeBundle(root, {"Applications/Test App.app/Contents/Helper.app", "com.example.helper", "1",
                    "Helper", ""});
  makeFile(root + "/Applications/file.app", 10);
  fs::create_directories(root + "/Applications/.app/empty");
  for (const char* widget : {"Clock", "Rates", "Tides"})
    makeBundle(root, {std::string("Library/Widgets/") + widget + ".wdgt",
                      std::string("com.example.widget.") + widget, "1", widget, ""});
  makeBundle(root, {"Users/anna/Library/Widgets/System.wdgt", "com.apple.widget", "1", "", ""});
  for (const char* plugin : {"Spotlight/Books.mdimporter", "QuickLook/Maps.qlgenerator",
                             "Dictionaries/Nordic.dictionary", "Screen Savers/Deep/Stars.plugin",
                             "Input Methods/Runes.app"})
    makeBundle(root, {std::string("Library/") + plugin, "com.example.plugin", "1", "", ""});
  makeFile(home + "/Library/Safari/Blocker.safariextz", 3'000);
  // What Test App left.
  makeFile(home + "/Library/Preferences/com.example.testapp.plist", 4'000);
  makeFile(home + "/Library/Caches/TestApp/data", 700'000);
  makeFile(home + "/Library/Caches/MyTest App/data", 100);
  makeFile(home + "/Library/Logs/test app.log", 1'000);
  makeFile(home + "/Downloads/Test App Installer.dmg", 300'000);
  makeFile(root + "/Library/Application Support/Test App/plug", 5'000);
  makeFile(home + "/Library/Application Support/Growl/Tickets/Test App.growlTicket", 600);
  makeFile(root + "/Library/Application Support/Growl/Tickets/Test App.growlTicket", 600);
  makeFile(home + "/Library/Application Support/Notes Pro/notes.db", 9'000);
}

void makeFlatpak(const std::string& installation, const std::string& id, const std::string& runtime,
                 const std::string& deploy) {
  const fs::path application = fs::path(installation) / "app" / id;
  const fs::path version = application / "x86_64/stable/0123";
  const std::string entry = id + ".desktop";
  makeText(version / "deploy", deploy);
  makeText(version / "metadata", "[Application]\nname=" + id + "\nruntime=" + runtime + "\n");
  makeText(version / "export" / entry, "[Desktop Entry]\nType=Application\nName=" + id +
                                           "\nExec=flatpak run " + id + "\nX-Flatpak=" + id + "\n");
  fs::create_symlink("0123", application / "x86_64/stable/active");
  fs::create_symlink("x86_64/stable", application / "current");
  const fs::path exports = fs::path(installation) / "exports/share/applications";
  fs::create_directories(exports);
  fs::create_symlink(version / "export" / entry, exports / entry);
}

}  // namespace brisko::test
