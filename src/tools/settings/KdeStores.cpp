// KDE keeps its settings in configuration files; what runs already is told over the session bus.

#include "Bus.h"
#include "HostTools.h"
#include "LinuxHostFolders.h"
#include "SettingStores.h"
#include "Trimmed.h"

#include <string_view>
#include <thread>
#include <vector>

namespace brisko {
namespace {

// The newer desktop's tools first.
constexpr const char* kReaders[] = {"kreadconfig6", "kreadconfig5"};
constexpr const char* kWriters[] = {"kwriteconfig6", "kwriteconfig5"};

constexpr BusObject kShell = {"org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell"};
constexpr BusObject kWindowManager = {"org.kde.KWin", "/KWin", "org.kde.KWin"};
constexpr SettingPlace kColourScheme = {"kdeglobals|General", "ColorScheme"};
constexpr SettingPlace kQuietUntil = {"plasmanotifyrc|DoNotDisturb", "Until"};
constexpr SettingPlace kNightColour = {"kwinrc|NightColor", "Active"};

// The tools take a bare name to be in the configuration folder; what has folders in it is data.
std::string fileOf(std::string_view name) {
  if (name.find('/') == std::string_view::npos) return std::string(name);
  return LinuxHostFolders("").variable("XDG_DATA_HOME").value_or("") + "/" + std::string(name);
}

std::vector<std::string> keyArguments(const char* program, const SettingPlace& place) {
  const std::string_view where = place.where;
  const std::size_t bar = where.find('|');
  return {program,
          "--file",
          fileOf(where.substr(0, bar)),
          "--group",
          std::string(where.substr(bar + 1)),
          "--key",
          place.key};
}

std::optional<std::string> getConfig(const SettingPlace& place) {
  for (const char* program : kReaders) {
    const HostTools::Outcome outcome = HostTools::run(keyArguments(program, place));
    if (outcome.status == 0) return std::string(trimmed(outcome.output));
  }
  return std::nullopt;
}

void writeConfig(const SettingPlace& place, const std::string& value, bool notifies) {
  for (const char* program : kWriters) {
    std::vector<std::string> arguments = keyArguments(program, place);
    if (notifies) arguments.emplace_back("--notify");
    arguments.push_back(value);
    if (HostTools::run(arguments).status == 0) return;
  }
}

void setConfig(const SettingPlace& place, const std::string& value) {
  writeConfig(place, value, false);
}

std::optional<std::string> getColours(const SettingPlace&) {
  const auto scheme = getConfig(kColourScheme);
  if (!scheme) return std::nullopt;
  return scheme->find("Dark") != std::string::npos ? "dark" : "light";
}

void setColours(const SettingPlace&, const std::string& value) {
  HostTools::run({"plasma-apply-colorscheme", value == "dark" ? "BreezeDark" : "BreezeLight"});
}

std::optional<std::string> evaluate(const char* script) {
  std::string reason;
  const BusPointer bus = openBus(BusKind::session, reason);
  if (!bus) return std::nullopt;
  const BusMessage answer = callBus(bus.get(), kShell, "evaluateScript", reason, "s", script);
  const char* printed = nullptr;
  if (!answer || sd_bus_message_read(answer.get(), "s", &printed) < 0) return std::nullopt;
  return std::string(trimmed(printed));
}

std::optional<std::string> getPanels(const SettingPlace&) {
  auto hiding = evaluate("if (panels().length > 0) print(panels()[0].hiding)");
  return hiding && !hiding->empty() ? hiding : std::nullopt;
}

void setPanels(const SettingPlace&, const std::string& value) {
  evaluate(value == "autohide" ? "panels().forEach(panel => panel.hiding = 'autohide')"
                               : "panels().forEach(panel => panel.hiding = 'none')");
}

// What the notices' own service says; the configuration alone would not tell whether it was heard.
std::optional<std::string> getQuiet(const SettingPlace&) {
  std::string reason;
  const BusPointer bus = openBus(BusKind::session, reason);
  if (!bus) return std::nullopt;
  BusError error;
  int isQuiet = 0;
  const int status = sd_bus_get_property_trivial(
      bus.get(), "org.freedesktop.Notifications", "/org/freedesktop/Notifications",
      "org.freedesktop.Notifications", "Inhibited", error.get(), 'b', &isQuiet);
  if (status < 0) return std::nullopt;
  return isQuiet != 0 ? "true" : "false";
}

void setQuiet(const SettingPlace&, const std::string& value) {
  writeConfig(kQuietUntil, value == "true" ? "2099,1,1,0,0,0" : "", true);
  for (int wait = 0; wait < 10 && getQuiet({}) != value; ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

std::optional<std::string> getNight(const SettingPlace&) {
  const auto active = getConfig(kNightColour);
  if (!active) return std::nullopt;
  return *active == "true" ? "true" : "false";
}

void setNight(const SettingPlace&, const std::string& value) {
  writeConfig(kNightColour, value, false);
  std::string reason;
  if (const BusPointer bus = openBus(BusKind::session, reason))
    callBus(bus.get(), kWindowManager, "reconfigure", reason, "");
}

}  // namespace

const SettingStore kKdeConfig = {getConfig, setConfig};
const SettingStore kPlasmaColours = {getColours, setColours};
const SettingStore kPlasmaPanels = {getPanels, setPanels};
const SettingStore kPlasmaQuiet = {getQuiet, setQuiet};
const SettingStore kPlasmaNight = {getNight, setNight};

}  // namespace brisko
