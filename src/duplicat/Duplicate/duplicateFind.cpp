#include "duplicateFind.h"

#include "ContentGrouping.h"
#include "SystemLog.h"

#include <utility>

#include <sys/stat.h>

namespace brisko {

void duplicateFind::setSearchOption(bool hidden, bool system) {
  m_bSearchHiddenFile = hidden;
  m_bSearchSystemDirectory = system;
}

template <typename T>
void duplicateFind::setRunning(std::shared_ptr<T>& member, std::shared_ptr<T> value) {
  std::lock_guard lock(mutex_);
  member = std::move(value);
}

void duplicateFind::searchDuplicateFileAtPath(const std::string& path, std::uint64_t limittedSize) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return;
  m_path = path;
  m_limittedSize = limittedSize;
  const bool result = findDuplicate();
  SystemLog::line("findDuplicate result:{}", result ? 1 : 0);
}

bool duplicateFind::listCandidates() {
  const auto list = std::make_shared<getFileList>();
  list->m_bSearchHiddenFile = m_bSearchHiddenFile;
  list->m_bSearchSystemDirectory = m_bSearchSystemDirectory;
  setRunning(m_fileList, list);
  const bool isListed =
      !m_Stop && list->getListAtPath(m_path, store_, DirectoryArray, m_limittedSize);
  m_CurrentSearchPath.set(list->m_CurrentPath());
  if (!DirectoryArray.empty() && !m_Stop) getDuplicateApp(DirectoryArray);
  m_iAppProgress = 100;
  setRunning(m_fileList, std::shared_ptr<getFileList>());
  skipped_ = list->skipped();
  return isListed;
}

void duplicateFind::getDuplicateApp(const std::vector<std::string>& paths) {
  const auto find = std::make_shared<FindDuplicateApp>();
  setRunning(m_findDuplicateApp, find);
  find->setStopSearch(m_Stop);
  find->FindAppInArray(paths, m_allAppArray);
  setRunning(m_findDuplicateApp, std::shared_ptr<FindDuplicateApp>());
}

bool duplicateFind::findDuplicate() {
  if (!listCandidates() && !m_Stop) return false;
  if (m_Stop) return true;
  m_allFileCount = store_.inOrder.size();
  if (m_allFileCount == 0) return false;
  ContentGrouping grouping(store_, m_Stop, m_iProgress, m_CurrentSearchPath);
  m_newFileArray = store_.keepOnly(grouping.run());
  return true;
}

std::string duplicateFind::getCurrentSearchPath() const {
  std::lock_guard lock(mutex_);
  if (m_findDuplicateApp) return m_findDuplicateApp->m_CurrentSearchFile();
  return m_fileList ? m_fileList->m_CurrentPath() : m_CurrentSearchPath.get();
}

std::uint32_t duplicateFind::getProgress() const {
  std::lock_guard lock(mutex_);
  const std::uint32_t bundles =
      m_findDuplicateApp ? m_findDuplicateApp->m_Progress() : m_iAppProgress.load();
  return (bundles + m_iProgress.percentage()) >> 1;
}

void duplicateFind::stopSearch() {
  m_Stop = true;
  std::lock_guard lock(mutex_);
  if (m_fileList) m_fileList->stopSearch();
  if (m_findDuplicateApp) m_findDuplicateApp->setStopSearch(true);
}

bool duplicateFind::takeDuplicateFile(Candidate& file) {
  if (m_newFileArray.empty()) return false;
  file = m_newFileArray.front();
  m_newFileArray.pop_front();
  return true;
}

void duplicateFind::getAllDuplicateFile(std::vector<fileAttrbItem>& out) const {
  findNewDuplicateFile(out, 0);
}

bool duplicateFind::findNewDuplicateFile(std::vector<fileAttrbItem>& out,
                                         std::size_t fromIndex) const {
  if (fromIndex > m_newFileArray.size()) return false;
  for (std::size_t i = fromIndex; i < m_newFileArray.size(); ++i)
    out.push_back(CandidateStore::record(m_newFileArray[i]));
  return true;
}

bool duplicateFind::getNewAppDuplicateDir(std::vector<AppGroup>& out, std::size_t fromIndex) const {
  if (fromIndex > m_allAppArray.size()) return false;
  out.insert(out.end(), m_allAppArray.begin() + static_cast<std::ptrdiff_t>(fromIndex),
             m_allAppArray.end());
  return true;
}

}  // namespace brisko
