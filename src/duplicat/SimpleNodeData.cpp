#include "SimpleNodeData.h"

#include <cstring>

namespace brisko {

std::string TreeNodeData::name() const {
  return folder == nullptr ? std::string(tail) : CandidateStore::path(*folder, tail);
}

SimpleNodeData SimpleNodeData::leafDataWithName(const char* name, const CandidateFolder* folder) {
  SimpleNodeData data;
  data.folder = folder;
  data.tail = name;
  return data;
}

SimpleNodeData SimpleNodeData::groupDataWithName(const char* name) {
  SimpleNodeData data = leafDataWithName(name);
  data.isLeaf = false;
  return data;
}

std::string_view SimpleNodeData::extendName() const {
  if (isLeaf) return {};
  return isBundle ? "APP" : pathExtension(tail);
}

FileIdentity SimpleNodeData::identity() const {
  FileIdentity identity;
  identity.device = device;
  identity.inode = inode;
  identity.kind = isBundle ? FileKind::directory : FileKind::regular;
  if (isBundle) return identity;
  identity.size = fileSize;
  identity.modificationSeconds = ModificationDate.seconds;
  identity.modificationNanoseconds = ModificationDate.nanoseconds;
  return identity;
}

std::uint64_t SimpleNodeData::rankName(std::size_t common) const {
  // Of a path the first bytes tell nothing: leaves are compared by their whole names.
  std::uint64_t rank = 0;
  if (folder != nullptr) return rank;
  const char* at = tail + common;
  for (int i = 0; i < 8; ++i) {
    rank = rank << 8 | static_cast<unsigned char>(*at);
    if (*at != '\0') ++at;
  }
  return rank;
}

int SimpleNodeData::compareName(const SimpleNodeData& other) const {
  if (folder == other.folder) return std::strcmp(tail, other.tail);
  return name().compare(other.name());
}

int SimpleNodeData::compareSize(const SimpleNodeData& other) const {
  return fileSize == other.fileSize ? 0 : fileSize < other.fileSize ? -1 : 1;
}

int SimpleNodeData::compareDate(const SimpleNodeData& other) const {
  if (ModificationDate == other.ModificationDate) return 0;
  return ModificationDate < other.ModificationDate ? -1 : 1;
}

}  // namespace brisko
