#include "BrowserSearch.h"

#include "BrowserKinds.h"
#include "CommUti.h"
#include "Host.h"

#include <algorithm>

namespace brisko {
namespace {

constexpr std::string_view kBundleSuffix = ".app";

// The file manager hides an application's extension.
std::string displayName(const std::string& path) {
  std::string name = Host::current().workspace->displayName(path);
  if (!name.empty()) return name;
  name = path.substr(path.rfind('/') + 1);
  if (name.ends_with(kBundleSuffix)) name.resize(name.size() - kBundleSuffix.size());
  return name;
}

bool contains(const std::string& text, std::string_view word) {
  return text.find(word) != std::string::npos;
}

BrowserFamily familyOf(const std::string& name) {
  if (contains(name, "Google Chrome")) return BrowserFamily::chrome;
  if (contains(name, "Firefox")) return BrowserFamily::firefox;
  if (contains(name, "Opera")) return BrowserFamily::opera;
  return BrowserFamily::safari;
}

bool isOfInstallation(const InstalledApplication& application, const BrowserRule& rule) {
  using Kind = InstalledApplication::Kind;
  const Kind kind = application.kind == Kind::files ? Kind::package : application.kind;
  return kind == rule.installation;
}

}  // namespace

BrowserSearch::BrowserSearch(const std::atomic<bool>& stop)
    : stop_(stop), bundleRules_(bundleBrowserRules()), desktopRules_(desktopBrowserRules()) {}

Browsers BrowserSearch::run() {
  for (const std::string& path : CommUti::applicationPaths())
    applicationsInPath(path);
  addDesktopBrowsers();
  return browsers_;
}

void BrowserSearch::applicationsInPath(const std::string& path) {
  // A stack of its own: folders can be nested deeper than calls.
  std::vector<std::string> folders = {path};
  while (!folders.empty() && !stop_) {
    const std::string folder = std::move(folders.back());
    folders.pop_back();
    std::vector<std::string> below;
    int error = 0;
    const auto open = Host::current().catalog->open(folder, error);
    CatalogBatch batch;
    while (open && open->read(batch, 0)) {
      open->information(batch.items);
      for (const CatalogItem& item : batch.items) {
        if (item.kind == FileKind::directory)
          below.push_back(folder + "/" + std::string(item.name));
      }
    }
    std::sort(below.begin(), below.end());
    for (const std::string& each : below) {
      if (each.ends_with(kBundleSuffix)) addBundle(each);
    }
    std::erase_if(below, [](const std::string& each) { return each.ends_with(kBundleSuffix); });
    folders.insert(folders.end(), below.rbegin(), below.rend());
  }
}

void BrowserSearch::addBundle(const std::string& path) {
  const std::string name = displayName(path);
  for (const BrowserRule& rule : bundleRules_) {
    if (!contains(name, rule.key)) continue;
    auto browser = std::make_shared<BrowerObj>();
    browser->iconImage = Host::current().workspace->iconName(path);
    browser->name = name;
    browser->isSelect = rule.key == "Safari" || rule.kinds.empty() ? 0 : 1;
    browser->rule = rule;
    browser->isBundle = true;
    browser->family = familyOf(name);
    browsers_.push_back(browser);
    getSubArrWithKey(browser);
  }
}

// Applications that share their data, as two packages of one browser do, are one row: their rows
// would show and erase the same.
void BrowserSearch::addDesktopBrowsers() {
  if (stop_) return;
  const auto applications = Host::current().installedApplications->list();
  for (const BrowserRule& rule : desktopRules_) {
    const auto found =
        std::find_if(applications.begin(), applications.end(), [&](const auto& application) {
          return isOfInstallation(application, rule) && rule.hasDesktopEntry(application.desktopID);
        });
    if (found == applications.end() || stop_) continue;
    auto browser = std::make_shared<BrowerObj>();
    browser->iconImage = found->iconName;
    browser->name = found->name.empty() ? rule.key : found->name;
    browser->desktopID = found->desktopID;
    browser->isSelect = 1;
    browser->rule = rule;
    browser->family = rule.family;
    browsers_.push_back(browser);
    getSubArrWithKey(browser);
  }
}

void BrowserSearch::getSubArrWithKey(const std::shared_ptr<BrowerObj>& browser) {
  for (const KindRule& rule : browser->rule.kinds) {
    if (stop_) return;
    auto kind = std::make_shared<BrowerObj>();
    kind->parObj = browser;
    kind->name = rule.name;
    kind->urlStr = rule.locations.front();
    kind->iconImage = BrowserKinds::getIconWithKey(rule.name);
    kind->isSelect = browser->isSelect;
    kind->family = browser->family;
    kind->isBundle = browser->isBundle;
    kind->kindRule = rule;
    BrowserKinds::readSize(*kind);
    browser->chrArr.push_back(std::move(kind));
  }
}

}  // namespace brisko
