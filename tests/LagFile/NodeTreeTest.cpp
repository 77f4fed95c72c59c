#include "DeepFolders.h"
#include "FileDescriptor.h"
#include "LargeTestTree.h"
#include "NodeArena.h"
#include "Progress.h"

#include <deque>
#include <filesystem>
#include <map>
#include <random>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisko::test {
namespace {

namespace fs = std::filesystem;

// The order by the plain procedure: entry by entry in the listing's order, each inserted before the
// first one that is not larger, folders gone into at once and everything above sorted again each
// time one has grown.
struct PlainNode {
  std::string name;
  std::uint64_t size = 0;
  bool isTop = false;
  PlainNode* father = nullptr;
  std::vector<PlainNode*> children;
};

class PlainTree {
 public:
  explicit PlainTree(const FileNode& root) { walk(root, top_); }
  const PlainNode& top() const { return top_; }

 private:
  static void insert(std::vector<PlainNode*>& list, PlainNode* node) {
    auto at = list.begin();
    while (at != list.end() && (*at)->size > node->size)
      ++at;
    list.insert(at, node);
  }
  static void sort(std::vector<PlainNode*>& list) {
    std::stable_sort(list.begin(), list.end(), [](const PlainNode* one, const PlainNode* other) {
      return one->size > other->size;
    });
  }

  // In the order of the listing, which the tree under test numbers its entries by.
  static std::vector<const FileNode*> listing(const FileNode& folder) {
    std::vector<const FileNode*> list(folder.folder->list.begin(), folder.folder->list.end());
    std::sort(list.begin(), list.end(),
              [](const FileNode* one, const FileNode* other) { return one->place < other->place; });
    return list;
  }

  std::uint64_t walk(const FileNode& folder, PlainNode& into) {
    std::uint64_t total = 0;
    for (const FileNode* entry : listing(folder)) {
      PlainNode* made = &nodes_.emplace_back();
      made->name = entry->name;
      made->father = &into;
      if (entry->folder != nullptr) {
        if (&into == &top_) {
          into.children.push_back(made);
        } else {
          insert(into.children, made);
        }
        made->size = walk(*entry, *made);
        sort(into.children);
      } else {
        made->size = entry->size;
        insert(into.children, made);
      }
      total += made->size;
      into.size = total;
      if (into.father != nullptr) sort(into.father->children);
    }
    return total;
  }

