#include "CommUti.h"
#include "Host.h"

namespace brisko {
namespace {

using Domain = HostFolders::Domain;

const HostFolders& folders() {
  return *Host::current().folders;
}

}  // namespace

std::vector<std::string> CommUti::applicationPaths() {
  return {folders().applications(Domain::user), folders().applications(Domain::local),
          folders().applications(Domain::network), folders().developerApplications()};
}

std::vector<std::string> CommUti::widgetPaths() {
  return {folders().library(Domain::user) + "/Widgets",
          folders().library(Domain::local) + "/Widgets"};
}

std::vector<std::string> CommUti::preferencePanePaths() {
  return {folders().preferencePanes(Domain::user), folders().preferencePanes(Domain::local)};
}

std::vector<std::string> CommUti::pluginPaths() {
  constexpr const char* kBelowLibrary[] = {"Address Book Plug-Ins",
                                           "Contextual Menu Items",
                                           "Dictionaries",
                                           "iTunes",
                                           "Spotlight",
                                           "Screen Savers",
                                           "QuickLook",
                                           "QuickTime",
                                           "Internet Plug-Ins",
                                           "Safari"};
  std::vector<std::string> paths;
  for (const Domain domain : {Domain::user, Domain::local}) {
    for (const char* name : kBelowLibrary) {
      paths.push_back(folders().library(domain) + "/" + name);
    }
  }
  paths.push_back(folders().inputMethods(Domain::user));
  paths.push_back(folders().inputMethods(Domain::local));
  return paths;
}

}  // namespace brisko
