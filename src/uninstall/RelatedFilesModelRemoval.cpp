// The removal: from the ticked entries to the end message.

#include "CommUti.h"
#include "Dispatch.h"
#include "HostApplications.h"
#include "InstalledApplications.h"
#include "RelatedFilesModel.h"

#include <fmt/format.h>

#include <utility>

namespace brisko {
namespace {

constexpr int kFirstProgress = 10;
constexpr int kWhole = 100;

}  // namespace

/// Carries what the worker says over to the main thread, for as long as the model lives.
class RelatedFilesModel::Bridge : public AsMDeleteExecutor::Delegate,
                                  public std::enable_shared_from_this<Bridge> {
 public:
  explicit Bridge(RelatedFilesModel* model) : model_(model) {}
  void letGo() { model_ = nullptr; }

  void deleteRelatedFile(const AppItem& item, const RemovalReport& report) override {
    hop([item, report](RelatedFilesModel& model) { model.deleteRelatedFile(item, report); });
  }
  void deleteRelatedFileFail(const AppItem& item, const RemovalReport& report) override {
    hop([item, report](RelatedFilesModel& model) { model.deleteRelatedFileFail(item, report); });
  }
  void packageProgressed(const AppItem& item, double part) override {
    hop([item, part](RelatedFilesModel& model) { model.packageProgressed(item, part); });
  }
  void deleteEnded() override {
    hop([](RelatedFilesModel& model) { model.deleteEnded(); });
  }

 private:
  template <typename Act>
  void hop(Act act) {
    Dispatch::mainAsync([self = shared_from_this(), act = std::move(act)] {
      if (self->model_ != nullptr) act(*self->model_);
    });
  }

  RelatedFilesModel* model_;  // the main thread's
};

RelatedFilesModel::~RelatedFilesModel() {
  show({});
  stop();
  if (bridge_) bridge_->letGo();
}

void RelatedFilesModel::doRemove() {
  if (isRemoving_) return;
  isFail_ = false;
  if (selectDeletePath_.empty()) return;
  if (!deleteExecutor_) {
    bridge_ = std::make_shared<Bridge>(this);
    deleteExecutor_ = AsMDeleteExecutor::make(bridge_);
  }
  // As the review has them, not as they were ticked: what belongs to a package waits for its end.
  selectedRelatedFiles_.clear();
  for (const ReviewGroup& group : groups_) {
    for (const AppItem& entry : group.entries)
      if (ticked_.contains(entry.get())) selectedRelatedFiles_.push_back(entry);
  }
  isRemoving_ = true;
  isEnded_ = false;
  wasStopped_ = false;
  deleteCount_ = 0;
  totalSize_ = 0;
  freedBytes_ = 0;
  allSelectCount_ = static_cast<std::int32_t>(selectedRelatedFiles_.size());
  progress_ = kFirstProgress;
  pathLabel_.clear();
  failures_.clear();
  gonePackages_.clear();
  // What is freed is told by the sizes as shown, so they have to be there first.
  isWaitingForSizes_ = !isMeasured();
  if (!isWaitingForSizes_) startExecutor();
}

void RelatedFilesModel::startExecutor() {
  isWaitingForSizes_ = false;
  deleteExecutor_->executeDelete(selectedRelatedFiles_);
}

void RelatedFilesModel::stop() {
  if (!isRemoving_) return;
  wasStopped_ = true;
  deleteExecutor_->stop();
  if (std::exchange(isWaitingForSizes_, false)) deleteEnded();
}

void RelatedFilesModel::deleteRelatedFile(const AppItem& item, const RemovalReport& report) {
  totalSize_ += CommUti::volSpaceFromString(item->size);
  if (item->role == AMAppItem::Role::package) {
    gonePackages_.insert(packageKey(*item->host));
    for (const std::string& name : item->plan->alsoRemoves)
      gonePackages_.insert(packageKey(*item->host, name));
  }
  advance(item, report);
}

void RelatedFilesModel::deleteRelatedFileFail(const AppItem& item, const RemovalReport& report) {
  isFail_ = true;
  failures_.push_back({item->path, report.reason});
  advance(item, report);
}

void RelatedFilesModel::packageProgressed(const AppItem& item, double part) {
  pathLabel_ = fmt::format("{}: {} %", item->path, static_cast<int>(part * kWhole));
  tell(&RelatedFilesModelListener::progressChanged);
}

void RelatedFilesModel::advance(const AppItem& item, const RemovalReport& report) {
  ++deleteCount_;
  freedBytes_ += report.freedBytes;
  // Whole numbers, divided first: the bar stands at 0 until the last entry.
  progress_ = deleteCount_ / allSelectCount_ * kWhole;
  pathLabel_ = item->path;
  tell(&RelatedFilesModelListener::progressChanged);
}

void RelatedFilesModel::deleteEnded() {
  isRemoving_ = false;
  isEnded_ = true;
  if (deleteCount_ == allSelectCount_) wasStopped_ = false;
  tell(&RelatedFilesModelListener::removalEnded);
}

std::string RelatedFilesModel::freedText() const {
  return CommUti::convertVolSpace(totalSize_);
}

// The size carries its unit already; the sentence is kept as it is known.
std::string RelatedFilesModel::messageLabel() const {
  return fmt::format(
      "Brisko has successfully removed the selected application(s) and all associated files. Free "
      "up {} MB disk space.",
      freedText());
}

bool RelatedFilesModel::hasRemovedPackage(const AMAppItem& listed) const {
  return isOfPackage(listed) && gonePackages_.contains(packageKey(*listed.host));
}

void RelatedFilesModel::uninstallEnd() {
  if (isRemoving_) return;
  show({});
  selectedRelatedFiles_.clear();
  isEnded_ = false;
}

}  // namespace brisko
