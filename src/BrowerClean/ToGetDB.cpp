#include "ToGetDB.h"

namespace brisko {

const ToGetDB& ToGetDB::returnToGetDB() {
  static const ToGetDB shared;
  return shared;
}

RowCount ToGetDB::getGoogleHistoryItems(const std::string& path) const {
  return countRows(path, "select count(*) from urls");
}

RowCount ToGetDB::getGoogleDownloadItems(const std::string& path) const {
  return countRows(path, "select count(*) from downloads");
}

RowCount ToGetDB::getGooglePasswordItems(const std::string& path) const {
  return countRows(path, "select count(*) from logins");
}

RowCount ToGetDB::getGoogleCookiesItems(const std::string& path) const {
  return countRows(path, "select count(*) from cookies");
}

RowCount ToGetDB::getOperaHistoryItems(const std::string& path) const {
  return countRows(path, "select count(*) from urls");
}

RowCount ToGetDB::getOperaDownloadItems(const std::string& path) const {
  return countRows(path, "select count(*) from downloads");
}

RowCount ToGetDB::getOperaPasswordItems(const std::string& path) const {
  return countRows(path, "select count(*) from keyword_search_terms");
}

RowCount ToGetDB::getFirefoxHistoryItems(const std::string& path) const {
  return countRows(path, "select  count(*) from moz_historyvisits");
}

RowCount ToGetDB::getFirefoxDownloadItmes(const std::string& path) const {
  return countRows(path, "select count(*) from moz_annos");
}

RowCount ToGetDB::getFirefoxPasswordItems(const std::string& path) const {
  return countRows(path, "select count(*) from moz_keywords");
}

RowCount ToGetDB::getSafariBrowsingHistoryItems(const std::string& path) const {
  return countRows(path, "select count(*) from history_visits");
}

std::string ToGetDB::toDeleteHistoryWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM urls"});
}

std::string ToGetDB::toDeleteDownloadWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM downloads", "DELETE  FROM downloads_url_chains"});
}

std::string ToGetDB::toDeletePasswordWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM logins"});
}

std::string ToGetDB::toDeleteGoogleCookiesWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM cookies"});
}

std::string ToGetDB::operaDeleteHistoryWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM urls", "DELETE  FROM visits"});
}

std::string ToGetDB::operaDeleteDownloadWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM downloads", "DELETE  FROM downloads_url_chains"});
}

std::string ToGetDB::operaDeletePasswordWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM keyword_search_terms"});
}

std::string ToGetDB::firefoxDeleteHistoryWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM moz_historyvisits"});
}

std::string ToGetDB::firefoxDeleteDownloadWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM moz_annos"});
}

std::string ToGetDB::firefoxDeletePasswordWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM moz_keywords"});
}

std::string ToGetDB::safariDeleteHistoryWith(const std::string& path) const {
  return deleteRows(path, {"DELETE  FROM history_items", "DELETE  FROM history_visits"});
}

}  // namespace brisko
