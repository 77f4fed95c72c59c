#pragma once

#include "Dispatch.h"
#include "FakeWorkspace.h"
#include "FastCleanScanFile.h"
#include "TestHost.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brisko::test {

/// A host below `root` whose session the test writes down.
class JunkTestHost : public TestHost {
 public:
  explicit JunkTestHost(const std::string& root) : TestHost(root) {
    auto made = std::make_unique<FakeWorkspace>();
    workspace_ = made.get();
    host().workspace = std::move(made);
  }
  ~JunkTestHost() {
    Dispatch::waitForBackground();
    Dispatch::runPending();
  }

  FakeWorkspace& workspace() { return *workspace_; }

 private:
  FakeWorkspace* workspace_ = nullptr;
};

/// A whole scan on the calling thread. The reports are delivered.
struct Scan {
  explicit Scan(const std::function<void(FastCleanScanFile&, int)>& onReport = {}) {
    scanner.setProgressSEL([this, onReport](int category) {
      reports.push_back(category);
      if (onReport) onReport(scanner, category);
    });
    nodes = scanner.getAllList();
    scanner.beginScan();
    Dispatch::runPending();
  }

  std::vector<std::string> titles(int category) const {
    std::vector<std::string> all;
    for (const auto& entry : nodes[static_cast<std::size_t>(category)]->detailChildren) {
      all.push_back(entry->title);
    }
    return all;
  }

  FastCleanScanFile scanner;
  FastCleanScanFile::Nodes nodes;
  std::vector<int> reports;
};

}  // namespace brisko::test
