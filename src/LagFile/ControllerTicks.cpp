// What ticking an entry does to others.

#include "Controller.h"
#include "FileFilter.h"
#include "SystemFolder.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

// In a folder of more entries each one's protection is not looked up when all are ticked at once;
// removing refuses what is protected all the same.
constexpr std::size_t kFewEntries = 2000;

}  // namespace

void Controller::setState(FileNode& node, TickState state) {
  node.state = state;
  if (state != TickState::off && !std::exchange(node.isTouched, true)) everTicked_.push_back(&node);
}

void Controller::setSelected(FileNode& node, bool selected) {
  if (node.isSelected == selected) return;
  if (selected && staleSelected_ > 0) selectNodeArr();
  node.isSelected = selected;
  if (selected) {
    selectNodeArr_.push_back(&node);
  } else {
    ++staleSelected_;
  }
}

const std::vector<FileNode*>& Controller::selectNodeArr() {
  if (std::exchange(staleSelected_, 0) > 0) {
    std::erase_if(selectNodeArr_, [](const FileNode* node) { return !node->isSelected; });
  }
  return selectNodeArr_;
}

void Controller::changeSelectWithNode(FileNode& node, bool select) {
  if (!mayTick() || node.holder == nullptr) return;
  if (select && !lockReason(node).empty()) return;
  changeChildrenFilNodeStateWithFileNode(node, select);
  changeFatherNodeSelectStateWithFileNode(node);
  tell(&ControllerDelegate::reloadTree);
}

// Without recursion: folders may be open to any depth. What is in a collapsed folder is ticked one
// level deep.
void Controller::changeChildrenFilNodeStateWithFileNode(FileNode& node, bool select) {
  const TickState state = select ? TickState::on : TickState::off;
  std::vector<FileNode*> left = {&node};
  while (!left.empty()) {
    FileNode& at = *left.back();
    left.pop_back();
    if (at.holder != nullptr) {
      setState(at, state);
      setSelected(at, select);
    }
    if (at.folder == nullptr) continue;
    const bool looksUp = select && at.folder->list.size() <= kFewEntries;
    const auto known = static_cast<std::ptrdiff_t>(left.size());
    for (FileNode* child : at.children()) {
      if (select && !isShown(*child)) continue;
      if (looksUp && !lockReason(*child).empty()) continue;
      setState(*child, state);
      if (child->folder != nullptr && at.folder->isExpand) left.push_back(child);
    }
    std::reverse(left.begin() + known, left.end());  // the first one is taken next
  }
}

void Controller::changeFatherNodeSelectStateWithFileNode(FileNode& node) {
  for (FileNode* father = node.father(); father != nullptr; father = father->father()) {
    const auto& list = father->folder->list;
    const auto ticked =
        static_cast<std::size_t>(std::count_if(list.begin(), list.end(), [](const FileNode* child) {
          return child->state != TickState::off;
        }));
    const bool isWhole = father->folder->folders == 0 && ticked == list.size();
    setState(*father, isWhole ? TickState::on : ticked > 0 ? TickState::partly : TickState::off);
  }
}

void Controller::selectAllFileNode(bool select) {
  if (!mayTick()) return;
  if (!select) {
    untickAll();
  } else {
    const bool looksUp = aRootArr().size() <= kFewEntries;
    for (FileNode* node : aRootArr()) {
      if (!isShown(*node)) continue;
      if (isCut(*node) || (looksUp && !lockReason(*node).empty())) continue;
      changeChildrenFilNodeStateWithFileNode(*node, true);
    }
  }
  tell(&ControllerDelegate::reloadTree);
}

void Controller::untickAll() {
  for (FileNode* node : everTicked_) {
    node->state = TickState::off;
    node->isTouched = false;
  }
  for (FileNode* node : selectNodeArr_)
    node->isSelected = false;
  everTicked_.clear();
  selectNodeArr_.clear();
  staleSelected_ = 0;
}

const char* Controller::boxImage(const FileNode& node) {
  switch (node.state) {
    case TickState::on:
      return "sel";
    case TickState::partly:
      return "halfsel";
    case TickState::off:
      break;
  }
  return "unsel";
}

const char* Controller::changeSelectAllButtonState() const {
  std::size_t shown = 0;
  std::size_t whole = 0;
  bool isAny = false;
  if (root() == nullptr) return "unsel";
  for (const FileNode* node : root()->folder->list) {
    if (!isShown(*node)) continue;
    ++shown;
    whole += node->state == TickState::on ? 1 : 0;
    isAny = isAny || node->state != TickState::off;
  }
  if (shown > 0 && whole == shown) return "sel";
  return isAny ? "halfsel" : "unsel";
}

LargeFileSelection Controller::selection() const {
  LargeFileSelection selection;
  if (root() == nullptr || everTicked_.empty()) return selection;
  std::vector<FileNode*> nodes;
  deleteFilesWithDic(root()->children(), nodes);
  selection.count = nodes.size();
  for (const FileNode* node : nodes)
    selection.bytes += node->size;
  return selection;
}

std::string Controller::selectedText() const {
  const std::size_t count = selection().count;
  return fmt::format("Selected: {} {}", count, count == 1 ? "item" : "items");
}

}  // namespace brisko
