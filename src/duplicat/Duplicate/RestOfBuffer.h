#pragma once

#include "CandidateStore.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace brisko {

/// The first-kilobyte digests of files shorter than that.
///
/// The digest always covers 1024 bytes of one buffer, which starts zeroed and serves a whole
/// search: behind a shorter file it holds what earlier reads left there. Files are read class by
/// class, a class being all candidates of one size, so for all members of a class those bytes are
/// the same, and follow from the classes that were read before. Only the last file read of each
/// class shows through, and only where it is longer than all that were read after it.
class RestOfBuffer {
 public:
  static constexpr std::size_t kLength = 1024;

  /// A class of `size`, read in the turn of the candidate with the list position `activation`;
  /// the file read last was `last`.
  void addClass(std::uint64_t size, std::uint32_t activation, const Candidate* last);

  /// Completes `md5_1k` of the short ones among `copies`, in which it stands for the file's own
  /// bytes. Reads at most as many files as there are sizes below 1024, twice.
  void complete(const std::vector<Candidate*>& copies);

 private:
  struct SizeClass {
    std::uint64_t size;
    std::uint32_t activation;
    const Candidate* last;
  };
  // The buffer's bytes up to `end` that are not covered by a segment with a smaller end.
  struct Segment {
    std::size_t end;
    const Candidate* source;
    bool isLoaded = false;
    std::vector<unsigned char> bytes;
  };
  using Tail = std::array<unsigned char, kLength>;

  void cover(const SizeClass& read);
  void loadFrom(std::size_t begin, Tail& tail);

  std::vector<SizeClass> classes_;
  std::vector<Segment> segments_;  ///< ends descend
};

}  // namespace brisko
