#include "SimpleTreeNode.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace brisko {
namespace {

// How many bytes the names of all nodes begin with alike.
std::size_t commonBeginning(const SimpleTreeNode::Children& nodes) {
  if (nodes.empty()) return 0;
  const std::string_view first = nodes.front()->nodeData.tail;
  std::size_t common = first.size();
  for (const SimpleTreeNode* node : nodes) {
    const char* tail = node->nodeData.tail;
    std::size_t same = 0;
    while (same < common && tail[same] == first[same])
      ++same;
    common = same;
    if (common == 0) break;
  }
  return common;
}

}  // namespace

SimpleTreeNode::SimpleTreeNode(const SimpleNodeData& data, SimpleTreeNode* parent, Children below)
    : nodeData(data), nodeParent(parent), children(std::move(below)) {
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

// Most pairs are told apart by a number that stands beside the node's address, without going to the
// nodes: with a hundred thousand groups that is most of the time.
void SimpleTreeNode::sort(Rank rank, Compare compare, bool descending) {
  struct Entry {
    std::uint64_t rank;
    SimpleTreeNode* node;
  };
  std::vector<Entry> entries;
  const auto sortChildren = [&](Children& nodes) {
    entries.clear();
    const std::size_t common = commonBeginning(nodes);
    for (SimpleTreeNode* node : nodes) {
      const std::uint64_t value = (node->nodeData.*rank)(common);
      entries.push_back({descending ? ~value : value, node});
    }
    const auto isBefore = [compare](const Entry& a, const Entry& b) {
      if (a.rank != b.rank) return a.rank < b.rank;
      return (a.node->nodeData.*compare)(b.node->nodeData) < 0;
    };
    if (std::is_sorted(entries.begin(), entries.end(), isBefore)) return;
    std::stable_sort(entries.begin(), entries.end(), isBefore);
    std::transform(entries.begin(), entries.end(), nodes.begin(),
                   [](const Entry& entry) { return entry.node; });
  };
  sortChildren(children);
  for (SimpleTreeNode* child : children)
    sortChildren(child->children);
}

DuplicateTree::DuplicateTree() : root_(make(SimpleNodeData::groupDataWithName("Root"))) {}

SimpleTreeNode* DuplicateTree::make(const SimpleNodeData& data, SimpleTreeNode::Children children) {
  return &nodes_.emplace_back(data, nullptr, std::move(children));
}

}  // namespace brisko
