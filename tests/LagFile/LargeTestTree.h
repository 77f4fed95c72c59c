#pragma once

#include "Controller.h"
#include "Dispatch.h"
#include "TemporaryFolder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace brisko::test {

/// A folder to scan, and a controller that scans it.
class LargeTestTree : public testing::Test {
 protected:
  LargeTestTree() { Dispatch::attachMainThread(); }
  ~LargeTestTree() override {
    controller.stopScan();
    Dispatch::waitForBackground();
    Dispatch::runPending();
  }

  void scan() {
    hasScanned = true;
    controller.eumeAllRootFileNodeWithRootArr(folder.path());
    Dispatch::runUntil([&] { return !controller.isScanning(); }, std::chrono::milliseconds(2));
  }
  void remove() {
    Dispatch::runUntil([&] { return !controller.isRemoving(); }, std::chrono::milliseconds(2));
  }
  FileNode* node(const std::string& path) {
    FileNode* at = controller.root();
    for (std::size_t begin = 0; at != nullptr && begin <= path.size();) {
      const std::size_t end = std::min(path.find('/', begin), path.size());
      FileNode* next = nullptr;
      for (FileNode* child : at->children())
        if (child->_name() == path.substr(begin, end - begin)) next = child;
      at = next;
      begin = end + 1;
    }
    EXPECT_NE(at, nullptr) << path;
    return at;
  }
  static std::vector<std::string> names(const std::vector<FileNode*>& list) {
    std::vector<std::string> names;
    for (const FileNode* each : list)
      names.emplace_back(each->_name());
    return names;
  }

  static inline bool hasScanned = false;

  TestHost host;
  TemporaryFolder folder;
  Controller controller;
};

}  // namespace brisko::test
