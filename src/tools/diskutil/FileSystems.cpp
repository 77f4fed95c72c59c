#include "FileSystems.h"

#include "Utf8.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include <fmt/format.h>

namespace brisko::diskutil {
namespace {

constexpr std::uint64_t kMiB = std::uint64_t{1} << 20;
constexpr std::uint64_t kTiB = std::uint64_t{1} << 40;

constexpr std::string_view kBasicData = "ebd0a0a2-b9e5-4433-87c0-68b6b72699c7";
constexpr std::string_view kLinuxData = "0fc63daf-8483-4772-8e79-3d69d8477de4";
constexpr std::string_view kHfsData = "48465300-0000-11aa-aa11-00306543ecac";
constexpr std::string_view kBoot = "c12a7328-f81f-11d2-ba4b-00a0c93ec93b";

// FAT32 needs 65,525 clusters and counts its sectors with 32 bits.
constexpr std::array<Format, 5> kFormats = {{
    {"exfat", "ExFAT", "mkfs.exfat", "exfatprogs", 2 * kMiB, 0, "7", kBasicData},
    {"vfat", "MS-DOS FAT32", "mkfs.fat", "dosfstools", 33 * kMiB, 2 * kTiB, "c", kBasicData},
    {"hfsplus", "Journaled HFS+", "mkfs.hfsplus", "", 16 * kMiB, 0, "af", kHfsData},
    {"ext4", "ext4", "mkfs.ext4", "e2fsprogs", 2 * kMiB, 0, "83", kLinuxData},
    {"vfat", "MS-DOS FAT16", "mkfs.fat", "dosfstools", 3 * kMiB, 2048 * kMiB, "e", kBasicData},
}};
constexpr const Format& kFat32 = kFormats[1];
constexpr const Format& kFat16 = kFormats[4];

std::string lowered(std::string_view text) {
  std::string small(text);
  std::transform(small.begin(), small.end(), small.begin(),
                 [](unsigned char character) { return std::tolower(character); });
  return small;
}

/// UTF-16 units of a text, which file systems from elsewhere count names in; nothing when it is not
/// UTF-8.
std::optional<std::size_t> unitsOf(std::string_view text) {
  std::size_t units = 0;
  while (!text.empty()) {
    const std::size_t length = utf8SequenceLength(text);
    if (length == 0) return std::nullopt;
    units += length == 4 ? 2 : 1;
    text.remove_prefix(length);
  }
  return units;
}

bool hasControl(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](unsigned char character) {
    return character < 0x20 || character == 0x7F;
  });
}

struct LabelRule {
  std::string_view type;
  std::string_view who;
  std::size_t most = 0;
  bool inBytes = false;  ///< else in UTF-16 units
  std::string_view without;
};
constexpr std::array<LabelRule, 6> kLabelRules = {{
    {"vfat", "FAT", 11, true, "\"*+,./:;<=>?[\\]|"},
    {"exfat", "ExFAT", 11, false, "\"*/:<>?\\|"},
    {"hfsplus", "HFS+", 127, false, "/:"},
    {"ext", "ext", 16, true, ""},
    {"xfs", "XFS", 12, true, ""},
    {"btrfs", "btrfs", 255, true, "/\\"},
}};

bool isExt(std::string_view type) {
  return type == "ext2" || type == "ext3" || type == "ext4";
}

const LabelRule* ruleFor(std::string_view type) {
  for (const LabelRule& rule : kLabelRules)
    if (rule.type == (isExt(type) ? "ext" : type)) return &rule;
  return nullptr;
}

}  // namespace

const Format* formatNamed(std::string_view word) {
  constexpr std::pair<std::string_view, const Format*> kWords[] = {
      {"exfat", &kFormats[0]},        {"ms-dos fat32", &kFat32}, {"ms-dos", &kFat32},
      {"fat32", &kFat32},             {"fat", &kFat32},          {"msdos", &kFat32},
      {"ms-dos (fat32)", &kFat32},    {"vfat", &kFat32},         {"journaled hfs+", &kFormats[2]},
      {"jhfs+", &kFormats[2]},        {"hfs+", &kFormats[2]},    {"hfsplus", &kFormats[2]},
      {"ext4", &kFormats[3]},         {"linux", &kFormats[3]},   {"ms-dos fat16", &kFat16},
      {"ms-dos (fat16)", &kFat16},    {"fat16", &kFat16},
  };
  const std::string wanted = lowered(word);
  for (const auto& [name, format] : kWords)
    if (name == wanted) return format;
  return nullptr;
}

const Format* formatOf(const Signature& signature) {
  if (signature.type == "vfat")
    return signature.version == "FAT16" || signature.version == "FAT12" ? &kFat16 : &kFat32;
  for (const Format& format : kFormats)
    if (format.type == signature.type) return &format;
  return nullptr;
}

std::string formatNames() {
  std::string names;
  for (const Format& format : kFormats)
    names += (names.empty() ? "" : ", ") + std::string(format.name);
  return names;
}

std::vector<std::string> makingArguments(const Format& format, const std::string& label,
                                         const std::string& node, bool whole, uid_t owner,
                                         gid_t group) {
  std::vector<std::string> words;
  const auto add = [&](std::initializer_list<std::string> more) {
    words.insert(words.end(), more);
  };
  if (format.type == "vfat") {
    add({"-F", &format == &kFat16 ? "16" : "32"});
    if (whole) add({"-I"});
    if (!label.empty()) add({"-n", label});
  } else if (format.type == "exfat") {
    if (!label.empty()) add({"-L", label});
  } else if (format.type == "hfsplus") {
    add({"-J"});
    if (!label.empty()) add({"-v", label});
  } else {
    add({"-q", "-E", fmt::format("root_owner={}:{}", owner, group)});
    if (!label.empty()) add({"-L", label});
  }
  add({node});
  return words;
}

