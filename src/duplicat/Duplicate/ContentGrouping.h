#pragma once

#include "CandidateReader.h"
#include "CandidateStore.h"
#include "CurrentPath.h"
#include "ReaderCrew.h"
#include "RestOfBuffer.h"
#include "SearchProgress.h"

#include <atomic>
#include <cstdint>
#include <vector>

namespace brisko {

/// Finds the candidates whose contents are the same.
///
/// The outcome is that of taking each remaining candidate in list order and comparing it with all
/// others of its size: first by the digest of the first 1024 bytes, then by the digest of the
/// whole; what matches is removed from the candidates together with it. It is reached by refining
/// classes: all of one size, then all with the same first piece, then with the same longer and
/// longer pieces, a file being read on only while another one still agrees with it. Each refinement
/// sorts classes, so the whole costs n log n.
///
/// Files are read in inode order, which on most file systems is close to the order on the disk.
class ContentGrouping {
 public:
  ContentGrouping(CandidateStore& store, const std::atomic<bool>& stop, SearchProgress& progress,
                  CurrentPath& currentPath);

  /// The copies: group after group in the order in which their first members stand in the list;
  /// within a group the later members in list order, then the first. Digests of the returned ones
  /// are filled in. When stopped, groups of what was read until then. Failures to read are logged
  /// as "open file failed:…", and the file is a copy of nothing.
  std::vector<Candidate*> run();

 private:
  // Files up to this size are read whole at once: opening a file again costs more than reading it.
  static constexpr std::uint64_t kFirstPiece = 16 * 1024;
  // From here on files are streamed: few at a time, the longest first.
  static constexpr std::uint64_t kStreamed = std::uint64_t{1} << 20;

  // One candidate in a class: members of a class stand together in list order. What refining asks
  // for stands here and not in the candidates, which lie scattered in memory by then.
  struct Member {
    std::uint64_t key = 0;
    std::uint32_t order = 0;             // in the candidates' list
    std::uint32_t classId : 30 = 0;      // same in a class, different in its neighbours
    std::uint32_t isIncomplete : 1 = 0;  // the piece asked for last could not be read
    std::uint32_t isCounted : 1 = 0;     // counts as decided in the progress
  };
  static_assert(sizeof(Member) == 16);

  struct ReadPlan;

  Candidate& candidate(const Member& member) const { return *store_.inOrder[member.order]; }
  void splitBySize();
  void readFirstPieces();
  void noteSizeClasses();
  void compareEnds();
  void readOn(std::uint64_t from, std::uint64_t to);
  void refineByKeys();
  void takeFinished(std::uint64_t readTo);
  template <typename Place>
  void sortTasks(std::vector<std::uint64_t>& tasks, Place place);
  ReadPlan planReading(std::uint64_t from);
  template <typename Work>
  void readAll(std::uint64_t from, std::size_t bufferSize, Work work);
  void logUnread(const ReadPlan& plan) const;
  void takeFromOtherName(Member& member, const Member& read);
  void countOut(Member& member);
  std::vector<Candidate*> inGroupOrder();

  CandidateStore& store_;
  const std::atomic<bool>& stop_;
  SearchProgress& progress_;
  CurrentPath& currentPath_;
  std::vector<Member> live_;
  std::vector<Member> finished_;
  RestOfBuffer restOfBuffer_;
  std::uint32_t nextClassId_ = 1;
};

}  // namespace brisko
