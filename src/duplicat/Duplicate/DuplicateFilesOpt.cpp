#include "DuplicateFilesOpt.h"

#include "SystemLog.h"

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

// Marks the leaves of a group that are one file under several names.
void markHardLinks(SimpleTreeNode::Children leaves) {
  const auto key = [](const SimpleTreeNode* node) {
    return std::pair(node->nodeData.device, node->nodeData.inode);
  };
  std::sort(leaves.begin(), leaves.end(),
            [&](const auto* a, const auto* b) { return key(a) < key(b); });
  for (std::size_t i = 1; i < leaves.size(); ++i) {
    if (key(leaves[i]) != key(leaves[i - 1])) continue;
    leaves[i]->nodeData.hardLink = true;
    leaves[i - 1]->nodeData.hardLink = true;
  }
}

class TreeBuilder {
 public:
  explicit TreeBuilder(DuplicateTree& tree) : tree_(tree) {}

  void addBundles(const AppGroup& bundles) {
    for (const auto& bundle : bundles) {
      SimpleNodeData data = SimpleNodeData::leafDataWithName(tree_.keep(bundle->DirectoryPathName));
      data.fileSize = bundle->DirectorySize;
      data.device = bundle->identity.device;
      data.inode = bundle->identity.inode;
      data.isBundle = true;
      leaves_.push_back(tree_.make(data));
    }
    endGroup(tree_.keep(bundles.back()->DirectoryName), true);
  }

  void addFile(const Candidate& file) {
    SimpleNodeData data = SimpleNodeData::leafDataWithName(file.name, file.folder);
    data.fileSize = file.fileSize;
    data.device = file.folder->device;
    data.inode = file.inode;
    data.ModificationDate = {file.modificationSeconds,
                             static_cast<std::int32_t>(file.modificationNanoseconds)};
    leaves_.push_back(tree_.make(data));
  }

  bool hasLeaves() const { return !leaves_.empty(); }

  void endGroup(const char* name, bool isBundle) {
    SimpleNodeData data = SimpleNodeData::groupDataWithName(name);
    data.isBundle = isBundle;
    for (const SimpleTreeNode* leaf : leaves_)
      data.fileSize += leaf->nodeData.fileSize;
    markHardLinks(leaves_);
    SimpleTreeNode* group = tree_.make(data, leaves_);
    tree_.root().insertChild(group, tree_.root().numberOfChildren());
    leaves_.clear();
  }

 private:
  DuplicateTree& tree_;
  SimpleTreeNode::Children leaves_;
};

// Files with one digest that follow each other make a group. The first of them is held back until
// the run ends, and becomes its last leaf.
void addFiles(duplicateFind& found, TreeBuilder& builder) {
  Candidate held;
  if (!found.takeDuplicateFile(held)) return;
  const auto endRun = [&] {
    builder.addFile(held);
    builder.endGroup(held.name, false);
  };
  for (Candidate file; found.takeDuplicateFile(file);) {
    if (file.md5 == held.md5) {
      builder.addFile(file);
    } else if (builder.hasLeaves()) {
      endRun();
      held = file;
    }
  }
  if (builder.hasLeaves()) endRun();
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

bool DuplicateFilesOpt::getDuplicateFiles(std::unique_ptr<DuplicateTree>& tree) {
  const auto find = search();
  if (!find) return false;
  const auto& bundleGroups = find->appDuplicateDirs();
  if (bundleGroups.empty() && find->duplicateFileCount() == 0) return false;
  auto made = std::make_unique<DuplicateTree>();
  TreeBuilder builder(*made);
  for (const AppGroup& bundles : bundleGroups)
    builder.addBundles(bundles);
  addFiles(*find, builder);
  made->keep(find->takePaths());
  tree = std::move(made);
  return true;
}

}  // namespace brisko
