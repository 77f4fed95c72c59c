#pragma once

#include "Signature.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace brisko::diskutil {

/// A kind of file system that can be made.
struct Format {
  std::string_view type;     ///< as the kernel calls it
  std::string_view name;     ///< as lists show it: "MS-DOS FAT32"
  std::string_view program;  ///< what makes it
  std::string_view package;  ///< where Debian has that; empty when Debian has it nowhere
  std::uint64_t least = 0;   ///< smallest device in bytes
  std::uint64_t most = 0;    ///< largest; 0 for no limit that matters
  std::string_view dosCode;  ///< partition type in a DOS table
  std::string_view gptCode;  ///< and in a GUID table
};

/// The format that one of its words names ("MS-DOS FAT32", "fat32", "ExFAT" …, letters of either
/// case); null for an unknown word.
const Format* formatNamed(std::string_view word);
/// The format that makes what is there again; null when nothing here can.
const Format* formatOf(const Signature& signature);
/// The names of the formats, for messages.
std::string formatNames();

/// The words after the program's path that make the file system on `node`. `whole`: a whole disk,
/// which some programs must be told. `owner` gets the top folder where the format knows owners.
std::vector<std::string> makingArguments(const Format& format, const std::string& label,
                                         const std::string& node, bool whole, uid_t owner,
                                         gid_t group);

/// How the programs that give a name are called.
struct Labeller {
  std::string_view program;
  std::string_view package;
  bool whileMounted = false;
  std::vector<std::string> arguments;  ///< after the program's path
};
/// Nothing when no program here can rename a file system of this type.
std::optional<Labeller> labellerFor(const std::string& type, const std::string& label,
                                    const std::string& node);

/// Why a file system of this type cannot have this name; empty when it can.
std::string labelProblem(std::string_view type, std::string_view label);
/// The name as such a file system writes it: FAT knows capitals only.
std::string storedLabel(std::string_view type, std::string_view label);

struct FileSystemNames {
  std::string name;     ///< the short one: "MS-DOS FAT32", "ext4"
  std::string visible;  ///< for people
  bool keepsOwners = false;
};
/// Empty names where there is no file system.
FileSystemNames namesOf(const Signature& signature);

/// What a partition table calls a partition of this code, or the table itself, in the words of a
/// disk list; the code itself when that is unknown.
std::string contentOfPartition(const std::string& code);
std::string contentOfTable(const std::string& tableType);
/// True for the partition that firmware starts the machine from.
bool isBootPartition(const std::string& code);

}  // namespace brisko::diskutil
