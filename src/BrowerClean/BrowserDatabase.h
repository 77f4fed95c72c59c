#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace brisko {

/// A browser's SQLite database, opened without harm to it.
///
/// Only a regular file of this user is opened, never through a link and never made; the same holds
/// for the files beside it ("-wal", "-shm", "-journal"), which SQLite reads along. Another
/// connection's lock is waited for, for 2 seconds.
class BrowserDatabase {
 public:
  enum class Access { read, write };

  /// When it cannot be opened, "打开数据库失败！" is logged and `reason` says why.
  BrowserDatabase(const std::string& path, Access access);
  ~BrowserDatabase();
  BrowserDatabase(const BrowserDatabase&) = delete;
  BrowserDatabase& operator=(const BrowserDatabase&) = delete;

  bool isOpen() const { return database_ != nullptr; }
  /// Nothing is at the path. That is no failure: there is nothing to count or to erase.
  bool isMissing() const { return isMissing_; }

  /// Steps the statement once. The first column of the first row as a number; nothing when it does
  /// not come to a row or its end.
  std::optional<std::int64_t> firstValue(const char* statement);

  /// Steps the statement once. False when it does not come to its end.
  bool run(const char* statement);

  /// Whether all pages are in order, as far as SQLite sees without the indexes' content.
  bool isSound();

  /// Why the last operation failed, for people; empty when it did not.
  const std::string& reason() const { return reason_; }

 private:
  bool open(const std::string& path, Access access);
  void close();
  bool refuse(int code);

  sqlite3* database_ = nullptr;
  std::string reason_;
  bool isMissing_ = false;
};

/// A count of rows, and why there is none.
struct RowCount {
  std::int32_t rows = 0;
  std::string reason;
};

/// The value that the statement gives, as 32 bits; 0 when there is none.
RowCount countRows(const std::string& path, const char* statement);

/// Runs the statements in one transaction, overwrites what they freed and compacts the file. When a
/// statement fails, the next one still runs ("delete time error: " is logged for the first, "delete
/// base error: " for a later one), and then nothing of all is kept. Returns why not everything was
/// done; empty when it was, or when there is no such file.
std::string deleteRows(const std::string& path, const std::vector<const char*>& statements);

}  // namespace brisko
