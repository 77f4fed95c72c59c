#pragma once

#include "EraserOptions.h"
#include "MediumNotes.h"

#include <cstdint>
#include <string>

namespace brisko::srm {

/// What the parts of one run share: what is asked for, whether to stop, and what was said.
class EraserRun {
 public:
  explicit EraserRun(const EraserOptions& options) : options_(options) {}

  const EraserOptions& options() const { return options_; }
  MediumNotes& notes() { return notes_; }

  /// From now on an interrupt, a request to end and a hang-up ask the run to stop.
  static void watchSignals();
  static bool isStopped();

  /// "PATH: WHAT" on standard output, when that is wanted.
  void tell(const std::string& path, const std::string& what) const;
  /// The item stays: "srm: PATH: REASON" on standard error.
  void fail(const std::string& path, const std::string& reason);
  void count() { ++erased_; }

  std::uint64_t erased() const { return erased_; }
  std::uint64_t failed() const { return failed_; }

 private:
  const EraserOptions& options_;
  MediumNotes notes_;
  std::uint64_t erased_ = 0;
  std::uint64_t failed_ = 0;
};

/// Why an item stays, in words for people: what errno's value means here.
std::string wordsFor(int error);

}  // namespace brisko::srm
