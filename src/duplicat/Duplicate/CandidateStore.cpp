#include "CandidateStore.h"

#include <cstring>

namespace brisko {
namespace {

// Fills `path` from the end of the chain to its start, so that it is allocated once.
void fill(const CandidateFolder* folder, std::string& path, std::size_t behind) {
  std::size_t length = 0;
  const CandidateFolder* root = folder;
  for (const CandidateFolder* at = folder; at != nullptr; at = at->parent) {
    length += at->nameLength + 1;
    root = at;
  }
  // The root "/" brings its own separator.
  const bool slashRoot = root->nameLength == 1 && root->name[0] == '/';
  if (slashRoot) --length;
  path.resize(length + behind, '/');
  std::size_t end = length;
  for (const CandidateFolder* at = folder; at != nullptr; at = at->parent) {
    if (at == root && slashRoot) break;
    path[end - 1] = '/';
    std::memcpy(path.data() + end - 1 - at->nameLength, at->name, at->nameLength);
    end -= at->nameLength + 1;
  }
}

}  // namespace

const char* CandidateArena::keep(std::string_view name) {
  char* kept = names_.take(name.size() + 1, 1);
  std::memcpy(kept, name.data(), name.size());
  kept[name.size()] = '\0';
  return kept;
}

CandidateFolder* CandidateArena::make(const CandidateFolder& folder) {
  return new (names_.take(sizeof folder, alignof(CandidateFolder))) CandidateFolder(folder);
}

CandidateFolder* CandidateArena::makeFolder(const CandidateFolder* parent, std::string_view name,
                                            std::uint64_t device) {
  return make(CandidateFolder{parent, keep(name), device, name.size()});
}

Candidate* CandidateArena::make(const Candidate& candidate) {
  return new (candidates_.take(sizeof candidate, alignof(Candidate))) Candidate(candidate);
}

std::deque<Candidate> CandidateStore::keepOnly(const std::vector<Candidate*>& kept) {
  std::deque<Candidate> copies;
  for (const Candidate* candidate : kept)
    copies.push_back(*candidate);
  inOrder = {};
  for (CandidateArena& arena : arenas)
    arena.dropCandidates();
  return copies;
}

std::string CandidateStore::path(const CandidateFolder& folder) {
  std::string path;
  fill(&folder, path, 0);
  if (path.size() > 1) path.pop_back();
  return path;
}

std::string CandidateStore::path(const CandidateFolder& folder, std::string_view name) {
  std::string path;
  fill(&folder, path, name.size());
  name.copy(path.data() + path.size() - name.size(), name.size());
  return path;
}

std::string CandidateStore::path(const Candidate& candidate) {
  return path(*candidate.folder, candidate.name);
}

FileIdentity CandidateStore::identity(const Candidate& candidate) {
  FileIdentity identity;
  identity.device = candidate.folder->device;
  identity.inode = candidate.inode;
  identity.kind = candidate.isLink ? FileKind::symbolicLink : FileKind::regular;
  if (!candidate.isLink) {
    identity.size = candidate.fileSize;
    identity.modificationSeconds = candidate.modificationSeconds;
    identity.modificationNanoseconds = candidate.modificationNanoseconds;
  }
  return identity;
}

fileAttrbItem CandidateStore::record(const Candidate& candidate) {
  fileAttrbItem item;
  item.filePathName = path(candidate);
  item.fileName = candidate.name;
  item.fileSize = candidate.fileSize;
  item.md5 = candidate.md5;
  item.md5_1k = candidate.md5_1k;
  item.ModificationDate = {candidate.modificationSeconds,
                           static_cast<std::int32_t>(candidate.modificationNanoseconds)};
  item.identity = identity(candidate);
  return item;
}

}  // namespace brisko
