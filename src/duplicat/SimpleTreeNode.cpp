#include "SimpleTreeNode.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace brisko {

SimpleTreeNode::SimpleTreeNode(SimpleNodeData data, SimpleTreeNode* parent, Children below)
    : nodeData(std::move(data)), nodeParent(parent), children(std::move(below)) {
  for (const Pointer& child : children)
    child->nodeParent = this;
}

void SimpleTreeNode::insertChild(const Pointer& child, std::size_t index) {
  child->nodeParent = this;
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(std::min(index, children.size())),
                  child);
}

void SimpleTreeNode::removeChild(const SimpleTreeNode* child) {
  const auto found = std::find_if(children.begin(), children.end(),
                                  [child](const Pointer& each) { return each.get() == child; });
  if (found == children.end()) return;
  if ((*found)->nodeParent == this) (*found)->nodeParent = nullptr;
  children.erase(found);
}

void SimpleTreeNode::removeFromParent() {
  if (nodeParent != nullptr) nodeParent->removeChild(this);
}

std::string SimpleTreeNode::showSelectNumStr() const {
  return fmt::format("{}/{}", nodeData.tickNumber, children.size());
}

void SimpleTreeNode::sort(int (SimpleNodeData::*compare)(const SimpleNodeData&) const) {
  std::stable_sort(children.begin(), children.end(), [compare](const Pointer& a, const Pointer& b) {
    return (a->nodeData.*compare)(b->nodeData) < 0;
  });
  for (const Pointer& child : children)
    child->sort(compare);
}

}  // namespace brisko
