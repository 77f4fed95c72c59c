#pragma once

#include "DiskAndVolumeObj.h"
#include "ExecCommand.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace brisko {

/// What the confirmation panel starts with.
struct FormatQuestion {
  std::string title;
  std::string text;
  std::string name;
  std::string type;
  bool typeIsFixed = false;  ///< the type menu cannot be opened
};

/// One format, decided: what will be run on which volume.
struct FormatPlan {
  enum class Way {
    erase,     ///< with the chosen type and name
    reformat,  ///< APFS: as it is; neither type nor name is chosen
    fromNtfs,  ///< always FAT32, named "NEW"
  };
  Way way = Way::erase;
  std::string type;
  std::string name;
  std::string device;
  std::string command;  ///< the command line as it will be run
};

/// The rules of formatting, by the volume's current type.
namespace DiskFormat {

/// The rows of the type menu.
inline constexpr std::array<const char*, 3> kTypes = {"ExFAT", "MS-DOS FAT32", "Journaled HFS+"};

FormatQuestion question(const std::string& volumeName, const std::string& currentType);

FormatPlan plan(const DiskAndVolumeObj& volume, const std::string& name, const std::string& type);

/// "" when the plan can be run; else how many characters of the name fit into its command.
std::string refusal(const FormatPlan& plan);

/// "" when the volume's device still holds the volume, by UUID and name; else a sentence. A
/// question can stand for long, and a device name is given to the next stick that is put in.
/// Blocks.
std::string changedSince(const DiskAndVolumeObj& volume);

/// Runs it and waits for its end: not for the main thread. A plan that was to be refused ends the
/// process. Logs the result's path.
DiskCommandEnd run(const FormatPlan& plan);

}  // namespace DiskFormat

}  // namespace brisko
