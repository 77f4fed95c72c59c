#pragma once

#include "SystemHistory.h"
#include "VarSystemInfo.h"

#include <QElapsedTimer>
#include <QObject>

#include <memory>
#include <optional>

class QWidget;

namespace brisko {

class VisibleTicker;

/// The machine's figures for a widget: one sample a second while the widget can be seen, taken in
/// the background, and nothing at all while it cannot.
class StatusFeed : public QObject {
  Q_OBJECT

 public:
  /// Bytes per second up to which the chart of a rate reaches when less than that moves.
  static constexpr double kLeastRateScale = 100'000;

  /// Owned by `view`.
  explicit StatusFeed(QWidget* view);

  const SystemHistory& history() const { return history_; }
  /// What the machine is; nothing before that is known.
  const std::optional<VarSystemInfo>& information() const { return information_; }
  bool isRunning() const;

  /// Shows `sample` as the latest one: those of the background come this way.
  void take(const SystemSample& sample);

 Q_SIGNALS:
  /// There is a new sample.
  void sampled();
  void informationKnown();

 private:
  void start();
  void stop();
  void sample();

  // Used by one background block at a time.
  std::shared_ptr<std::optional<SystemSampler>> sampler_;
  VisibleTicker* ticker_;
  SystemHistory history_;
  std::optional<VarSystemInfo> information_;
  QElapsedTimer sinceSample_;
  int run_ = 0;          ///< goes up whenever the widget is hidden or shown
  bool isBusy_ = false;  ///< a block is at work
  bool isFresh_ = true;  ///< the next block measures anew
};

}  // namespace brisko
