#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <vector>

/// Additions to the platform's arrays, for vectors whose elements are pointers of any kind.
/// Identity means the same object, however equal two others are.
namespace brisko::NSArray {

template <typename Pointer>
bool containsObjectIdenticalTo(const std::vector<Pointer>& array, const Pointer& object) {
  return std::any_of(array.begin(), array.end(),
                     [&](const Pointer& element) { return &*element == &*object; });
}

/// Whether any of `objects` is in `array`.
template <typename Pointer>
bool containsAnyObjectsIdenticalTo(const std::vector<Pointer>& array,
                                   const std::vector<Pointer>& objects) {
  return std::any_of(objects.begin(), objects.end(), [&](const Pointer& object) {
    return containsObjectIdenticalTo(array, object);
  });
}

/// Where in `array` the given objects first stand; those that are not in it give no index.
template <typename Pointer>
std::set<std::size_t> indexesOfObjects(const std::vector<Pointer>& array,
                                       const std::vector<Pointer>& objects) {
  std::set<std::size_t> indexes;
  for (const Pointer& object : objects) {
    const auto found = std::find(array.begin(), array.end(), object);
    if (found != array.end()) indexes.insert(static_cast<std::size_t>(found - array.begin()));
  }
  return indexes;
}

}  // namespace brisko::NSArray

namespace brisko::NSMutableArray {

/// Inserts all of `objects`, in their order, before the element at `index`; at the end when there
/// is none. The two may be the same vector.
template <typename Element>
void insertObjectsFromArray(std::vector<Element>& array, std::vector<Element> objects,
                            std::size_t index) {
  const auto at = array.begin() + static_cast<std::ptrdiff_t>(std::min(index, array.size()));
  array.insert(at, std::make_move_iterator(objects.begin()),
               std::make_move_iterator(objects.end()));
}

}  // namespace brisko::NSMutableArray
