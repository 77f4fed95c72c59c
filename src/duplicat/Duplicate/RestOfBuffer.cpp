#include "RestOfBuffer.h"

#include "CandidateReader.h"
#include "crc.h"

#include <algorithm>

namespace brisko {

void RestOfBuffer::addClass(std::uint64_t size, std::uint32_t activation, const Candidate* last) {
  classes_.push_back({size, activation, last});
}

void RestOfBuffer::cover(const SizeClass& read) {
  const std::size_t end = std::min<std::uint64_t>(read.size, kLength);
  while (!segments_.empty() && segments_.back().end <= end)
    segments_.pop_back();
  segments_.push_back({end, read.last, false, {}});
}

// Fills in the buffer's bytes from `begin` on. What cannot be read any more counts as zero.
void RestOfBuffer::loadFrom(std::size_t begin, Tail& tail) {
  tail.fill(0);
  std::size_t covered = begin;
  for (auto segment = segments_.rbegin(); segment != segments_.rend(); ++segment) {
    if (segment->end <= covered) continue;
    if (!segment->isLoaded) {
      CandidateReader reader(kLength);
      segment->isLoaded = true;
      if (reader.open(*segment->source, false)) {
        const auto bytes = reader.read(0, segment->end);
        segment->bytes.assign(bytes.begin(), bytes.end());
      }
    }
    if (!segment->bytes.empty()) {
      std::copy(segment->bytes.begin() + static_cast<std::ptrdiff_t>(covered), segment->bytes.end(),
                tail.begin() + static_cast<std::ptrdiff_t>(covered));
    }
    covered = segment->end;
  }
}

void RestOfBuffer::complete(const std::vector<Candidate*>& copies) {
  const auto isShort = [](const SizeClass& each) { return each.size < kLength; };
  if (std::none_of(classes_.begin(), classes_.end(), isShort)) return;
  std::vector<std::vector<Candidate*>> ofSize(kLength);
  bool isAny = false;
  for (Candidate* copy : copies) {
    if (copy->fileSize >= kLength) continue;
    ofSize[copy->fileSize].push_back(copy);
    isAny = true;
  }
  if (!isAny) return;
  std::sort(classes_.begin(), classes_.end(),
            [](const SizeClass& a, const SizeClass& b) { return a.activation < b.activation; });
  Tail tail;
  for (const SizeClass& read : classes_) {
    if (read.size < kLength && !ofSize[read.size].empty()) {
      loadFrom(read.size, tail);
      for (Candidate* copy : ofSize[read.size]) {
        copy->md5_1k = crc::update(copy->md5_1k, tail.data() + read.size, kLength - read.size);
      }
    }
    cover(read);
  }
}

}  // namespace brisko
