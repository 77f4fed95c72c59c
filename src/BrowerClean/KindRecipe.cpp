#include "KindRecipe.h"

namespace brisko {
namespace {

using Pick = KindRecipe::Pick;
using Shows = KindRecipe::Shows;
using After = KindRecipe::After;

KindRecipe rows(ToGetDB::Counter count, ToGetDB::Runner remove) {
  return {Pick::path, Shows::rows, After::items, {}, count, remove};
}

KindRecipe tree() {
  return {Pick::path, Shows::bytes, After::bytes, {}, nullptr, nullptr};
}

KindRecipe sessions() {
  return {Pick::sessionEntries, Shows::bytes, After::bytes, {}, nullptr, nullptr};
}

KindRecipe ofChrome(const std::string& kind) {
  if (kind == "Session") return sessions();
  if (kind == "Save Password") {
    return rows(&ToGetDB::getGooglePasswordItems, &ToGetDB::toDeletePasswordWith);
  }
  if (kind == "Download History") {
    return rows(&ToGetDB::getGoogleDownloadItems, &ToGetDB::toDeleteDownloadWith);
  }
  if (kind == "Browsing History") {
    return rows(&ToGetDB::getGoogleHistoryItems, &ToGetDB::toDeleteHistoryWith);
  }
  if (kind == "Cookies") {
    return rows(&ToGetDB::getGoogleCookiesItems, &ToGetDB::toDeleteGoogleCookiesWith);
  }
  return tree();
}

// Rows go, yet the size of the whole file is shown.
KindRecipe places(ToGetDB::Runner remove) {
  return {Pick::profileFiles, Shows::bytes, After::items, {"places.sqlite"}, nullptr, remove};
}

KindRecipe profileFile(const char* name) {
  return {Pick::profileFiles, Shows::bytes, After::bytes, {name}, nullptr, nullptr};
}

KindRecipe ofFirefox(const std::string& kind) {
  if (kind == "Caches") {
    return {Pick::profileCaches, Shows::bytes, After::bytes, {}, nullptr, nullptr};
  }
  if (kind == "Cookies") return profileFile("cookies.sqlite");
  if (kind == "Browsing History") return places(&ToGetDB::firefoxDeleteHistoryWith);
  if (kind == "Download History") return places(&ToGetDB::firefoxDeleteDownloadWith);
  if (kind == "Save Password") return places(&ToGetDB::firefoxDeletePasswordWith);
  if (kind == "Session") return profileFile("sessionstore.js");
  return {};
}

KindRecipe ofOpera(const std::string& kind) {
  if (kind == "Session") return sessions();
  if (kind == "Browsing History") {
    return rows(&ToGetDB::getOperaHistoryItems, &ToGetDB::operaDeleteHistoryWith);
  }
  if (kind == "Download History") {
    return rows(&ToGetDB::getOperaDownloadItems, &ToGetDB::operaDeleteDownloadWith);
  }
  if (kind == "Save Password") {
    return rows(&ToGetDB::getOperaPasswordItems, &ToGetDB::operaDeletePasswordWith);
  }
  KindRecipe recipe = tree();
  if (kind != "Cookies" && kind != "Caches") recipe.shows = Shows::nothing;
  return recipe;
}

KindRecipe ofSafari(const std::string& kind) {
  if (kind == "Caches") {
    return {Pick::safariCaches, Shows::bytes, After::bytes, {}, nullptr, nullptr};
  }
  if (kind == "Browsing History") {
    return {Pick::safariHistory,
            Shows::rows,
            After::items,
            {},
            &ToGetDB::getSafariBrowsingHistoryItems,
            &ToGetDB::safariDeleteHistoryWith};
  }
  if (kind == "Downloads History") {
    return {Pick::safariDownloads, Shows::downloads, After::items, {}, nullptr, nullptr};
  }
  if (kind == "Cookies") {
    return {Pick::safariStorage, Shows::entries, After::unchanged, {}, nullptr, nullptr};
  }
  return tree();
}

}  // namespace

KindRecipe KindRecipe::of(BrowserFamily family, const std::string& kind) {
  switch (family) {
    case BrowserFamily::chrome:
      return ofChrome(kind);
    case BrowserFamily::firefox:
      return ofFirefox(kind);
    case BrowserFamily::opera:
      return ofOpera(kind);
    case BrowserFamily::safari:
      return ofSafari(kind);
  }
  return {};
}

}  // namespace brisko
