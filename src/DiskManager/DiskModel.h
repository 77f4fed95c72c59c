#pragma once

#include "DiskAndVolumeObj.h"
#include "DiskDetail.h"
#include "DiskEject.h"
#include "DiskFormat.h"
#include "DiskHealth.h"
#include "DiskOffers.h"
#include "DiskTree.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brisko {

/// Told of changes, always on the main thread.
class DiskModelListener {
 public:
  virtual ~DiskModelListener() = default;
  virtual void treeChanged() {}       ///< other nodes, or another name; nothing is selected yet
  virtual void selectionChanged() {}  ///< selected node, its detail and its offers
  virtual void healthChanged() {}
  virtual void busyChanged() {}  ///< isScan, isCanClick, isFormat
  /// The disk tool refused; `what` is a sentence, `reason` its own words, maybe empty.
  virtual void operationFailed(const std::string& /*what*/, const std::string& /*reason*/) {}
  /// The tool has ended or, for a detached task, has been started.
  virtual void formatEnded(const FormatPlan& /*plan*/, const DiskCommandEnd& /*end*/) {}
  /// The detached task that `formatEnded` told of has failed.
  virtual void reformatFailed(const FormatPlan& /*plan*/, const DiskCommandEnd& /*end*/) {}
};

/// The Disk Manager's page without its widgets: tree, selection, what is offered, and the
/// operations. Belongs to the main thread; the disk tool is asked in the background and its answers
/// come back through the main queue.
class DiskModel {
 public:
  DiskModel();
  ~DiskModel();
  DiskModel(const DiskModel&) = delete;
  DiskModel& operator=(const DiskModel&) = delete;

  /// One listener at a time; it must outlive the model or be taken off with null.
  void setListener(DiskModelListener* listener) { listener_ = listener; }

  // The tree.

  /// Looks at everything anew. Ignored while that runs already.
  void getDiskInfo();
  /// The same after something was done to a disk: while it runs already, once more when it has
  /// ended, because its answers may be from before.
  void lookAgain();
  bool isScan() const { return isScan_; }
  /// At least once, so an empty tree says something.
  bool wasScanned() const { return wasScanned_; }
  const std::vector<DiskNode>& allDiskArr() const { return allDiskArr_; }
  /// What the disk tool complained about, a line each; empty mostly.
  const std::string& complaints() const { return complaints_; }
  bool isSystemVolume(const DiskAndVolumeObj& node) const {
    return brisko::isSystemVolume(allDiskArr_, node);
  }

  // The selection.

  const DiskNode& selectVolumes() const { return selectVolumes_; }
  /// Selects the node unless the page is busy; false then. The same one is selected again after a
  /// rebuild as long as it is there; before the user has chosen, that is the first disk.
  bool shouldSelectItem(const DiskNode& node);
  /// Nothing when nothing is selected.
  std::optional<DiskDetail> detail() const;
  DiskOffers offers() const { return offers_; }
  const DiskHealth& health() const { return health_; }

  // Busy states.

  bool isCanClick() const { return isCanClick_; }
  bool isFormat() const { return isFormat_; }

  // Operations on the selected node. Each is ignored where it is not offered.

  /// "" when the name fits, else why not.
  std::string renameRefusal(const std::string& name) const;
  /// The rename view's OK. False when nothing was begun.
  bool rename(const std::string& name);

  /// Ejects the node or, where it has some, each of its children.
  void EjectVolumes();

  /// Before the confirmation panel is shown. False when a format runs already or is not offered.
  bool beginFormat();
  /// The volume that is asked about: what was selected then, whatever is selected meanwhile.
  const DiskNode& formatVolume() const { return formatVolume_; }
  /// The confirmation panel's OK; `formatEnded` follows. Nothing is run when the device does not
  /// hold that volume any more.
  void makeSureToFormatSelectVolumeWithName(const std::string& name, const std::string& type);
  /// After the confirmation panel has gone.
  void endFormat();

  /// The minor system version number.
  static int OSVersion();

 private:
  struct Lifetime {
    DiskModel* model = nullptr;
  };
  void takeTree(DiskTree tree, std::vector<MountedVolume> mounted);
  void select(DiskNode node);
  void renamed(const DiskNode& node, const std::string& name, bool done, const DiskCommandEnd& end);
  void ejected(const std::vector<DiskEject::Ended>& ends);
  void reformatEnded(const FormatPlan& plan, const DiskCommandEnd& end);
  void fail(const std::string& what, const DiskCommandEnd& end);
  void setBusy(bool isBusy);
  /// Runs `work` in the background, then `then` with its result on the main thread if the model
  /// still lives.
  template <typename Work, typename Then>
  void inBackground(Work work, Then then);
  void tell(void (DiskModelListener::*what)());

  DiskModelListener* listener_ = nullptr;
  std::shared_ptr<Lifetime> lifetime_;
  DiskHealth health_;
  std::vector<DiskNode> allDiskArr_;
  std::vector<MountedVolume> mounted_;
  std::string complaints_;
  DiskNode selectVolumes_;
  std::string chosenId_;  ///< of the row that the user chose
  bool chosenIsDisk_ = false;
  DiskNode formatVolume_;
  DiskOffers offers_;
  bool isScan_ = false;
  bool isOld_ = false;  ///< what the running look finds
  bool wasScanned_ = false;
  bool isCanClick_ = true;
  bool isFormat_ = false;
};

}  // namespace brisko
