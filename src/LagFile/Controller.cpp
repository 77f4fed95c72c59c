#include "Controller.h"

#include "FileFilter.h"
#include "FileURL.h"
#include "Host.h"
#include "Progress.h"
#include "ProtectedPaths.h"
#include "SystemFolder.h"

#include <utility>

namespace brisko {

Controller& Controller::getController() {
  static auto* controller = new Controller;
  return *controller;
}

void Controller::tell(Tell what) {
  if (_aDelegate_ != nullptr) (_aDelegate_->*what)();
}

void Controller::eumeAllRootFileNodeWithRootArr(const std::string& rootPath) {
  if (isRemoving()) return;
  clear();
  eumeRoot_ = std::make_unique<EumeRoot>(static_cast<EumeDelegate*>(this));
  eumeRoot_->nodeTreeOperator().setFilter(filter_);
  eumeRoot_->eumeAllRootFileNodeWithRootArr(rootPath);
  tell(&ControllerDelegate::treeReset);
}

void Controller::stopScan() {
  if (!eumeRoot_) return;
  if (eumeRoot_->isPaused()) eumeRoot_->pauseScan();
  eumeRoot_->stopScan();
}

void Controller::clear() {
  stopScan();
  // Kept until the delegate has let go of it.
  const std::unique_ptr<EumeRoot> old = std::move(eumeRoot_);
  selectNodeArr_.clear();
  staleSelected_ = 0;
  everTicked_.clear();
  removedPaths_.clear();
  failures_.clear();
  freedBytes_ = 0;
  if (old) tell(&ControllerDelegate::treeReset);
}

const std::vector<FileNode*>& Controller::aRootArr() const {
  static const std::vector<FileNode*> kNone;
  return eumeRoot_ ? eumeRoot_->rootArr() : kNone;
}

void Controller::setFilter(const FileFilter& filter) {
  if (filter == filter_ || isRemoving()) return;
  filter_ = filter;
  untickAll();
  if (eumeRoot_) eumeRoot_->nodeTreeOperator().setFilter(filter);
  tell(&ControllerDelegate::reloadTree);
}

std::string Controller::lockReason(const FileNode& node) const {
  const std::string path = node._path();
  if (SystemFolder::isSystemFileWithFilePath(path)) return "it belongs to the system";
  if (auto reason = ProtectedPaths::current()->reasonFor(path)) return *reason;
  if (isCut(node)) {
    return "the filter hides some of what is in it";
  }
  return {};
}

void Controller::openFileWithFileNode(const FileNode* node) {
  Workspace* workspace = Host::current().workspace.get();
  if (node == nullptr || workspace == nullptr || node->_path().empty()) return;
  workspace->reveal(node->_path());
}

void Controller::pereviewFileWithFileNode(const FileNode* node) {
  Workspace* workspace = Host::current().workspace.get();
  if (node == nullptr || workspace == nullptr || node->_path().empty()) return;
  workspace->openAddress(fileURL(node->_path()));
}

}  // namespace brisko
