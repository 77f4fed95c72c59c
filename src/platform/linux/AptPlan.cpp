#include "AptPlan.h"

#include "DpkgDatabase.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace brisko {
namespace {

// Held by what else the machine starts and stops with.
constexpr std::array<std::string_view, 8> kInitSystems = {
    "init", "openrc", "runit", "runit-init", "systemd", "systemd-sysv", "sysvinit-core", "upstart"};

std::string_view nextLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

// Takes a number and the words after it from the front.
std::optional<std::size_t> takeCount(std::string_view& line, std::string_view words) {
  std::size_t count = 0;
  const auto [rest, error] = std::from_chars(line.data(), line.data() + line.size(), count);
  if (error != std::errc()) return std::nullopt;
  std::string_view after = line.substr(static_cast<std::size_t>(rest - line.data()));
  if (!after.starts_with(words)) return std::nullopt;
  line = after.substr(words.size());
  return count;
}

class Reader {
 public:
  AptSimulation read(std::string_view output, int status) {
    while (!output.empty())
      take(nextLine(output));
    if (status != 0) complain(fmt::format("apt-get ended with status {}.", status));
    if (!counted_) {
      complain("apt-get did not say how much it would remove.");
    } else if (*counted_ != found_.removes.size()) {
      complain("What apt-get would remove does not add up.");
    }
    if (!error_.empty()) found_.problem = error_;  // the cause of all others
    std::sort(found_.removes.begin(), found_.removes.end());
    std::sort(found_.leavesUnused.begin(), found_.leavesUnused.end());
    return std::move(found_);
  }

 private:
  void take(std::string_view line) {
    if (line.starts_with("  ")) {
      if (isUnusedList_) takeUnused(line);
      return;
    }
    if (isBrokenList_ && line.starts_with(" ")) return takeBroken(line.substr(1));
    isBrokenList_ = line == "The following packages have unmet dependencies:";
    isUnusedList_ =
        line.find("automatically installed and") != std::string_view::npos && line.ends_with(':');
    if (line.starts_with("Remv ")) {
      takeRemoval(line.substr(5));
    } else if (line.starts_with("Inst ") || line.starts_with("Conf ")) {
      complain(fmt::format("Removing it would install or change {}.",
                           line.substr(5, line.find(' ', 5) - 5)));
    } else if (line.starts_with("Purg ")) {
      complain("Removing it would purge settings.");
    } else if (line.starts_with("The following held packages")) {
      complain("It is held, or something that would go with it is.");
    } else if (line.starts_with("E: ")) {
      if (error_.empty()) error_ = line.substr(3);
    } else if (line.find(" newly installed, ") != std::string_view::npos) {
      takeCounts(line);
    } else if (line.find("not fully installed or removed") != std::string_view::npos) {
      complain("Some packages are only half installed; that has to be repaired first.");
    }
  }

  // "NAME : Depends: OTHER but it is not going to be installed"
  void takeBroken(std::string_view line) {
    const std::string_view name = line.substr(0, line.find(' '));
    if (isPackageName(name)) found_.broken.emplace_back(name);
  }

  // "NAME [VERSION]", after which may stand what would be broken in between: "[other:amd64 ]".
  void takeRemoval(std::string_view rest) {
    const std::size_t blank = rest.find(' ');
    const std::string_view name = rest.substr(0, blank);
    const bool isPlain = isPackageName(name) && blank != std::string_view::npos &&
                         rest.substr(blank).starts_with(" [") && rest.ends_with(']');
    if (!isPlain) return complain("A line of apt-get's answer is not understood.");
    found_.removes.emplace_back(name);
  }

  // "0 upgraded, 0 newly installed, 1 to remove and 12 not upgraded."
  void takeCounts(std::string_view line) {
    const auto upgraded = takeCount(line, " upgraded, ");
    const auto installed = upgraded ? takeCount(line, " newly installed, ") : std::nullopt;
    const auto removed = installed ? takeCount(line, " to remove and ") : std::nullopt;
    const auto kept = removed ? takeCount(line, " not upgraded.") : std::nullopt;
    if (!kept || !line.empty() || *upgraded != 0 || *installed != 0) {
      return complain("Removing it would do more than remove.");
    }
    counted_ = removed;
  }

  void takeUnused(std::string_view line) {
    while (!line.empty()) {
      const std::size_t end = std::min(line.find(' '), line.size());
      if (isPackageName(line.substr(0, end))) {
        found_.leavesUnused.emplace_back(line.substr(0, end));
      }
      line.remove_prefix(std::min(end + 1, line.size()));
    }
  }

  void complain(std::string what) {
    if (found_.problem.empty()) found_.problem = std::move(what);
  }

  AptSimulation found_;
  std::string error_;
  std::optional<std::size_t> counted_;
  bool isUnusedList_ = false;
  bool isBrokenList_ = false;
};

std::string objection(const std::string& name, const DpkgPackage* package,
                      const std::string& kernelRelease) {
  const std::string_view plain = std::string_view(name).substr(0, name.find(':'));
  if (package == nullptr) return fmt::format("{} is not installed any more.", name);
  if (package->isEssential) return fmt::format("The system does not work without {}.", name);
  if (plain.starts_with("linux-image-") && plain.substr(12).starts_with(kernelRelease)) {
    return fmt::format("{} is the kernel that runs.", name);
  }
  if (std::find(kInitSystems.begin(), kInitSystems.end(), plain) != kInitSystems.end()) {
    return fmt::format("The system does not start without {}.", name);
  }
  if (plain == "brisko" || plain.starts_with("brisko-")) return "Brisko would remove itself.";
  return "";
}

}  // namespace

AptSimulation parseAptSimulation(std::string_view output, int status) {
  return Reader().read(output, status);
}

UninstallPlan aptPlan(const std::string& package, const AptSimulation& simulation,
                      const DpkgDatabase& database, const std::string& kernelRelease) {
  UninstallPlan plan;
  plan.command = "apt-get remove " + package;
  plan.removes = {package};
  plan.leavesUnused = simulation.leavesUnused;
  plan.refusal = simulation.problem;
  // apt-get finds no answer at all for what would break something essential.
  for (const std::string& name : simulation.broken) {
    const DpkgPackage* facts = database.find(name);
    if (facts == nullptr || !facts->isEssential) continue;
    plan.refusal = fmt::format("{}, without which the system does not work, needs it.", name);
    break;
  }
  bool isAmong = false;
  for (const std::string& name : simulation.removes) {
    const DpkgPackage* facts = database.find(name);
    if (facts != nullptr) plan.bytes += facts->bytes;
    const std::string why = objection(name, facts, kernelRelease);
    if (!why.empty()) plan.refusal = why;
    if (name == package) {
      isAmong = true;
    } else {
      plan.alsoRemoves.push_back(name);
    }
  }
  if (plan.refusal.empty() && !isAmong) plan.refusal = package + " is not installed any more.";
  return plan;
}

}  // namespace brisko