std::optional<Labeller> labellerFor(const std::string& type, const std::string& label,
                                    const std::string& node) {
  if (type == "vfat") return Labeller{"fatlabel", "dosfstools", false, {"--", node, label}};
  if (type == "exfat") return Labeller{"tune.exfat", "exfatprogs", false, {"-L", label, node}};
  if (isExt(type)) return Labeller{"tune2fs", "e2fsprogs", true, {"-L", label, node}};
  if (type == "xfs") return Labeller{"xfs_admin", "xfsprogs", false, {"-L", label, node}};
  if (type == "btrfs")
    return Labeller{"btrfs", "btrfs-progs", false, {"filesystem", "label", "--", node, label}};
  return std::nullopt;
}

std::string labelProblem(std::string_view type, std::string_view label) {
  if (label.find_first_not_of(' ') == std::string_view::npos) return "the name is empty";
  const auto units = unitsOf(label);
  if (!units) return "the name is not valid UTF-8";
  if (hasControl(label)) return "the name holds a control character";
  const LabelRule* rule = ruleFor(type);
  if (rule == nullptr) return {};
  if (rule->type == "vfat" && *units != label.size()) return "a FAT name holds ASCII letters only";
  const std::size_t length = rule->inBytes ? label.size() : *units;
  if (length > rule->most) {
    return fmt::format("the name is too long: {} allows {} {}, this has {}", rule->who, rule->most,
                       rule->inBytes ? "bytes" : "characters", length);
  }
  const std::size_t bad = label.find_first_of(rule->without);
  if (bad != std::string_view::npos)
    return fmt::format("a name on {} cannot hold '{}'", rule->who, label[bad]);
  return {};
}

std::string storedLabel(std::string_view type, std::string_view label) {
  std::string stored(label);
  if (type != "vfat") return stored;
  std::transform(stored.begin(), stored.end(), stored.begin(),
                 [](unsigned char character) { return std::toupper(character); });
  return stored;
}

FileSystemNames namesOf(const Signature& signature) {
  const std::string& type = signature.type;
  if (type == "vfat" || type == "msdos") {
    const std::string version = signature.version.starts_with("FAT") ? signature.version : "FAT32";
    return {"MS-DOS " + version, "MS-DOS (" + version + ")", false};
  }
  if (isExt(type) || type == "xfs" || type == "btrfs" || type == "f2fs")
    return {type, "Linux (" + type + ")", true};
  constexpr std::array<std::array<std::string_view, 3>, 15> kNames = {{
      {"exfat", "ExFAT", "ExFAT"},
      {"ntfs", "NTFS", "Windows NT File System (NTFS)"},
      {"ntfs3", "NTFS", "Windows NT File System (NTFS)"},
      {"hfsplus", "Journaled HFS+", "Mac OS Extended (Journaled)"},
      {"hfs", "HFS", "Mac OS Standard"},
      {"apfs", "APFS", "APFS"},
      {"iso9660", "ISO 9660", "CD-ROM (ISO 9660)"},
      {"udf", "UDF", "Universal Disk Format (UDF)"},
      {"swap", "Linux Swap", "Swap space"},
      {"crypto_LUKS", "LUKS", "Encrypted (LUKS)"},
      {"BitLocker", "BitLocker", "Encrypted (BitLocker)"},
      {"LVM2_member", "LVM", "Part of a volume group (LVM)"},
      {"linux_raid_member", "RAID", "Part of a RAID"},
      {"zfs_member", "ZFS", "Part of a pool (ZFS)"},
      {"squashfs", "SquashFS", "Compressed image (SquashFS)"},
  }};
  for (const auto& [kernel, name, visible] : kNames)
    if (kernel == type) return {std::string(name), std::string(visible), false};
  return {type, type, false};
}

std::string contentOfPartition(const std::string& code) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 19> kCodes = {{
      {kBoot, "EFI"},
      {kBasicData, "Microsoft Basic Data"},
      {kLinuxData, "Linux"},
      {kHfsData, "Apple_HFS"},
      {"7c3457ef-0000-11aa-aa11-00306543ecac", "Apple_APFS"},
      {"0657fd6d-a4ab-43c4-84e5-0933c84b4f4f", "Linux_Swap"},
      {"e6d6d379-f507-44c2-a23c-238f2a3df928", "Linux_LVM"},
      {"a19d880f-05fc-4d3b-a006-743f0f84911e", "Linux_RAID"},
      {"4f68bce3-e8cd-4db1-96e7-fbcaf984b709", "Linux"},
      {"de94bba4-06d1-4d40-a16a-bfd50179d6ac", "Windows_Recovery"},
      {"e3c9e316-0b5c-4db8-817d-f92df00215ae", "Microsoft Reserved"},
      {"0x7", "Windows_NTFS"},
      {"0xb", "DOS_FAT_32"},
      {"0xc", "DOS_FAT_32"},
      {"0xe", "DOS_FAT_16"},
      {"0x82", "Linux_Swap"},
      {"0x83", "Linux"},
      {"0xaf", "Apple_HFS"},
      {"0xef", "EFI"},
  }};
  for (const auto& [known, content] : kCodes)
    if (known == code) return std::string(content);
  return code;
}

std::string contentOfTable(const std::string& tableType) {
  if (tableType == "gpt") return "GUID_partition_scheme";
  if (tableType == "dos") return "FDisk_partition_scheme";
  if (tableType == "mac") return "Apple_partition_scheme";
  return tableType.empty() ? "None" : tableType;
}

bool isBootPartition(const std::string& code) {
  return code == kBoot || code == "0xef";
}

}  // namespace brisko::diskutil
