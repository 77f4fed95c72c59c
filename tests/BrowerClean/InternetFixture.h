#pragma once

#include "BrowserProfiles.h"
#include "Dispatch.h"
#include "FakeInstalledApplications.h"
#include "FakeWorkspace.h"
#include "InternetModel.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <string>

namespace brisko::test {

/// The model over a made home of "anna"; the test writes down what is installed and what runs.
class InternetFixture : public testing::Test {
 protected:
  using Page = InternetModel::Page;

  InternetFixture() : host_(folder_.path()) {
    Dispatch::attachMainThread();
    auto workspace = std::make_unique<FakeWorkspace>();
    workspace_ = workspace.get();
    Host::current().workspace = std::move(workspace);
    auto installed = std::make_unique<FakeInstalledApplications>();
    installed_ = installed.get();
    Host::current().installedApplications = std::move(installed);
    model_ = std::make_unique<InternetModel>();
  }
  ~InternetFixture() override {
    model_.reset();
    Dispatch::waitForBackground();
    Dispatch::runPending();
  }

  void install(const std::string& id, const std::string& name,
               InstalledApplication::Kind kind = InstalledApplication::Kind::package) {
    InstalledApplication application;
    application.desktopID = id;
    application.name = name;
    application.kind = kind;
    installed_->applications.push_back(application);
  }
  static std::string home(const std::string& path) { return "Users/anna/" + path; }
  std::string path(const std::string& inHome) const { return folder_ / home(inHome); }

  void scan() {
    model_->checkOpenBrower();
    Dispatch::runUntil([&] { return model_->indePage() == Page::scanned; });
  }
  void clean() {
    model_->cleanButtonAction();
    Dispatch::runUntil([&] { return model_->isCanClick(); });
  }
  void cleanOnly(std::initializer_list<const char*> kinds) {
    model_->select([&](const BrowerObj&, const BrowerObj& kind) {
      return std::find(kinds.begin(), kinds.end(), kind.name) != kinds.end();
    });
    clean();
  }

  std::shared_ptr<BrowerObj> browser(const std::string& name) {
    for (const auto& each : model_->browserArr()) {
      if (each->name == name) return each;
    }
    ADD_FAILURE() << "no browser " << name;
    return std::make_shared<BrowerObj>();
  }
  std::shared_ptr<BrowerObj> kind(const std::string& browserName, const std::string& name) {
    for (const auto& each : browser(browserName)->chrArr) {
      if (each->name == name) return each;
    }
    ADD_FAILURE() << browserName << " has no " << name;
    return std::make_shared<BrowerObj>();
  }
  std::string sizeOf(const std::string& browserName, const std::string& name) {
    return kind(browserName, name)->size;
  }

  TemporaryFolder folder_;
  TestHost host_;
  FakeWorkspace* workspace_ = nullptr;
  FakeInstalledApplications* installed_ = nullptr;
  std::unique_ptr<InternetModel> model_;
};

}  // namespace brisko::test
