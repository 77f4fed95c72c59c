#include "BrowserProfiles.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sqlite3.h>

namespace brisko::test {
namespace {

// Enough in each row to fill pages of its own.
std::string rowsOf(int count) {
  return "WITH RECURSIVE n(i) AS (SELECT 1 WHERE " + std::to_string(count) +
         " > 0 UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(count) + ") ";
}

std::string secretText() {
  return std::string("'https://") + kSecret + ".example/' || i || hex(zeroblob(300))";
}

void fill(const std::string& path, const std::vector<std::string>& statements) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  OtherConnection database(path);
  for (const std::string& statement : statements)
    database.run(statement);
}

class Copy {
 public:
  explicit Copy(const std::string& path) {
    for (const char* suffix : {"", "-wal", "-journal"}) {
      if (std::filesystem::exists(path + suffix)) {
        std::filesystem::copy_file(path + suffix, folder_ / ("copy" + std::string(suffix)));
      }
    }
  }
  std::string path() const { return folder_ / "copy"; }

 private:
  TemporaryFolder folder_;
};

}  // namespace

OtherConnection::OtherConnection(const std::string& path) {
  EXPECT_EQ(sqlite3_open(path.c_str(), &database_), SQLITE_OK) << path;
}

OtherConnection::~OtherConnection() {
  sqlite3_close(database_);
}

void OtherConnection::run(const std::string& sql) {
  EXPECT_EQ(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database_) << "\n"
      << sql;
}

std::string OtherConnection::value(const std::string& sql) {
  std::string text;
  const auto take = [](void* into, int, char** values, char**) {
    *static_cast<std::string*>(into) = values[0] != nullptr ? values[0] : "";
    return 0;
  };
  EXPECT_EQ(sqlite3_exec(database_, sql.c_str(), take, &text, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database_);
  return text;
}

void makeHistory(const std::string& path, int rows) {
  const std::string all = rowsOf(rows);
  fill(
      path,
      {"CREATE TABLE meta(key LONGVARCHAR NOT NULL UNIQUE PRIMARY KEY, value LONGVARCHAR)",
       "CREATE TABLE urls(id INTEGER PRIMARY KEY AUTOINCREMENT, url LONGVARCHAR, title LONGVARCHAR,"
       " visit_count INTEGER DEFAULT 0 NOT NULL, typed_count INTEGER DEFAULT 0 NOT NULL,"
       " last_visit_time INTEGER NOT NULL, hidden INTEGER DEFAULT 0 NOT NULL)",
       "CREATE INDEX urls_url_index ON urls (url)",
       "CREATE TABLE visits(id INTEGER PRIMARY KEY AUTOINCREMENT, url INTEGER NOT NULL,"
       " visit_time INTEGER NOT NULL)",
       "CREATE TABLE keyword_search_terms (keyword_id INTEGER NOT NULL, url_id INTEGER NOT NULL,"
       " term LONGVARCHAR NOT NULL, normalized_term LONGVARCHAR NOT NULL)",
       "CREATE TABLE downloads (id INTEGER PRIMARY KEY, guid VARCHAR NOT NULL,"
       " target_path LONGVARCHAR NOT NULL)",
       "CREATE TABLE downloads_url_chains (id INTEGER NOT NULL, chain_index INTEGER NOT NULL,"
       " url LONGVARCHAR NOT NULL, PRIMARY KEY (id, chain_index))",
       "BEGIN", "INSERT INTO meta VALUES('version', '70')",
       all + "INSERT INTO urls(url, title, last_visit_time) SELECT " + secretText() +
           ",'t',i FROM n",
       all + "INSERT INTO visits(url, visit_time) SELECT i, i FROM n",
       all + "INSERT INTO keyword_search_terms SELECT 2, i, 'term', 'term' FROM n",
       all + "INSERT INTO downloads SELECT i, 'g', '/download/' || i FROM n",
       all + "INSERT INTO downloads_url_chains SELECT i, 0, 'u' FROM n", "COMMIT"});
}

void makeCookies(const std::string& path, int rows) {
  fill(path, {"CREATE TABLE cookies(creation_utc INTEGER NOT NULL, host_key TEXT NOT NULL,"
              " name TEXT NOT NULL, value TEXT NOT NULL, encrypted_value BLOB NOT NULL)",
              "CREATE UNIQUE INDEX cookies_unique_index ON cookies(host_key, name)",
              rowsOf(rows) + "INSERT INTO cookies SELECT i, 'h' || i, 'n', " + secretText() +
                  ", x'00' FROM n"});
}

void makeLogins(const std::string& path, int rows) {
  fill(
      path,
      {"CREATE TABLE logins (origin_url VARCHAR NOT NULL, username_value VARCHAR,"
       " password_value BLOB, signon_realm VARCHAR NOT NULL, id INTEGER PRIMARY KEY AUTOINCREMENT)",
       "CREATE TABLE password_notes (id INTEGER PRIMARY KEY AUTOINCREMENT, parent_id INTEGER NOT"
       " NULL REFERENCES logins ON DELETE CASCADE, value BLOB)",
       rowsOf(rows) + "INSERT INTO logins SELECT " + secretText() +
           ", 'anna', x'00', 'r', i FROM n"});
}

void makePlaces(const std::string& path, int rows) {
  const std::string all = rowsOf(rows);
  fill(path,
       {"PRAGMA journal_mode = WAL",
        "CREATE TABLE moz_places (id INTEGER PRIMARY KEY, url LONGVARCHAR, guid TEXT)",
        "CREATE TABLE moz_bookmarks (id INTEGER PRIMARY KEY, fk INTEGER, title LONGVARCHAR)",
        "CREATE TABLE moz_historyvisits (id INTEGER PRIMARY KEY, from_visit INTEGER, place_id "
        "INTEGER,"
        " visit_date INTEGER, visit_type INTEGER, session INTEGER)",
        "CREATE TABLE moz_annos (id INTEGER PRIMARY KEY, place_id INTEGER NOT NULL,"
        " anno_attribute_id INTEGER, content LONGVARCHAR)",
        "CREATE TABLE moz_keywords (id INTEGER PRIMARY KEY AUTOINCREMENT, keyword TEXT UNIQUE,"
        " place_id INTEGER, post_data TEXT)",
        "INSERT INTO moz_bookmarks VALUES(1, 1, 'kept')",
        all + "INSERT INTO moz_historyvisits SELECT i, 0, i, i, 1, 0 FROM n",
        all + "INSERT INTO moz_annos SELECT i, i, 1, " + secretText() + " FROM n",
        all + "INSERT INTO moz_keywords SELECT i, 'k' || i, i, 'p' || i FROM n"});
}

void makeSafariHistory(const std::string& path, int rows) {
  const std::string all = rowsOf(rows);
  fill(path, {"CREATE TABLE history_items (id INTEGER PRIMARY KEY AUTOINCREMENT, url TEXT)",
              "CREATE TABLE history_visits (id INTEGER PRIMARY KEY AUTOINCREMENT,"
              " history_item INTEGER NOT NULL, visit_time REAL NOT NULL)",
              all + "INSERT INTO history_items SELECT i, " + secretText() + " FROM n",
              all + "INSERT INTO history_visits SELECT i, i, i FROM n"});
}

std::string integrityOf(const std::string& path) {
  const Copy copy(path);
  return OtherConnection(copy.path()).value("PRAGMA integrity_check");
}

int rowsIn(const std::string& path, const std::string& table) {
  const Copy copy(path);
  return std::stoi(OtherConnection(copy.path()).value("SELECT count(*) FROM " + table));
}

}  // namespace brisko::test
