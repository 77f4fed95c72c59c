#include "SimpleTreeNode.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace brisko {

SimpleTreeNode::SimpleTreeNode(SimpleNodeData data, SimpleTreeNode* parent, Children below)
    : nodeData(std::move(data)), nodeParent(parent), children(std::move(below)) {
  for (SimpleTreeNode* child : children)
    child->nodeParent = this;
}

void SimpleTreeNode::insertChild(SimpleTreeNode* child, std::size_t index) {
  child->nodeParent = this;
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(std::min(index, children.size())),
                  child);
}

void SimpleTreeNode::removeChild(SimpleTreeNode* child) {
  const auto found = std::find(children.begin(), children.end(), child);
  if (found == children.end()) return;
  if (child->nodeParent == this) child->nodeParent = nullptr;
  children.erase(found);
}

void SimpleTreeNode::removeFromParent() {
  if (nodeParent != nullptr) nodeParent->removeChild(this);
}

std::string SimpleTreeNode::showSelectNumStr() const {
  return fmt::format("{}/{}", nodeData.tickNumber, children.size());
}

void SimpleTreeNode::sort(int (SimpleNodeData::*compare)(const SimpleNodeData&) const) {
  std::stable_sort(children.begin(), children.end(),
                   [compare](const SimpleTreeNode* a, const SimpleTreeNode* b) {
                     return (a->nodeData.*compare)(b->nodeData) < 0;
                   });
  for (SimpleTreeNode* child : children)
    child->sort(compare);
}

DuplicateTree::DuplicateTree() : root_(make(SimpleNodeData::groupDataWithName("Root"))) {}

SimpleTreeNode* DuplicateTree::make(SimpleNodeData data, SimpleTreeNode::Children children) {
  return &nodes_.emplace_back(std::move(data), nullptr, std::move(children));
}

}  // namespace brisko
