#include "BrowserDatabase.h"

#include "FileDescriptor.h"
#include "LibSqlite.h"
#include "PathResolution.h"
#include "SystemLog.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko {
namespace {

constexpr int kBusyTime = 2000;  // milliseconds
constexpr const char* kOpenFailed = "打开数据库失败！";

// Of the header: the ways in which the file is written and read, 2 for a write-ahead log.
constexpr std::size_t kReadVersion = 19;
constexpr std::size_t kHeaderPart = 20;

struct Found {
  std::string reason;  ///< why it must not be opened
  bool isMissing = false;
  bool isEmpty = false;
};

std::string kindReason(const struct stat& status) {
  if (S_ISLNK(status.st_mode)) return "it is a link";
  if (S_ISDIR(status.st_mode)) return "it is a folder";
  if (!S_ISREG(status.st_mode)) return "it is not a regular file";
  return status.st_uid == ::geteuid() ? "" : "it belongs to another user";
}

Found look(const ParentFolder& parent, const std::string& name) {
  Found found;
  struct stat status;
  if (fstatat(parent.folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    found.isMissing = errno == ENOENT;
    if (!found.isMissing) found.reason = std::strerror(errno);
    return found;
  }
  found.reason = kindReason(status);
  found.isEmpty = status.st_size == 0;
  return found;
}

// Reading a database that was written with a log, but has none now, would make one and leave it
// there.
bool isClosedLogDatabase(const ParentFolder& parent) {
  const Found log = look(parent, parent.name + "-wal");
  if (!log.isMissing && !log.isEmpty) return false;
  const FileDescriptor file(openat(parent.folder.get(), parent.name.c_str(),
                                   O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  std::array<unsigned char, kHeaderPart> header{};
  return file && pread(file.get(), header.data(), header.size(), 0) == kHeaderPart &&
         header[kReadVersion] == 2;
}

// The path as a URI says it, so that no byte of it is taken for a parameter.
std::string uriOf(const std::string& path) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const unsigned char byte : path) {
    if (std::isalnum(byte) != 0 || std::strchr("/-._~", byte) != nullptr) {
      uri += static_cast<char>(byte);
    } else {
      uri += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return uri + "?immutable=1";
}

std::string textOf(int code, const char* message) {
  if (code == SQLITE_READONLY_ROLLBACK || code == SQLITE_READONLY_RECOVERY) {
    return "a change to it was broken off, which is undone when the browser starts or it is "
           "cleaned";
  }
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "it is in use by another program";
    case SQLITE_NOTADB:
      return "it is encrypted, or no database";
    case SQLITE_CORRUPT:
      return "it is damaged";
    case SQLITE_FULL:
      return "the disk is full";
    case SQLITE_READONLY:
      return "it cannot be written to";
    default:
      return message != nullptr ? message : sqlite3_errstr(code);
  }
}

}  // namespace

BrowserDatabase::BrowserDatabase(const std::string& path, Access access) {
  if (open(path, access)) return;
  close();
  SystemLog::write(kOpenFailed);
  if (!reason_.empty()) SystemLog::line("Browser database {}: {}", path, reason_);
}

BrowserDatabase::~BrowserDatabase() {
  close();
}

void BrowserDatabase::close() {
  if (database_ != nullptr) sqlite3_close(std::exchange(database_, nullptr));
}

bool BrowserDatabase::open(const std::string& path, Access access) {
  const ParentFolder parent = openParent(RemovalCalls::system(), path);
  if (parent.error != 0) {
    isMissing_ = parent.error == ENOENT;
    if (!isMissing_) reason_ = parent.reason;
    return false;
  }
  const Found file = look(parent, parent.name);
  isMissing_ = file.isMissing;
  reason_ = file.reason;
  if (isMissing_ || !reason_.empty()) return false;
  if (file.isEmpty) {
    reason_ = "it is empty";
    return false;
  }
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    const Found beside = look(parent, parent.name + suffix);
    if (beside.isMissing || beside.reason.empty()) continue;
    reason_ = "the file beside it, \"" + parent.name + suffix + "\": " + beside.reason;
    return false;
  }
  if (!libsqlite.isThere()) {
    reason_ = "the library of databases cannot be loaded";
    return false;
  }
  const bool isReading = access == Access::read;
  const bool isClosedLog = isReading && isClosedLogDatabase(parent);
  const std::string name = isClosedLog ? uriOf(parent.itemPath()) : parent.itemPath();
  const int flags = SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_PRIVATECACHE |
                    (isClosedLog ? SQLITE_OPEN_URI : 0) |
                    (isReading ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
  const int code = sqlite3_open_v2(name.c_str(), &database_, flags, nullptr);
  if (code != SQLITE_OK) return refuse(code);
  sqlite3_busy_timeout(database_, kBusyTime);
  // The schema is somebody else's text: it may not reach beyond the file, nor write what it is not
  // asked to.
  sqlite3_db_config(database_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  return true;
}

bool BrowserDatabase::refuse(int code) {
  reason_ = textOf(code, database_ != nullptr ? sqlite3_errmsg(database_) : nullptr);
  return false;
}

std::optional<std::int64_t> BrowserDatabase::firstValue(const char* statement) {
  reason_.clear();
  sqlite3_stmt* prepared = nullptr;
  int code = sqlite3_prepare_v2(database_, statement, -1, &prepared, nullptr);
  if (code == SQLITE_OK) code = sqlite3_step(prepared);
  std::optional<std::int64_t> value;
  if (code == SQLITE_ROW) value = sqlite3_column_int64(prepared, 0);
  if (code == SQLITE_DONE) value = 0;
  if (!value) refuse(code);
  sqlite3_finalize(prepared);
  return value;
}

bool BrowserDatabase::run(const char* statement) {
  reason_.clear();
  sqlite3_stmt* prepared = nullptr;
  int code = sqlite3_prepare_v2(database_, statement, -1, &prepared, nullptr);
  if (code == SQLITE_OK) code = sqlite3_step(prepared);
  // A setting answers with a row, and is made all the same.
  const bool isDone = code == SQLITE_DONE || code == SQLITE_ROW;
  if (!isDone) refuse(code);
  sqlite3_finalize(prepared);
  return isDone;
}

bool BrowserDatabase::isSound() {
  reason_.clear();
  sqlite3_stmt* prepared = nullptr;
  int code = sqlite3_prepare_v2(database_, "PRAGMA quick_check(1)", -1, &prepared, nullptr);
  if (code == SQLITE_OK) code = sqlite3_step(prepared);
  const bool isRow = code == SQLITE_ROW;
  const auto* text = isRow ? sqlite3_column_text(prepared, 0) : nullptr;
  const bool isOk = text != nullptr && std::strcmp(reinterpret_cast<const char*>(text), "ok") == 0;
  if (!isOk) refuse(isRow ? SQLITE_CORRUPT : code);
  sqlite3_finalize(prepared);
  return isOk;
}

RowCount countRows(const std::string& path, const char* statement) {
  BrowserDatabase database(path, BrowserDatabase::Access::read);
  if (!database.isOpen()) return {0, database.reason()};
  const auto value = database.firstValue(statement);
  return {static_cast<std::int32_t>(value.value_or(0)), database.reason()};
}

std::string deleteRows(const std::string& path, const std::vector<const char*>& statements) {
  BrowserDatabase database(path, BrowserDatabase::Access::write);
  if (!database.isOpen()) return database.reason();
  const bool isBegun = database.run("PRAGMA secure_delete = ON") &&
                       database.run("BEGIN EXCLUSIVE") && database.isSound();
  std::string reason = database.reason();
  bool isFirst = true;
  for (const char* statement : statements) {
    const bool isDone = isBegun && database.run(statement);
    if (!isDone) SystemLog::write(isFirst ? "delete time error: " : "delete base error: ");
    if (!isDone && reason.empty()) reason = database.reason();
    isFirst = false;
  }
  if (reason.empty() && !database.run("COMMIT")) reason = database.reason();
  if (!reason.empty()) {
    SystemLog::line("Browser database {}: {}", path, reason);
    database.run("ROLLBACK");
    return reason;
  }
  // Overwritten it is already; what is left in the log of a database that keeps one goes with it.
  const bool isCompact = database.run("VACUUM");
  const auto log = database.firstValue("PRAGMA wal_checkpoint(TRUNCATE)");
  if (isCompact && log == 0) return "";
  reason = "its rows are erased, but it could not be compacted";
  if (!database.reason().empty()) reason += ": " + database.reason();
  SystemLog::line("Browser database {}: {}", path, reason);
  return reason;
}

}  // namespace brisko
