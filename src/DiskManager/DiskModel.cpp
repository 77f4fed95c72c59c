#include "DiskModel.h"

#include "CommUti.h"
#include "DiskAndVolumeInfo.h"
#include "Dispatch.h"
#include "Host.h"
#include "VolumeName.h"

#include <utility>

namespace brisko {

DiskModel::DiskModel()
    : lifetime_(std::make_shared<Lifetime>()),
      health_([this] { tell(&DiskModelListener::healthChanged); }) {
  lifetime_->model = this;
}

DiskModel::~DiskModel() {
  lifetime_->model = nullptr;
  listener_ = nullptr;
}

void DiskModel::tell(void (DiskModelListener::*what)()) {
  if (listener_ != nullptr) (listener_->*what)();
}

template <typename Work, typename Then>
void DiskModel::inBackground(Work work, Then then) {
  Dispatch::global([lifetime = std::weak_ptr(lifetime_), work = std::move(work),
                    then = std::move(then)]() mutable {
    auto result = work();
    Dispatch::mainAsync([lifetime, then = std::move(then), result = std::move(result)]() mutable {
      const auto living = lifetime.lock();
      if (living && living->model != nullptr) then(*living->model, std::move(result));
    });
  });
}

void DiskModel::fail(const std::string& what, const DiskCommandEnd& end) {
  if (listener_ != nullptr) listener_->operationFailed(what, end.errors);
}

void DiskModel::setBusy(bool isBusy) {
  isCanClick_ = !isBusy;
  tell(&DiskModelListener::busyChanged);
}

int DiskModel::OSVersion() {
  return CommUti::getMinorVersion();
}

// The tree.

void DiskModel::getDiskInfo() {
  if (isScan_) return;
  isScan_ = true;
  if (!allDiskArr_.empty()) {
    allDiskArr_.clear();
    tell(&DiskModelListener::treeChanged);
  }
  tell(&DiskModelListener::busyChanged);
  using Found = std::pair<DiskTree, std::vector<MountedVolume>>;
  const auto stop = std::weak_ptr(lifetime_);
  inBackground(
      [stop] {
        DiskTree tree =
            buildDiskTree(DiskTreeRules::forDiskManager(), [&stop] { return stop.expired(); });
        return Found{std::move(tree), Host::current().workspace->mountedVolumes()};
      },
      [](DiskModel& model, Found found) {
        model.takeTree(std::move(found.first), std::move(found.second));
      });
}

void DiskModel::lookAgain() {
  isOld_ = isScan_;
  getDiskInfo();
}

void DiskModel::takeTree(DiskTree tree, std::vector<MountedVolume> mounted) {
  allDiskArr_ = std::move(tree.disks);
  mounted_ = std::move(mounted);
  complaints_ = std::move(tree.complaints);
  isScan_ = false;
  wasScanned_ = true;
  tell(&DiskModelListener::treeChanged);
  DiskNode chosen =
      chosenIsDisk_ ? diskWithId(allDiskArr_, chosenId_) : volumeWithId(allDiskArr_, chosenId_);
  select(chosen ? std::move(chosen) : std::move(tree.first));
  tell(&DiskModelListener::busyChanged);
  if (std::exchange(isOld_, false)) getDiskInfo();
}

// The selection.

bool DiskModel::shouldSelectItem(const DiskNode& node) {
  if (!isCanClick_) return false;
  chosenId_ = node ? node->diskId : "";
  chosenIsDisk_ = node && node->isDisk;
  select(node);
  return true;
}

void DiskModel::select(DiskNode node) {
  selectVolumes_ = std::move(node);
  offers_ = selectVolumes_ ? checkNTFS(*selectVolumes_, isSystemVolume(*selectVolumes_), mounted_)
                           : DiskOffers{};
  health_.show(selectVolumes_);
  tell(&DiskModelListener::selectionChanged);
}

std::optional<DiskDetail> DiskModel::detail() const {
  if (!selectVolumes_) return std::nullopt;
  return diskDetail(*selectVolumes_, isSystemVolume(*selectVolumes_));
}

// Rename.

std::string DiskModel::renameRefusal(const std::string& name) const {
  return selectVolumes_ ? brisko::renameRefusal(*selectVolumes_, name) : "";
}

bool DiskModel::rename(const std::string& name) {
  const bool isOffered = offers_.rename && detail() && detail()->renameAllowed;
  if (isFormat_ || !isCanClick_ || !isOffered || !VolumeName::isGiven(name)) return false;
  if (!renameRefusal(name).empty()) return false;
  setBusy(true);
  struct Renamed {
    bool done;
    DiskCommandEnd end;
  };
  const std::string given = VolumeName::forType(name, selectVolumes_->diskType);
  inBackground(
      [uuid = selectVolumes_->diskUUID, given] {
        DiskCommandEnd end;
        const bool done = DiskAndVolumeInfo::renameDiskWithGuid(uuid, given, &end);
        return Renamed{done, std::move(end)};
      },
      [node = selectVolumes_, given](DiskModel& model, const Renamed& renamed) {
        model.renamed(node, given, renamed.done, renamed.end);
      });
  return true;
}

void DiskModel::renamed(const DiskNode& node, const std::string& name, bool done,
                        const DiskCommandEnd& end) {
  const std::string before = std::exchange(node->volumeName, done ? name : node->volumeName);
  setBusy(false);
  tell(&DiskModelListener::treeChanged);
  select(selectVolumes_);
  // What it is really called, where the tool refused or the tree was read before.
  const bool isShown = end.status == 0 && !isScan_ && selectVolumes_ == node;
  if (!isShown) lookAgain();
  if (end.status != 0) fail("\"" + before + "\" could not be renamed.", end);
}

// Eject.

void DiskModel::EjectVolumes() {
  if (isFormat_ || !isCanClick_ || !selectVolumes_ || !offers_.eject) return;
  setBusy(true);
  inBackground(
      [nodes = DiskEject::nodesOf(selectVolumes_)] { return DiskEject::run(nodes); },
      [](DiskModel& model, const std::vector<DiskEject::Ended>& ends) { model.ejected(ends); });
}

void DiskModel::ejected(const std::vector<DiskEject::Ended>& ends) {
  setBusy(false);
  lookAgain();
  std::string names;
  DiskCommandEnd reason;
  for (const DiskEject::Ended& one : ends) {
    if (one.isOut || one.end.status == 0) continue;
    names += (names.empty() ? "\"" : ", \"") + one.node->volumeName + "\"";
    if (reason.errors.empty()) reason = one.end;
  }
  if (!names.empty()) fail(names + " could not be ejected.", reason);
}

// Format.

bool DiskModel::beginFormat() {
  if (isFormat_ || !isCanClick_ || !selectVolumes_ || !offers_.format) return false;
  isFormat_ = true;
  formatVolume_ = selectVolumes_;
  tell(&DiskModelListener::busyChanged);
  return true;
}

void DiskModel::makeSureToFormatSelectVolumeWithName(const std::string& name,
                                                     const std::string& type) {
  if (!isFormat_ || !formatVolume_) return;
  FormatPlan plan = DiskFormat::plan(*formatVolume_, name, type);
  if (!DiskFormat::refusal(plan).empty()) return;
  setBusy(true);
  inBackground(
      [plan, volume = formatVolume_] {
        DiskCommandEnd end;
        end.errors = DiskFormat::changedSince(*volume);
        if (!end.errors.empty()) return end;
        if (plan.way != FormatPlan::Way::reformat) return DiskFormat::run(plan);
        end.status = 0;  // it is about to be started, and nobody waits for it
        return end;
      },
      [plan](DiskModel& model, const DiskCommandEnd& end) {
        if (plan.way == FormatPlan::Way::reformat && end.status == 0) {
          model.inBackground([plan] { return DiskFormat::run(plan); },
                             [plan](DiskModel& later, const DiskCommandEnd& reformatted) {
                               later.reformatEnded(plan, reformatted);
                             });
        }
        if (model.listener_ != nullptr) model.listener_->formatEnded(plan, end);
      });
}

void DiskModel::reformatEnded(const FormatPlan& plan, const DiskCommandEnd& end) {
  lookAgain();
  if (end.status != 0 && listener_ != nullptr) listener_->reformatFailed(plan, end);
}

void DiskModel::endFormat() {
  isFormat_ = false;
  formatVolume_ = nullptr;
  setBusy(false);
}

}  // namespace brisko
