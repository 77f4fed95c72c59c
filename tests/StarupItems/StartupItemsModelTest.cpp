#include "Dispatch.h"
#include "FakeLoginItems.h"
#include "StartupItemsModel.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace brisko::test {
namespace {

struct Heard : StartupItemsListener {
  void itemsChanged() override { ++changes; }
  void changeFailed(const std::string& text) override { failure = text; }
  int changes = 0;
  std::string failure;
};

class StartupItems : public testing::Test {
 protected:
  StartupItems() {
    Dispatch::attachMainThread();
    auto made = std::make_unique<FakeLoginItems>();
    store_ = made.get();
    Host::current().loginItems = std::move(made);
    model_ = std::make_unique<StartupItemsModel>();
    model_->setListener(&heard_);
  }
  ~StartupItems() override {
    model_.reset();
    Dispatch::waitForBackground();
    Dispatch::runPending();
  }

  void settle() {
    Dispatch::runUntil([&] { return !model_->isScan(); });
  }
  std::vector<std::string> rows() {
    std::vector<std::string> paths;
    for (const ASLoginStartItem& item : model_->allItems())
      paths.push_back(item.path);
    return paths;
  }

  TestHost host_;
  FakeLoginItems* store_ = nullptr;
  Heard heard_;
  std::unique_ptr<StartupItemsModel> model_;
};

using Strings = std::vector<std::string>;

TEST_F(StartupItems, ListsEachPathOnceInOrderWithoutTheOnesThatAreGone) {
  store_->add("a", "/Applications/Mail.app/", true);
  store_->add("b", "");
  store_->add("c", "/home/x/notes.tar.gz");
  store_->add("d", "/Applications/Mail.app/");
  model_->getAllItmes();
  EXPECT_TRUE(rows().empty());
  settle();
  EXPECT_EQ(rows(), (Strings{"/Applications/Mail.app/", "/home/x/notes.tar.gz"}));
  const ASLoginStartItem& first = model_->allItems()[0];
  EXPECT_EQ(first.name, "Mail.app");
  EXPECT_EQ(first.subName, "app");
  EXPECT_STREQ(StartupItemsModel::hideImage(first), "sel");
  EXPECT_EQ(model_->allItems()[1].subName, "gz");
  EXPECT_TRUE(host_.logged("----------------1"));
  EXPECT_TRUE(host_.logged("----------------0"));
}

TEST_F(StartupItems, ARowsIndexIsUsedAsItStands) {
  store_->add("gone", "");
  store_->add("a", "/a");
  store_->add("b", "/b");
  model_->getAllItmes();
  settle();
  ASSERT_EQ(rows(), (Strings{"/a", "/b"}));
  EXPECT_EQ(model_->entryFor(0), "gone");
  EXPECT_EQ(model_->entryFor(1), "/a");
  model_->setHideStar(1);
  settle();
  EXPECT_TRUE(store_->entries[1].isHidden) << "the entry before the shown one";
  EXPECT_TRUE(host_.logged("----------------select"));
  model_->removeButtonActoion(1);
  model_->removeButtonActoion(1);  // the rows are being read: it is nobody's
  settle();
  EXPECT_EQ(store_->identifiers(), (Strings{"gone", "b"}));
  model_->removeButtonActoion(7);
  EXPECT_EQ(store_->entries.size(), 2U);
}

TEST_F(StartupItems, FollowsTheStoreAndReadsAgainWhatChangedMeanwhile) {
  model_->getAllItmes();
  store_->add("a", "/a");
  store_->observer();  // while the first reading is under way
  settle();
  Dispatch::runUntil([&] { return !model_->isScan(); });
  EXPECT_EQ(rows(), Strings{"/a"});
  model_->addButtonAction("/b");
  settle();
  EXPECT_EQ(rows(), (Strings{"/a", "/b"}));
  store_->status = LoginItems::permErr;
  model_->removeButtonActoion(0);
  EXPECT_EQ(heard_.failure, "The login item was not removed: permission is missing.");
  model_->addButtonAction("/c");
  EXPECT_EQ(heard_.failure, "The login item was not added: permission is missing.");
}

}  // namespace
}  // namespace brisko::test
