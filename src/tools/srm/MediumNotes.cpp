#include "MediumNotes.h"

#include "Medium.h"
#include "SystemLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace brisko::srm {
namespace {

constexpr std::string_view kWritesElsewhere[] = {"btrfs", "zfs",   "bcachefs", "nilfs2", "f2fs",
                                                 "logfs", "jffs2", "ubifs",    "aufs",   "overlay"};
constexpr std::string_view kElsewhere[] = {"nfs", "nfs4", "cifs", "smb3", "9p", "ceph", "afs"};

template <std::size_t Size>
bool isOneOf(const std::string& name, const std::string_view (&list)[Size]) {
  return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

struct FileSystem {
  std::string type;
  std::string options;
};

// The line of this mount: number, parent, device, root, point, options, any further fields, "-",
// type, source, options of the file system.
FileSystem fileSystemOf(std::uint64_t mount) {
  std::ifstream table("/proc/self/mountinfo");
  for (std::string line; std::getline(table, line);) {
    std::istringstream words(line);
    std::uint64_t number = 0;
    if (!(words >> number) || number != mount) continue;
    std::string word;
    while (words >> word && word != "-") {
    }
    FileSystem found;
    words >> found.type >> word >> found.options;
    return found;
  }
  return {};
}

bool hasOption(const std::string& options, const std::string& option) {
  return ("," + options + ",").find("," + option + ",") != std::string::npos;
}

}  // namespace

void MediumNotes::say(const std::string& note) {
  if (!said_.insert(note).second) return;
  std::fprintf(stderr, "srm: note: %s\n", escapedForDisplay(note).c_str());
}

void MediumNotes::look(int file, const std::string& path) {
  struct statx facts;
  if (::statx(file, "", AT_EMPTY_PATH, STATX_MNT_ID | STATX_BASIC_STATS, &facts) != 0) return;
  if ((facts.stx_attributes & STATX_ATTR_COMPRESSED) != 0) {
    say("A compressed file is written to new blocks, and the old ones may keep its content.");
  }
  unsigned flags = 0;
  if (::ioctl(file, FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_JOURNAL_DATA_FL) != 0) {
    say("The content of this file goes through the file system's journal, which may keep a copy.");
  }
  if (!mounts_.insert(facts.stx_mnt_id).second) return;
  lookAtFileSystem(facts.stx_mnt_id);
  if (mediumOf(path) == Medium::solidState) {
    say("A solid-state disk writes to fresh cells; the old ones keep their content until the disk "
        "clears them by itself.");
  }
}

void MediumNotes::lookAtFileSystem(std::uint64_t mount) {
  const FileSystem system = fileSystemOf(mount);
  if (isOneOf(system.type, kWritesElsewhere)) {
    say(
        fmt::format("The file system {} writes changes to new blocks: the old ones and snapshots "
                    "may keep the content.",
                    system.type));
  } else if (isOneOf(system.type, kElsewhere) || system.type.starts_with("fuse")) {
    say(
        fmt::format("Behind the file system {} another program or machine decides what is "
                    "overwritten.",
                    system.type));
  }
  if (hasOption(system.options, "data=journal")) {
    say("This file system puts content through its journal, which may keep a copy.");
  }
}

void MediumNotes::look(const FileExtents& extents) {
  if (extents.isShared) {
    say("Some of its blocks belong to a copy or a snapshot too, and keep their content there.");
  }
  if (extents.isEncoded) {
    say("A compressed file is written to new blocks, and the old ones may keep its content.");
  }
}

}  // namespace brisko::srm
