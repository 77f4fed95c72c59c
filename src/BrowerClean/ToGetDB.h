#pragma once

#include "BrowserDatabase.h"

#include <string>

namespace brisko {

/// What is asked of browsers' databases: counts of rows, and the deletion of all rows of a table.
/// One for the process, without state.
///
/// A count is 0 with a reason when the database cannot be read, as `countRows` says; a deletion
/// returns why it was not done, as `deleteRows` says. Both block.
class ToGetDB {
 public:
  using Counter = RowCount (ToGetDB::*)(const std::string& path) const;
  using Runner = std::string (ToGetDB::*)(const std::string& path) const;

  static const ToGetDB& returnToGetDB();

  RowCount getGoogleHistoryItems(const std::string& path) const;
  RowCount getGoogleDownloadItems(const std::string& path) const;
  RowCount getGooglePasswordItems(const std::string& path) const;
  RowCount getGoogleCookiesItems(const std::string& path) const;
  RowCount getOperaHistoryItems(const std::string& path) const;
  RowCount getOperaDownloadItems(const std::string& path) const;
  RowCount getOperaPasswordItems(const std::string& path) const;
  RowCount getFirefoxHistoryItems(const std::string& path) const;
  RowCount getFirefoxDownloadItmes(const std::string& path) const;
  RowCount getFirefoxPasswordItems(const std::string& path) const;
  RowCount getSafariBrowsingHistoryItems(const std::string& path) const;

  std::string toDeleteHistoryWith(const std::string& path) const;
  std::string toDeleteDownloadWith(const std::string& path) const;
  std::string toDeletePasswordWith(const std::string& path) const;
  std::string toDeleteGoogleCookiesWith(const std::string& path) const;
  std::string operaDeleteHistoryWith(const std::string& path) const;
  std::string operaDeleteDownloadWith(const std::string& path) const;
  std::string operaDeletePasswordWith(const std::string& path) const;
  std::string firefoxDeleteHistoryWith(const std::string& path) const;
  std::string firefoxDeleteDownloadWith(const std::string& path) const;
  std::string firefoxDeletePasswordWith(const std::string& path) const;
  std::string safariDeleteHistoryWith(const std::string& path) const;
};

}  // namespace brisko
