#pragma once

#include "PageArena.h"
#include "fileAttrbItem.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brisko {

/// A folder that candidates lie in: a link in the chain from which a path is put together.
struct CandidateFolder {
  const CandidateFolder* parent = nullptr;  ///< null for the folder searched
  const char* name = "";                    ///< the whole path of the folder searched
  std::uint64_t device = 0;
  std::size_t nameLength = 0;
};

/// One candidate, in 64 bytes and its name: a search may hold millions, of which few come out.
/// Paths are put together when somebody asks.
struct Candidate {
  const char* name = "";
  const CandidateFolder* folder = nullptr;
  std::uint64_t fileSize = 0;
  std::uint64_t inode = 0;
  std::int64_t modificationSeconds = 0;
  std::uint64_t md5 = 0;  ///< the running value until the whole content is read
  std::uint64_t md5_1k = 0;
  std::uint32_t modificationNanoseconds = 0;
  bool isLink = false;  ///< a link directly in the folder searched; never opened
};
static_assert(sizeof(Candidate) == 64);

/// What one thread of a walk fills. Addresses stay.
class CandidateArena {
 public:
  const char* keep(std::string_view name);
  CandidateFolder* make(const CandidateFolder& folder);
  CandidateFolder* makeFolder(const CandidateFolder* parent, std::string_view name,
                              std::uint64_t device);
  Candidate* make(const Candidate& candidate);

  void dropCandidates() { candidates_ = {}; }

 private:
  PageArena names_;  ///< of folders and candidates, and the folders
  PageArena candidates_;
};

/// The candidates of one search in list order, and what their paths are made of.
struct CandidateStore {
  std::vector<Candidate*> inOrder;
  std::vector<CandidateArena> arenas;  ///< own everything that `inOrder` leads to

  /// Forgets all candidates but `kept`, of which it returns copies, in this order. Folders and
  /// names stay, in `arenas`.
  std::deque<Candidate> keepOnly(const std::vector<Candidate*>& kept);

  static std::string path(const CandidateFolder& folder);
  static std::string path(const CandidateFolder& folder, std::string_view name);
  static std::string path(const Candidate& candidate);
  static FileIdentity identity(const Candidate& candidate);
  static fileAttrbItem record(const Candidate& candidate);
};

}  // namespace brisko
