#include "SimpleNodeData.h"

#include "Host.h"

#include <utility>

namespace brisko {

SimpleNodeData SimpleNodeData::leafDataWithName(std::string name) {
  SimpleNodeData data;
  data.name = std::move(name);
  return data;
}

SimpleNodeData SimpleNodeData::groupDataWithName(std::string name) {
  SimpleNodeData data = leafDataWithName(std::move(name));
  data.isLeaf = false;
  return data;
}

std::string SimpleNodeData::extendName() const {
  if (isLeaf) return {};
  return isBundle ? "APP" : pathExtension(name);
}

std::string SimpleNodeData::iconRep() const {
  Workspace* workspace = Host::current().workspace.get();
  return workspace == nullptr ? std::string() : workspace->iconName(name);
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

int SimpleNodeData::compareSize(const SimpleNodeData& other) const {
  return fileSize == other.fileSize ? 0 : fileSize < other.fileSize ? -1 : 1;
}

int SimpleNodeData::compareDate(const SimpleNodeData& other) const {
  if (ModificationDate == other.ModificationDate) return 0;
  return ModificationDate < other.ModificationDate ? -1 : 1;
}

}  // namespace brisko