  PlainNode top_;
  std::deque<PlainNode> nodes_;
};

void expectSame(FileNode& node, const PlainNode& plain) {
  ASSERT_EQ(node.size, plain.size) << node._path();
  const auto& children = node.children();
  ASSERT_EQ(children.size(), plain.children.size()) << node._path();
  for (std::size_t i = 0; i < children.size(); ++i) {
    ASSERT_EQ(children[i]->_name(), plain.children[i]->name) << node._path() << " at " << i;
    expectSame(*children[i], *plain.children[i]);
  }
}

using NodeTree = LargeTestTree;

// Few different sizes, so that equal ones are frequent; empty folders and files among them.
TEST_F(NodeTree, OrderIsThatOfInsertingOneByOneAndSortingAfterEach) {
  std::mt19937 random(11);
  for (int round = 0; round < 8; ++round) {
    const std::string top = folder.folder("tree");
    std::vector<std::string> folders = {top};
    const int items = round < 7 ? 60 : 1200;
    for (int i = 0; i < items; ++i) {
      const std::string path = folders[random() % folders.size()] + "/" + std::to_string(i);
      if (random() % 4 == 0) {
        fs::create_directory(path);
        folders.push_back(path);
      } else {
        FileDescriptor file(::open(path.c_str(), O_CREAT | O_WRONLY, 0644));
        ASSERT_EQ(::ftruncate(file.get(), static_cast<off_t>(random() % 4) * 1000), 0);
      }
    }
    scan();
    const PlainTree plain(*controller.root());
    for (int shown = 0; shown < 2; ++shown) {
      expectSame(*controller.root(), plain.top());
      if (HasFatalFailure()) return;
      controller.eumeRoot()->nodeTreeOperator().sortAll();
    }
    controller.clear();
    fs::remove_all(top);
  }
}

// At every moment: whatever part of a tree has arrived, it stands as if that were all there is.
TEST_F(NodeTree, OrderHoldsAfterEachBatchWhereverItIsCut) {
  std::mt19937 random(5);
  for (int round = 0; round < 40; ++round) {
    NodeTreeOperator tree(nullptr);
    NodeArena arena;
    const auto nodes = arena.nodes(60);
    nodes[0].folder = arena.folder();
    nodes[0].kind = FileKind::directory;
    std::vector<FileNode*> folders = {&nodes[0]};
    std::map<FileNode*, std::uint32_t> places;
    for (std::size_t at = 1; at < nodes.size();) {
      const std::size_t count = std::min<std::size_t>(1 + random() % 7, nodes.size() - at);
      FileNode* father = folders[random() % folders.size()];
      for (std::size_t i = at; i < at + count; ++i) {
        nodes[i].name = arena.name(std::to_string(i));
        nodes[i].holder = father;
        nodes[i].place = places[father]++;
        if (random() % 3 == 0) {
          nodes[i].folder = arena.folder();
          nodes[i].folder->depth = father->folder->depth + 1;
          folders.push_back(&nodes[i]);
        } else {
          nodes[i].size = random() % 3;
        }
      }
      tree.fileInsertFatherWithRootArr(*father, nodes.subspan(at, count));
      at += count;
      tree.settleSizes();
      expectSame(nodes[0], PlainTree(nodes[0]).top());
      if (HasFatalFailure()) return;
    }
  }
}

TEST_F(NodeTree, LinksAreThemselvesAndHardLinksCountAtEachName) {
  TemporaryFolder elsewhere;
  elsewhere.sizedFile("big", 900'000);
  folder.link("out", elsewhere.path());
  folder.link("loop", ".");
  const std::string one = folder.sizedFile("one", 5000);
  ASSERT_EQ(::link(one.c_str(), (folder / "two").c_str()), 0);
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  folder.file(".hidden/\xff", "123");
  scan();
  EXPECT_EQ(controller.root()->size, 10'000 + elsewhere.path().size() + 1 + 3);
  EXPECT_FALSE(node("out")->_isDirectory());
  EXPECT_EQ(node(".hidden/\xff")->_path(), folder / ".hidden/\xff");
  EXPECT_EQ(node("pipe")->size, 0U);
}

TEST_F(NodeTree, ADeepChainAndAWideFolderAreWalkedWhole) {
  constexpr int kDepth = 2100;
  const DeepFolders deep(folder.folder("deep"), kDepth, [](int descriptor) {
    FileDescriptor file(::openat(descriptor, "f", O_CREAT | O_WRONLY, 0644));
    ASSERT_EQ(::ftruncate(file.get(), 7), 0);
  });
  folder.folder("wide");
  for (int i = 0; i < 1500; ++i) {
    FileDescriptor file(
        ::open((folder / "wide/" + std::to_string(i)).c_str(), O_CREAT | O_WRONLY, 0644));
    ASSERT_EQ(::ftruncate(file.get(), i % 50), 0);
  }
  scan();
  EXPECT_EQ(node("deep")->size, 7U * kDepth);
  FileNode* at = node("deep");
  int depth = 0;
  while (at->folder->folders > 0) {
    const auto& list = at->children();
    at = *std::find_if(list.begin(), list.end(), [](auto* each) { return each->_isDirectory(); });
    ++depth;
  }
  EXPECT_EQ(depth, kDepth);
  EXPECT_EQ(at->_path().size(), folder.path().size() + 5 + 2 * kDepth);
  const auto& wide = node("wide")->children();
  ASSERT_EQ(wide.size(), 1500U);
  EXPECT_TRUE(std::is_sorted(wide.begin(), wide.end(), [](const FileNode* a, const FileNode* b) {
    return standsBefore(*a, *b);
  }));
  const NodeTreeOperator& tree = controller.eumeRoot()->nodeTreeOperator();
  EXPECT_LE(tree.walk()->footprint() / tree.entries(), 200U + 8U);
}

TEST_F(NodeTree, PauseHoldsTheScanAndStopEndsIt) {
  for (int i = 0; i < 300; ++i)
    folder.file("d" + std::to_string(i) + "/f", "x");
  Progress& progress = Progress::shareInit();
  progress.isContinue();
  controller.eumeAllRootFileNodeWithRootArr(folder.path());
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  Dispatch::runPending();
  EXPECT_TRUE(controller.isScanning());
  EXPECT_EQ(controller.eumeRoot()->handled(), 0U);
  EXPECT_EQ(controller.eumeRoot()->getProgress(), 0);
  const auto begin = std::chrono::steady_clock::now();
  controller.stopScan();
  Dispatch::runUntil([&] { return !controller.isScanning(); }, std::chrono::milliseconds(2));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
  EXPECT_FALSE(progress.getProgress());
  EXPECT_TRUE(controller.eumeRoot()->isStopped());
  EXPECT_EQ(controller.root()->reason(), "the scan was stopped before all of it was read");
  scan();
  EXPECT_EQ(controller.root()->reason(), "");
  EXPECT_EQ(controller.eumeRoot()->getProgress(), 100);
  EXPECT_EQ(controller.aRootArr().size(), 300U);
}

TEST_F(NodeTree, EndNoticeComesOnlyWhileTheCountsOfTheRunAgree) {
  struct Ends : ControllerDelegate {
    int notices = 0;
    int overs = 0;
    void endScan() override { ++notices; }
    void scanIsOver() override { ++overs; }
  };
  // The count is that of the run, so only a process that has scanned nothing yet can tell.
  if (hasScanned) GTEST_SKIP() << "another test of this process has scanned already";
  folder.file("a");
  folder.file("b/c");
  Ends ends;
  controller.setDelegate(&ends);
  scan();
  EXPECT_EQ(ends.notices, 1);
  scan();
  EXPECT_EQ(ends.notices, 1);
  for (const char* name : {"c", "d", "e", "f"})
    folder.file(name);
  scan();  // 2 + 2 + 6 handled, 6 entries
  EXPECT_EQ(ends.notices, 1);
  EXPECT_EQ(ends.overs, 3);
  controller.setDelegate(nullptr);
}

TEST_F(NodeTree, AFileMakesAListOfOneAndAMissingPathNone) {
  const std::string file = folder.sizedFile("alone.iso", 4'000'000);
  controller.eumeAllRootFileNodeWithRootArr(file);
  EXPECT_FALSE(controller.isScanning());
  ASSERT_EQ(controller.aRootArr().size(), 1U);
  EXPECT_EQ(controller.aRootArr()[0]->size, 4'000'000U);
  EXPECT_EQ(controller.aRootArr()[0]->_path(), file);
  EXPECT_EQ(controller.aRootArr()[0]->father(), nullptr);
  controller.eumeAllRootFileNodeWithRootArr(folder / "missing");
  EXPECT_TRUE(controller.aRootArr().empty());
  EXPECT_EQ(controller.eumeRoot()->error(), ENOENT);
}

}  // namespace
}  // namespace brisko::test
