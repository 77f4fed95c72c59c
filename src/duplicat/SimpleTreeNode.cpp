#include "SimpleTreeNode.h"

#include "DuplicateTypes.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
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

// Sorts lists of nodes, one after the other. Most pairs are told apart by a number that stands
// beside the node's address, without going to the nodes: with a hundred thousand groups that is
// most of the time.
class NodeSorter {
 public:
  NodeSorter(SortKey key, bool descending) : descending_(descending) {
    switch (key) {
      case SortKey::name:
        rank_ = &SimpleNodeData::rankName;
        compare_ = descending ? &SimpleNodeData::compareNameR : &SimpleNodeData::compareName;
        break;
      case SortKey::size:
        rank_ = &SimpleNodeData::rankSize;
        compare_ = descending ? &SimpleNodeData::compareSizeR : &SimpleNodeData::compareSize;
        break;
      case SortKey::date:
        rank_ = &SimpleNodeData::rankDate;
        compare_ = descending ? &SimpleNodeData::compareDateR : &SimpleNodeData::compareDate;
        break;
    }
  }

  /// False when the nodes stand in order already.
  bool sort(const SimpleTreeNode::Children& nodes) {
    entries_.clear();
    const std::size_t common = commonBeginning(nodes);
    for (SimpleTreeNode* node : nodes) {
      const std::uint64_t value = (node->nodeData.*rank_)(common);
      entries_.push_back({descending_ ? ~value : value, node});
    }
    const auto isBefore = [this](const Entry& a, const Entry& b) {
      if (a.rank != b.rank) return a.rank < b.rank;
      return (a.node->nodeData.*compare_)(b.node->nodeData) < 0;
    };
    if (std::is_sorted(entries_.begin(), entries_.end(), isBefore)) return false;
    std::stable_sort(entries_.begin(), entries_.end(), isBefore);
    return true;
  }

  void appendTo(SimpleTreeNode::Children& nodes) const {
    std::transform(entries_.begin(), entries_.end(), std::back_inserter(nodes),
                   [](const Entry& entry) { return entry.node; });
  }

 private:
  struct Entry {
    std::uint64_t rank;
    SimpleTreeNode* node;
  };
  bool descending_;
  std::uint64_t (SimpleNodeData::*rank_)(std::size_t) const = nullptr;
  int (SimpleNodeData::*compare_)(const SimpleNodeData&) const = nullptr;
  std::vector<Entry> entries_;
};

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

const char* SimpleTreeNode::iconRep() const {
  const SimpleTreeNode& group = nodeData.isLeaf ? *nodeParent : *this;
  return group.nodeData.isBundle ? "ic_app" : duplicateImage(group.nodeData.fileType);
}

SimpleTreeNode::Order SimpleTreeNode::sorted(SortKey key, bool descending) const {
  NodeSorter sorter(key, descending);
  Order order;
  sorter.sort(children);
  sorter.appendTo(order.children);
  for (SimpleTreeNode* child : children) {
    if (!sorter.sort(child->children)) continue;
    order.changed.push_back(child);
    sorter.appendTo(order.below);
  }
  return order;
}

void SimpleTreeNode::take(const Order& order) {
  children = order.children;
  auto next = order.below.begin();
  for (SimpleTreeNode* child : order.changed) {
    const auto count = static_cast<std::ptrdiff_t>(child->children.size());
    std::copy_n(next, count, child->children.begin());
    next += count;
  }
}

DuplicateTree::DuplicateTree() : root_(make(SimpleNodeData::groupDataWithName("Root"))) {}

SimpleTreeNode* DuplicateTree::make(const SimpleNodeData& data, SimpleTreeNode::Children children) {
  return &nodes_.emplace_back(data, nullptr, std::move(children));
}

}  // namespace brisko
