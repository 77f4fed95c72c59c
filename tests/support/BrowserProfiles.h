#pragma once

#include "TemporaryFolder.h"

#include <string>
#include <vector>

struct sqlite3;

namespace brisko::test {

/// A connection of another program to a database.
class OtherConnection {
 public:
  explicit OtherConnection(const std::string& path);
  ~OtherConnection();
  OtherConnection(const OtherConnection&) = delete;
  OtherConnection& operator=(const OtherConnection&) = delete;

  void run(const std::string& sql);
  std::string value(const std::string& sql);

 private:
  sqlite3* database_ = nullptr;
};

/// What every erased row of the made databases holds.
inline constexpr const char* kSecret = "secret-that-must-go";

// Databases as browsers make them, with `rows` rows in each table that is cleaned.

/// Chromium's "History": urls, visits, downloads, keyword_search_terms …
void makeHistory(const std::string& path, int rows);
/// Chromium's "Cookies".
void makeCookies(const std::string& path, int rows);
/// Chromium's "Login Data".
void makeLogins(const std::string& path, int rows);
/// Firefox's "places.sqlite", with a write-ahead log; bookmarks besides.
void makePlaces(const std::string& path, int rows);
/// Safari's "History.db".
void makeSafariHistory(const std::string& path, int rows);

/// "ok" when the database is in order; looked at on a copy, with the files beside it.
std::string integrityOf(const std::string& path);
/// The number of rows; looked at on a copy.
int rowsIn(const std::string& path, const std::string& table);

}  // namespace brisko::test
