#pragma once

#include "FileIdentity.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

struct FileNode;

/// How far a folder's own entries are known.
enum class ReadState : std::uint8_t {
  queued,    ///< not looked into yet
  reading,   ///< so far only a part of its entries
  finished,  ///< all entries
  denied,    ///< the system does not let the user look in
  mounted,   ///< another file system is mounted there, and is left alone
  error,     ///< it cannot be read for another reason, or vanished meanwhile
  stopped,   ///< the scan was stopped before all of its entries were read
};

/// Tick state of an entry.
enum class TickState : std::uint8_t { off = 0, on = 1, partly = 2 };

/// What a folder has beside its own entry.
struct FolderContent {
  std::vector<FileNode*> list;  ///< entries in the folder
  bool isOrdered = true;        ///< whether `list` stands in the order in which it is shown
  bool isTouched = false;       ///< in the list of folders whose size is about to change
  bool isExpand = false;        ///< whether the folder is open in the outline
  bool isFiltered = false;      ///< the filter shows no folder that has no file
  ReadState readState = ReadState::queued;
  int error = 0;                    ///< errno's value of `denied` and `error`
  std::uint32_t depth = 0;          ///< 0 for the folder that was chosen
  std::uint32_t folders = 0;        ///< how many of the entries are folders
  std::uint64_t device = 0;         ///< of the folder's own entries
  std::uint64_t added = 0;          ///< bytes that the folders above do not have in their size yet
  std::uint64_t addedFiles = 0;     ///< the same of `files`
  std::uint64_t addedMatching = 0;  ///< the same of `matching`
  std::uint64_t files = 0;          ///< at any depth below it
  std::uint64_t matching = 0;       ///< those of them that the filter lets through
};

/// One entry of the tree.
///
/// A million of them are usual, so an entry is 64 bytes and its name, and what follows from those
/// is made when it is asked for: the path from the names above it, the date's text by who shows it.
/// A folder's further fields are in `folder`. Entries live as long as their scan's store.
///
/// Until an entry was handed to the main thread it belongs to the worker that made it; from then on
/// the main thread alone reads and changes it, `name`, `holder` and `folder` apart, which stay.
struct FileNode {
  std::uint64_t size = 0;           ///< bytes; of a folder: all that was found in it so far
  FileNode* holder = nullptr;       ///< the folder it is in; null for the chosen folder itself
  FolderContent* folder = nullptr;  ///< null for what is no folder
  const char* name = "";            ///< the file system's bytes, ended by a zero byte
  std::uint64_t inode = 0;
  std::int64_t modificationSeconds = 0;  ///< since 1970, UTC
  std::uint32_t modificationNanoseconds = 0;
  std::uint32_t place = 0;  ///< its number in the folder's listing
  FileKind kind = FileKind::unknown;
  TickState state = TickState::off;
  bool isLooked = false;    ///< its facts could be read
  bool isSelected = false;  ///< it is among the controller's selected nodes
  bool isTouched = false;   ///< it is among those that were ever ticked
  bool isGone = false;      ///< detached from the tree
  bool matches = true;      ///< a file that the filter lets through

  bool _isDirectory() const { return folder != nullptr; }
  /// The last path component; of the chosen folder its whole path.
  std::string_view _name() const { return name; }
  /// The folder's entry; null for what lies directly in the chosen folder.
  FileNode* father() const { return holder != nullptr && holder->holder ? holder : nullptr; }
  std::string _path() const;
  /// Whether the table SystemFile names exactly this entry.
  bool _isSystemFile() const;
  /// The entries of a folder, largest first; see `standsBefore`. Main thread only.
  const std::vector<FileNode*>& children();
  /// What removing compares with: the entry as it was when it was listed.
  FileIdentity identity() const;
  /// Of a folder whose content is not all there: why, in one line. Empty when it is, or is no
  /// folder.
  std::string reason() const;

  /// The other's size against this one's: below 0 when this one stands first.
  int compareSize(const FileNode& other) const {
    return other.size < size ? -1 : other.size > size ? 1 : 0;
  }
};

/// The order inside a folder: larger before smaller. Among equal ones a file stands before whatever
/// was listed before it, because it was put in front of them; a folder stands behind them, because
/// it grew up to them from below. An empty folder has never grown, and counts as a file does, but
/// directly in the chosen folder, where folders begin at the end.
bool standsBefore(const FileNode& one, const FileNode& other);

/// `standsBefore` as numbers: the larger rank first among equal sizes.
std::int64_t rankOf(const FileNode& node);

static_assert(sizeof(FileNode) <= 72, "a million of them are held");

}  // namespace brisko
