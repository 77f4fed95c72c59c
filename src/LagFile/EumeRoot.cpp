#include "EumeRoot.h"

#include "Host.h"

#include <cerrno>

namespace brisko {
namespace {

// Over all scans of the run; main thread only.
std::uint64_t handledInThisRun = 0;

}  // namespace

EumeRoot::EumeRoot(EumeDelegate* eumeDelegate)
    : eumeDelegate_(eumeDelegate),
      operator_(std::make_unique<NodeTreeOperator>(static_cast<NodeTreeOperatorDelegate*>(this))) {}

EumeRoot::~EumeRoot() = default;

void EumeRoot::eumeAllRootFileNodeWithRootArr(const std::string& path) {
  isStopped_ = false;
  error_ = 0;
  getRootNodeListWithPath(path);
}

void EumeRoot::getRootNodeListWithPath(const std::string& path) {
  isScanning_ = operator_->getFileSizeWithPat(
      path, [this] { entriesArrived(); }, error_);
  if (isScanning_) {
    root_ = operator_->root();
  } else if (error_ == ENOTDIR) {
    error_ = 0;
    insertFileInRootArrWithFile(path);
  }
}

// The list of one: the folder above stands for the chosen one.
void EumeRoot::insertFileInRootArrWithFile(const std::string& path) {
  const CatalogItem facts = Host::current().catalog->information(path);
  if (!facts.hasInformation) return;
  const std::size_t slash = path.rfind('/');
  const auto made = single_.nodes(2);
  root_ = &made[0];
  root_->name = single_.name(slash == 0 ? "/" : path.substr(0, slash));
  root_->kind = FileKind::directory;
  root_->folder = single_.folder();
  root_->folder->device = facts.device;
  root_->folder->readState = ReadState::finished;
  FileNode& file = made[1];
  file.name = single_.name(path.substr(slash + 1));
  file.kind = facts.kind;
  file.inode = facts.inode;
  file.holder = root_;
  file.modificationSeconds = facts.modificationSeconds;
  file.modificationNanoseconds = static_cast<std::uint32_t>(facts.modificationNanoseconds);
  file.isLooked = true;
  file.size = NodeTreeOperator::getOneFileSizeWithPath(path);
  operator_->fileInsertFatherWithRootArr(*root_, {&file, 1});
  operator_->settleSizes();
}

const std::vector<FileNode*>& EumeRoot::rootArr() {
  static const std::vector<FileNode*> kNone;
  return root_ == nullptr ? kNone : root_->children();
}

void EumeRoot::doRootArrSort() {
  root_->folder->isOrdered = false;
  if (eumeDelegate_ != nullptr) eumeDelegate_->treeGrew();
}

void EumeRoot::entriesArrived() {
  operator_->takeEntries();
  if (!operator_->isOver() || !isScanning_) return;
  isScanning_ = false;
  if (isStopped_) operator_->markStopped();
  topLevelIsOver();
}

void EumeRoot::topLevelIsOver() {
  handledInThisRun += handled();
  EumeDelegate* const delegate = eumeDelegate_;
  if (delegate == nullptr) return;
  if (handledInThisRun == total()) delegate->endScan();
  delegate->scanIsOver();
}

std::uint32_t EumeRoot::total() const {
  return operator_->walk() != nullptr ? operator_->walk()->total() : 0;
}

std::uint32_t EumeRoot::handled() const {
  return operator_->walk() != nullptr ? operator_->walk()->handled() : 0;
}

float EumeRoot::getProgress() const {
  const std::uint32_t all = total();
  return all < 1 ? 0.0F : static_cast<float>(handled() * 100.0 / all);
}

void EumeRoot::pauseScan() {
  Progress::shareInit().isContinue();
}

bool EumeRoot::isPaused() const {
  return Progress::shareInit().getProgress();
}

void EumeRoot::stopScan() {
  if (isScanning_) isStopped_ = true;
  operator_->stopScan();
}

std::string EumeRoot::pathAtWork() const {
  const FileNode* at = operator_->walk() != nullptr ? operator_->walk()->folderAtWork() : nullptr;
  return at != nullptr ? at->_path() : std::string();
}

}  // namespace brisko
