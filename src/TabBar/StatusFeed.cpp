#include "StatusFeed.h"

#include "Dispatch.h"
#include "SystemTexts.h"
#include "VisibleTicker.h"

#include <QPointer>
#include <QWidget>

namespace brisko {
namespace {

constexpr int kInterval = 1000;  // milliseconds
// The first figures come soon; shorter than this the kernel's ticks are too coarse for a load.
constexpr int kFirstSample = 300;

}  // namespace

StatusFeed::StatusFeed(QWidget* view)
    : QObject(view),
      sampler_(std::make_shared<std::optional<SystemSampler>>()),
      ticker_(new VisibleTicker(view, kInterval, kFirstSample)) {
  connect(ticker_, &VisibleTicker::started, this, &StatusFeed::start);
  connect(ticker_, &VisibleTicker::stopped, this, &StatusFeed::stop);
  connect(ticker_, &VisibleTicker::ticked, this, &StatusFeed::sample);
}

bool StatusFeed::isRunning() const {
  return ticker_->isRunning();
}

void StatusFeed::start() {
  ++run_;
  isFresh_ = true;
  // The curves go on where they ended, as far away as that is.
  if (sinceSample_.isValid())
    history_.skip(static_cast<std::size_t>(sinceSample_.elapsed() / kInterval));
  sample();
}

void StatusFeed::stop() {
  ++run_;
}

// Fresh: takes what to measure from, once, and no sample.
void StatusFeed::sample() {
  if (isBusy_) return;
  isBusy_ = true;
  const bool isFresh = isFresh_;
  const bool wantsInformation = !information_;
  isFresh_ = false;
  Dispatch::global([feed = QPointer<StatusFeed>(this), sampler = sampler_, run = run_, isFresh,
                    wantsInformation] {
    std::optional<VarSystemInfo> information;
    std::optional<SystemSample> taken;
    if (!*sampler) {
      sampler->emplace();
    } else if (isFresh) {
      (*sampler)->restart();
    } else {
      taken = (*sampler)->sample();
    }
    if (wantsInformation) information = SystemTexts::systemInformation();
    Dispatch::mainAsync(
        [feed, run, taken = std::move(taken), information = std::move(information)] {
          if (!feed) return;
          feed->isBusy_ = false;
          if (information && !feed->information_) {
            feed->information_ = information;
            Q_EMIT feed->informationKnown();
          }
          // What was measured before the widget was hidden is no longer of now.
          if (taken && run == feed->run_) feed->take(*taken);
        });
  });
}

void StatusFeed::take(const SystemSample& sample) {
  history_.add(sample);
  sinceSample_.start();
  Q_EMIT sampled();
}

}  // namespace brisko
