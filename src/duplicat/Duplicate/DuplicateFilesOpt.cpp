#include "DuplicateFilesOpt.h"

#include "SystemLog.h"

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

SimpleTreeNode::Pointer leaf(std::string name, std::uint64_t size, const FileIdentity& identity) {
  SimpleNodeData data = SimpleNodeData::leafDataWithName(std::move(name));
  data.fileSize = size;
  data.device = identity.device;
  data.inode = identity.inode;
  return std::make_shared<SimpleTreeNode>(std::move(data));
}

SimpleTreeNode::Pointer fileLeaf(const fileAttrbItem& file) {
  auto made = leaf(file.filePathName, file.fileSize, file.identity);
  made->nodeData.ModificationDate = file.ModificationDate;
  return made;
}

// Marks the leaves of a group that are one file under several names.
void markHardLinks(SimpleTreeNode::Children& leaves) {
  SimpleTreeNode::Children byFile = leaves;
  const auto key = [](const SimpleTreeNode::Pointer& node) {
    return std::pair(node->nodeData.device, node->nodeData.inode);
  };
  std::sort(byFile.begin(), byFile.end(),
            [&](const auto& a, const auto& b) { return key(a) < key(b); });
  for (std::size_t i = 1; i < byFile.size(); ++i) {
    if (key(byFile[i]) != key(byFile[i - 1])) continue;
    byFile[i]->nodeData.hardLink = true;
    byFile[i - 1]->nodeData.hardLink = true;
  }
}

SimpleTreeNode::Pointer group(const std::string& name, SimpleTreeNode::Children leaves) {
  SimpleNodeData data = SimpleNodeData::groupDataWithName(name);
  for (const auto& each : leaves)
    data.fileSize += each->nodeData.fileSize;
  markHardLinks(leaves);
  leaves.shrink_to_fit();
  return std::make_shared<SimpleTreeNode>(std::move(data), nullptr, std::move(leaves));
}

}  // namespace

std::shared_ptr<duplicateFind> DuplicateFilesOpt::search() const {
  std::lock_guard lock(mutex_);
  return m_findDuplicate;
}

void DuplicateFilesOpt::beginSearchAtPath(const std::string& path, std::uint64_t limitSize) {
  const auto find = std::make_shared<duplicateFind>();
  find->setSearchOption(option_.searchesHiddenFiles, option_.searchesSystemFolders);
  {
    std::lock_guard lock(mutex_);
    if (m_findDuplicate) {
      SystemLog::line("error need reinit");
      return;
    }
    m_CurrentSearchPath = path;
    m_findDuplicate = find;
    if (stopsAtOnce_) find->stopSearch();
  }
  SystemLog::line(" -INFO:search Path:{}  limitedsize:{}", path, limitSize);
  find->searchDuplicateFileAtPath(path, limitSize);
}

std::uint32_t DuplicateFilesOpt::getProgress() const {
  const auto find = search();
  return find ? find->getProgress() : 0;
}

void DuplicateFilesOpt::stopSearch() {
  std::shared_ptr<duplicateFind> find;
  {
    std::lock_guard lock(mutex_);
    stopsAtOnce_ = true;
    find = m_findDuplicate;
  }
  if (find) find->stopSearch();
}

std::string DuplicateFilesOpt::getCurrentSearchFile() {
  const auto find = search();
  std::string current = find ? find->getCurrentSearchPath() : std::string();
  std::lock_guard lock(mutex_);
  if (!current.empty()) m_CurrentSearchPath = std::move(current);
  return m_CurrentSearchPath;
}

std::vector<SkippedFolder> DuplicateFilesOpt::skipped() const {
  const auto find = search();
  return find ? find->skipped() : std::vector<SkippedFolder>();
}

SimpleTreeNode::Pointer DuplicateFilesOpt::bundleGroup(const AppGroup& bundles) {
  SimpleTreeNode::Children leaves;
  for (const auto& bundle : bundles) {
    leaves.push_back(leaf(bundle->DirectoryPathName, bundle->DirectorySize, bundle->identity));
    leaves.back()->nodeData.isBundle = true;
  }
  auto made = group(bundles.back()->DirectoryName, std::move(leaves));
  made->nodeData.isBundle = true;
  return made;
}

// Files with one digest that follow each other make a group. The first of them is held back until
// the run ends and becomes its last leaf.
void DuplicateFilesOpt::appendFileGroups(const duplicateFind& found,
                                         SimpleTreeNode::Children& groups) {
  const std::size_t count = found.duplicateFileCount();
  std::size_t held = m_Index;
  SimpleTreeNode::Children leaves;
  const auto endRun = [&](const fileAttrbItem& first) {
    leaves.push_back(fileLeaf(first));
    groups.push_back(group(first.fileName, std::exchange(leaves, {})));
  };
  if (held >= count) return;
  fileAttrbItem first = found.duplicateFile(held);
  for (std::size_t i = held + 1; i < count; ++i) {
    fileAttrbItem file = found.duplicateFile(i);
    if (file.md5 == first.md5) {
      leaves.push_back(fileLeaf(file));
    } else if (!leaves.empty()) {
      endRun(first);
      first = std::move(file);
    }
  }
  if (!leaves.empty()) endRun(first);
  m_Index = count;
}

bool DuplicateFilesOpt::getDuplicateFiles(SimpleTreeNode::Pointer& root) {
  const auto find = search();
  if (!find) return false;
  const auto& bundleGroups = find->getAllAppDuplicateDir();
  if (bundleGroups.empty() && find->duplicateFileCount() == 0) return false;
  SimpleTreeNode::Children groups;
  for (const AppGroup& bundles : bundleGroups)
    groups.push_back(bundleGroup(bundles));
  appendFileGroups(*find, groups);
  root = std::make_shared<SimpleTreeNode>(SimpleNodeData::groupDataWithName("Root"), nullptr,
                                          std::move(groups));
  return true;
}

}  // namespace brisko
