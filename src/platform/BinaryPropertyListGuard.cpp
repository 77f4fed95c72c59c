#include "PropertyListGuard.h"

#include <algorithm>
#include <vector>

namespace brisko {
namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr std::size_t kTrailer = 32;

enum Marker : unsigned {
  integer = 0x1,
  real = 0x2,
  date = 0x3,
  data = 0x4,
  ascii = 0x5,
  utf16 = 0x6,
  uid = 0x8,
  array = 0xA,
  dictionary = 0xD,
};

// What a value costs once every reference below it has become a value of its own.
struct Cost {
  std::uint64_t values = 1;
  std::uint64_t bytes = 0;
  std::uint64_t keyPairs = 0;
  std::size_t levels = 1;
  bool hasZero =
      false;  // a text with a zero character, which the library ends the process for in a key
};

// A container on the way from the root to the value at hand.
struct Open {
  std::uint64_t object = 0;
  std::uint64_t references = 0;  ///< where its references begin
  std::uint64_t count = 0;
  std::uint64_t keys = 0;  ///< how many of them, the first ones, are keys
  std::uint64_t next = 0;
  Cost cost;
};

class BinaryScan {
 public:
  explicit BinaryScan(std::string_view bytes) : bytes_(bytes) {}

  std::optional<std::string> fault() {
    if (!readTrailer()) return "its trailer is broken";
    states_.assign(objects_, State::unseen);
    costs_.resize(objects_);
    enter(root_);
    while (fault_.empty() && !open_.empty())
      step();
    if (fault_.empty()) return std::nullopt;
    return fault_;
  }

 private:
  enum class State : std::uint8_t { unseen, open, done };

  std::uint64_t number(std::uint64_t at, std::uint64_t size) const {
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < size; ++i) {
      value = value << 8U | static_cast<unsigned char>(bytes_[at + i]);
    }
    return value;
  }

  bool readTrailer() {
    if (bytes_.size() < kMagic.size() + kTrailer) return false;
    const std::uint64_t trailer = bytes_.size() - kTrailer;
    offsetSize_ = number(trailer + 6, 1);
    referenceSize_ = number(trailer + 7, 1);
    objects_ = number(trailer + 8, 8);
    root_ = number(trailer + 16, 8);
    table_ = number(trailer + 24, 8);
    const auto fits = [](std::uint64_t size) { return size >= 1 && size <= 8; };
    return fits(offsetSize_) && fits(referenceSize_) && table_ >= kMagic.size() &&
           table_ < trailer && objects_ >= 1 && objects_ <= (trailer - table_) / offsetSize_ &&
           root_ < objects_;
  }

  // Counts a value, or opens it when it is a container that was not seen before.
  void enter(std::uint64_t object) {
    if (object >= objects_) return fail("a reference leads nowhere");
    if (states_[object] == State::open) return fail("it contains itself");
    if (states_[object] == State::done) return add(costs_[object]);
    const std::uint64_t at = number(table_ + object * offsetSize_, offsetSize_);
    if (at < kMagic.size() || at >= table_) return fail("an offset leads nowhere");
    const unsigned marker = static_cast<unsigned char>(bytes_[at]) >> 4U;
    std::uint64_t length = static_cast<unsigned char>(bytes_[at]) & 0xFU;
    std::uint64_t content = at + 1;
    switch (marker) {
      case Marker::integer:
      case Marker::real:
        return leaf(object, content, std::uint64_t{1} << std::min<std::uint64_t>(length, 5));
      case Marker::date:
        return leaf(object, content, 8);
      case Marker::uid:
        return leaf(object, content, length + 1);
      default:
        break;
    }
    if (length == 0xF && marker >= Marker::data && !readLength(content, length)) return;
    switch (marker) {
      case Marker::utf16:
        return length > bytes_.size() ? fail("a text is too long")
                                      : text(object, content, length * 2, 2);
      case Marker::array:
        return container(object, content, length, 1);
      case Marker::dictionary:
        return container(object, content, length, 2);
      case 0x0:
        return leaf(object, content, 0);
      case Marker::data:
        return leaf(object, content, length);
      case Marker::ascii:
        return text(object, content, length, 1);
      default:
        return fail("a value is of an unknown kind");
    }
  }

