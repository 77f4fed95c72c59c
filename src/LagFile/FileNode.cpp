#include "FileNode.h"

#include "NodeTreeOperator.h"
#include "SystemFolder.h"

#include <cstring>

namespace brisko {

std::string FileNode::_path() const {
  std::vector<const FileNode*> way;
  for (const FileNode* at = this; at->holder != nullptr; at = at->holder)
    way.push_back(at);
  const FileNode* top = way.empty() ? this : way.back()->holder;
  std::string path = top->name;
  for (auto at = way.rbegin(); at != way.rend(); ++at) {
    if (!path.ends_with('/')) path += '/';
    path += (*at)->name;
  }
  return path;
}

bool FileNode::_isSystemFile() const {
  return SystemFolder::isSystemFileWithFilePath(_path());
}

const std::vector<FileNode*>& FileNode::children() {
  static const std::vector<FileNode*> kNone;
  if (folder == nullptr) return kNone;
  NodeTreeOperator::rootArrSortWithRootArr(*folder);
  return folder->list;
}

FileIdentity FileNode::identity() const {
  FileIdentity identity;
  identity.device = folder != nullptr   ? folder->device
                    : holder != nullptr ? holder->folder->device
                                        : 0;
  identity.inode = inode;
  identity.kind = kind;
  if (kind != FileKind::regular) return identity;
  identity.size = size;
  identity.modificationSeconds = modificationSeconds;
  identity.modificationNanoseconds = modificationNanoseconds;
  return identity;
}

std::string FileNode::reason() const {
  if (folder == nullptr) return {};
  switch (folder->readState) {
    case ReadState::finished:
    case ReadState::reading:
    case ReadState::queued:
      return {};
    case ReadState::mounted:
      return "another file system is mounted here";
    case ReadState::stopped:
      return "the scan was stopped before all of it was read";
    case ReadState::denied:
    case ReadState::error:
      break;
  }
  return std::strerror(folder->error);
}

std::int64_t rankOf(const FileNode& node) {
  const bool isTop = node.holder == nullptr || node.holder->holder == nullptr;
  const auto place = static_cast<std::int64_t>(node.place) + 1;
  return node._isDirectory() && (node.size > 0 || isTop) ? -place : place;
}

bool standsBefore(const FileNode& one, const FileNode& other) {
  const int compared = one.compareSize(other);
  return compared != 0 ? compared < 0 : rankOf(one) > rankOf(other);
}

}  // namespace brisko
