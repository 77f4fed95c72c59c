#include "CandidateWalkParts.h"
#include "Host.h"
#include "SystemLog.h"

#include <cerrno>
#include <iterator>
#include <system_error>
#include <utility>

#include <sys/statvfs.h>

namespace brisko {
namespace {

// Tasks that keep their parent open; with more queued than that, folders are opened by path.
constexpr std::size_t kMaximumWithHandle = 256;
// Batches of wide folders that wait for another thread to look at their files.
constexpr std::size_t kMaximumHandedOut = 8;
constexpr std::size_t kWideBatch = 256;

// A file system without blocks is made up by the kernel: its files are no data of anybody.
bool holdsFiles(const std::string& path) {
  struct statvfs status;
  return statvfs(path.c_str(), &status) == 0 && status.f_blocks != 0;
}

}  // namespace

CandidateWalk::CandidateWalk(getFileList& owner, CandidateStore& store, std::uint64_t limit)
    : owner_(owner), store_(store), limit_(limit) {}

CandidateWalk::~CandidateWalk() = default;

bool CandidateWalk::run(const std::string& path, std::vector<std::string>& bundles) {
  isSystemRoot_ = path == "/";
  isHidden_ = !owner_.m_bSearchHiddenFile && getFileList::IsHiddenFile(path);
  const std::string_view bundle = getFileList::outermostBundle(path);
  isInBundle_ = !bundle.empty();
  if (!listTopLevel(path)) return false;
  if (isInBundle_ && !isHidden_ && bundleQualifies(path, Counts::allButTopFolders)) {
    bundles.emplace_back(bundle);
  }
  ReaderCrew crew;
  crew.run(unfinished_, ReaderCrew::kMaximum, [this](ReaderCrew::Member& member) { work(member); });
  collect(bundles);
  for (auto& worker : workers_)
    store_.arenas.push_back(std::move(worker->arena));
  return true;
}

bool CandidateWalk::listTopLevel(const std::string& path) {
  int error = 0;
  const Handle handle = Host::current().catalog->open(path + "/.", error);
  if (!handle) {
    skip(path, error);
    return false;
  }
  workers_.push_back(std::make_unique<Worker>());
  Worker& worker = *workers_.back();
  root_ = &worker.folders.emplace_back();
  root_->facts = worker.arena.makeFolder(nullptr, path, handle->self().device);
  owner_.currentPath_.set(path);
  while (handle->read(worker.batch, 0)) {
    examineTopLevel(worker, *root_, handle, root_->newSegment(), worker.batch);
  }
  if (handle->error() != 0) {
    skip(path, handle->error());
    return false;
  }
  unfinished_ = worker.found.size();
  tasks_.assign(std::make_move_iterator(worker.found.rbegin()),
                std::make_move_iterator(worker.found.rend()));
  worker.found.clear();
  return true;
}

void CandidateWalk::work(ReaderCrew::Member& member) {
  Worker* worker = nullptr;
  {
    std::lock_guard lock(mutex_);
    worker = workers_.emplace_back(std::make_unique<Worker>()).get();
  }
  for (Task task; nextTask(member, task); task = {}) {
    perform(*worker, task, member);
    finish(worker->found);
  }
}

bool CandidateWalk::nextTask(ReaderCrew::Member& member, Task& task) {
  std::unique_lock lock(mutex_);
  while (tasks_.empty()) {
    if (unfinished_ == 0) return false;
    changed_.wait(lock);
    member.restart();
  }
  task = std::move(tasks_.back());
  tasks_.pop_back();
  if (task.batch) --handedOut_;
  return true;
}

void CandidateWalk::finish(std::vector<Task>& further) {
  std::lock_guard lock(mutex_);
  unfinished_ += further.size();
  for (auto task = further.rbegin(); task != further.rend(); ++task) {
    if (tasks_.size() >= kMaximumWithHandle) task->parent = nullptr;
    tasks_.push_back(std::move(*task));
  }
  --unfinished_;
  if (further.size() > 1 || unfinished_ == 0) changed_.notify_all();
  further.clear();
}

CandidateWalk::Handle CandidateWalk::open(const Task& task, int& error) {
  if (task.parent && !task.isThroughLink) {
    auto handle = task.parent->open(task.folder->facts->name, error);
    if (handle || error != EXDEV) return handle;
  }
  const std::string path = CandidateStore::path(*task.folder->facts);
  if (!holdsFiles(path)) {
    error = error == 0 ? ENOENT : error;
    return nullptr;
  }
  return Host::current().catalog->open(task.isThroughLink ? path + "/." : path, error);
}

void CandidateWalk::perform(Worker& worker, Task& task, ReaderCrew::Member& member) {
  Folder& folder = *task.folder;
  if (owner_.m_bStopSearch) {
    if (!task.batch) folder.isLeftOut = true;
    return;
  }
  if (task.batch) {
    examine(worker, folder, task.handle, *task.segment, *task.batch, member);
    return;
  }
  owner_.currentPath_.offer([&] { return CandidateStore::path(*folder.facts); });
  if (folder.isBundle) {
    const bool isBelowTop = folder.facts->parent != root_->facts;
    folder.qualifies = bundleQualifies(CandidateStore::path(*folder.facts),
                                       isBelowTop ? Counts::itself : Counts::allBelow);
    return;
  }
  int error = 0;
  const Handle handle = open(task, error);
  task.parent = nullptr;
  if (!handle) {
    folder.isLeftOut = true;
    skip(CandidateStore::path(*folder.facts), error);
    return;
  }
  folder.facts->device = handle->self().device;
  if (!readFolder(worker, folder, handle, member)) {
    folder.isLeftOut = true;
    skip(CandidateStore::path(*folder.facts), handle->error());
  }
}

bool CandidateWalk::readFolder(Worker& worker, Folder& folder, const Handle& handle,
                               ReaderCrew::Member& member) {
  while (handle->read(worker.batch, 0)) {
    Segment& segment = folder.newSegment();
    if (handOut(folder, handle, segment, worker.batch)) continue;
    examine(worker, folder, handle, segment, worker.batch, member);
  }
  return handle->error() == 0;
}

// One wide folder would keep one thread busy with look-ups while the others have nothing to do.
bool CandidateWalk::handOut(Folder& folder, const Handle& handle, Segment& segment,
                            CatalogBatch& batch) {
  if (batch.items.size() < kWideBatch) return false;
  std::lock_guard lock(mutex_);
  if (handedOut_ >= kMaximumHandedOut) return false;
  Task task;
  task.folder = &folder;
  task.handle = handle;
  task.segment = &segment;
  task.batch = std::make_unique<CatalogBatch>(std::exchange(batch, {}));
  tasks_.push_back(std::move(task));
  ++unfinished_;
  ++handedOut_;
  changed_.notify_one();
  return true;
}

void CandidateWalk::skip(const std::string& path, int error) {
  std::string reason = std::generic_category().message(error);
  SystemLog::line("get contents Of Directory At Path failed{}: {}", path, reason);
  std::lock_guard lock(mutex_);
  owner_.skipped_.push_back({path, std::move(reason)});
}

void CandidateWalk::collect(std::vector<std::string>& bundles) {
  // Where the depth-first reading stands in each folder from the top to the one being read.
  struct Place {
    const Folder* folder;
    std::size_t segment;
    std::size_t item;
  };
  std::size_t count = 0;
  for (const auto& worker : workers_)
    count += worker->candidates;
  store_.inOrder.reserve(count);
  std::vector<Place> places{{root_, 0, 0}};
  while (!places.empty()) {
    Place& place = places.back();
    if (place.segment == place.folder->segments.size()) {
      places.pop_back();
      continue;
    }
    const auto& items = place.folder->segments[place.segment]->items;
    if (place.item == items.size()) {
      ++place.segment;
      place.item = 0;
      continue;
    }
    const Segment::Item& item = items[place.item++];
    for (std::size_t i = 0; i < item.count; ++i)
      store_.inOrder.push_back(item.first + i);
    if (item.folder == nullptr || item.folder->isLeftOut) continue;
    if (!item.folder->isBundle) {
      places.push_back({item.folder, 0, 0});
    } else if (item.folder->qualifies) {
      bundles.push_back(CandidateStore::path(*item.folder->facts));
    }
  }
}

}  // namespace brisko