  bool readLength(std::uint64_t& content, std::uint64_t& length) {
    const unsigned marker = content < table_ ? static_cast<unsigned char>(bytes_[content]) : 0;
    const std::uint64_t size = std::uint64_t{1} << (marker & 0xFU);
    if (marker >> 4U != Marker::integer || (marker & 0xFU) > 3 || table_ - content - 1 < size) {
      fail("a length is broken");
      return false;
    }
    length = number(content + 1, size);
    content += 1 + size;
    return true;
  }

  void leaf(std::uint64_t object, std::uint64_t content, std::uint64_t size) {
    if (content > table_ || size > table_ - content) return fail("a value is cut off");
    states_[object] = State::done;
    costs_[object].bytes = size;
    add(costs_[object]);
  }

  void text(std::uint64_t object, std::uint64_t content, std::uint64_t size, std::uint64_t unit) {
    leaf(object, content, size);
    if (!fault_.empty()) return;
    for (std::uint64_t i = 0; i < size && !costs_[object].hasZero; i += unit) {
      costs_[object].hasZero = number(content + i, unit) == 0;
    }
  }

  void container(std::uint64_t object, std::uint64_t content, std::uint64_t length,
                 std::uint64_t perEntry) {
    if (content > table_ || length > (table_ - content) / (perEntry * referenceSize_)) {
      return fail("a container is cut off");
    }
    if (open_.size() >= PropertyListBounds::kLevels) return fail("it is nested too deep");
    states_[object] = State::open;
    const std::uint64_t keys = perEntry == 2 ? length : 0;
    open_.push_back({object, content, length * perEntry, keys, 0, {}});
    open_.back().cost.keyPairs = keys * keys;
    bound(open_.back().cost);
  }

  void step() {
    Open& top = open_.back();
    if (top.next < top.count) {
      const bool isKey = top.next < top.keys;
      const std::uint64_t object =
          number(top.references + top.next++ * referenceSize_, referenceSize_);
      enter(object);
      if (isKey && fault_.empty() && costs_[object].hasZero) fail("a key has a zero character");
      return;
    }
    const Open ended = top;
    open_.pop_back();
    states_[ended.object] = State::done;
    costs_[ended.object] = ended.cost;
    add(ended.cost);
  }

  // Adds a value to the container that holds it. A shared container can be deeper than its own way
  // down from the root was, so its height counts again at each place.
  void add(const Cost& cost) {
    if (open_.size() + cost.levels > PropertyListBounds::kLevels + 1) {
      return fail("it is nested too deep");
    }
    if (open_.empty()) return;
    Cost& into = open_.back().cost;
    into.values += cost.values;
    into.bytes += cost.bytes;
    into.keyPairs += cost.keyPairs;
    into.levels = std::max(into.levels, cost.levels + 1);
    bound(into);
  }

  void bound(const Cost& cost) {
    if (cost.values > PropertyListBounds::kValues) fail("it has too many values");
    if (cost.bytes > PropertyListBounds::kExpandedBytes) fail("its values are too large");
    if (cost.keyPairs > PropertyListBounds::kKeyPairs) fail("it has too many keys");
  }

  void fail(const char* why) { fault_ = why; }

  std::string_view bytes_;
  std::uint64_t offsetSize_ = 0;
  std::uint64_t referenceSize_ = 0;
  std::uint64_t objects_ = 0;
  std::uint64_t root_ = 0;
  std::uint64_t table_ = 0;
  std::vector<State> states_;
  std::vector<Cost> costs_;
  std::vector<Open> open_;
  std::string fault_;
};

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) {
  return bytes.starts_with("bplist");
}

std::optional<std::string> binaryPropertyListFault(std::string_view bytes) {
  return BinaryScan(bytes).fault();
}

}  // namespace brisko
