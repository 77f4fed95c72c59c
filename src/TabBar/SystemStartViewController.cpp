#include "SystemStartViewController.h"

#include "Card.h"
#include "LocalizedString.h"
#include "ModuleTable.h"
#include "StatusFeed.h"
#include "SystemTexts.h"
#include "ui_SystemStartViewController.h"

#include <QGridLayout>

namespace brisko {
namespace {

using Token = Theme::Token;
using Part = ChartCard::Part;

constexpr int kColumns = 3;
// Volumes fill slowly, and asking a sleeping network volume is not free.
constexpr int kUpdatesPerVolumeLook = 10;

QString shown(const std::string& text) {
  return QString::fromStdString(text);
}

QString percent(double fraction) {
  return shown(SystemTexts::percent(fraction));
}

QString rate(double bytesPerSecond) {
  return shown(SystemTexts::rate(bytesPerSecond));
}

QString memory(double bytes) {
  return shown(SSMemoryInfo::covertMemory(static_cast<std::int64_t>(bytes)));
}

}  // namespace

SystemStartViewController::SystemStartViewController()
    : PageController(0),
      ui_(std::make_unique<Ui::SystemStartViewController>()),
      feed_(new StatusFeed(getView())) {
  ui_->setupUi(getView());
  ui_->volumeList->setColumns(2);
  ui_->coreCard->hide();
  prepareCharts();
  addModuleCards(ui_->moduleGrid);
  connect(feed_, &StatusFeed::sampled, this, &SystemStartViewController::updateSysStat);
  connect(feed_, &StatusFeed::informationKnown, this, &SystemStartViewController::showFacts);
}

SystemStartViewController::~SystemStartViewController() = default;

void SystemStartViewController::prepareCharts() {
  using Kind = HistoryChart::Kind;
  const auto prepare = [](ChartCard* card, const char* title, Kind kind,
                          std::vector<HistoryChart::Series> series, HistoryChart::Formatter told) {
    card->setTitle(getLocalizedString(title));
    card->chart()->setSeries(kind, std::move(series));
    card->chart()->setFormatter(std::move(told));
  };
  prepare(ui_->processorCard, "Processor", Kind::stack,
          {{getLocalizedString("System"), Token::success},
           {getLocalizedString("Programs"), Token::accentFill}},
          percent);
  prepare(ui_->memoryCard, "Memory", Kind::stack,
          {{getLocalizedString("System"), Token::success},
           {getLocalizedString("Programs"), Token::accentFill},
           {getLocalizedString("Cache"), Token::control}},
          memory);
  prepare(ui_->diskCard, "Disk throughput", Kind::lines,
          {{getLocalizedString("Read"), Token::accentFill},
           {getLocalizedString("Written"), Token::warningFill}},
          rate);
  prepare(ui_->networkCard, "Network", Kind::lines,
          {{getLocalizedString("Received"), Token::accentFill},
           {getLocalizedString("Sent"), Token::success}},
          rate);
  for (ChartCard* card : {ui_->diskCard, ui_->networkCard}) {
    card->chart()->setMaximum(0, StatusFeed::kLeastRateScale);
    card->setChartHeight(72);
  }
}

void SystemStartViewController::addModuleCards(QGridLayout* grid) {
  int place = 0;
  for (const Module& module : moduleTable()) {
    if (module.index == getViewID()) continue;
    auto* card = new CardButton;
    card->setObjectName(QStringLiteral("moduleCard%1").arg(module.index));
    card->setText(getLocalizedString(module.label));
    card->setAccessibleName(card->text());
    card->setSentence(getLocalizedString(module.sentence));
    card->setImageName(module.selectedIcon);
    connect(card, &QAbstractButton::clicked, this,
            [this, index = module.index] { Q_EMIT pageRequested(index); });
    grid->addWidget(card, place / kColumns, place % kColumns);
    ++place;
  }
}

void SystemStartViewController::updateSysStat() {
  showProcessor();
  showMemory();
  showTransfers();
  showFacts();
  if (++updates_ % kUpdatesPerVolumeLook == 0) ui_->volumeList->refresh();
}

void SystemStartViewController::showProcessor() {
  const SystemHistory& history = feed_->history();
  const SystemSample& now = history.latest();
  const CpuLoad load = now.processor();
  ui_->processorCard->chart()->setValues(0, history.processorSystem.values());
  ui_->processorCard->chart()->setValues(1, history.processorUser.values());
  std::vector<Part> parts = {
      {getLocalizedString("Programs"), Token::accentFill, percent(load.user)},
      {getLocalizedString("System"), Token::success, percent(load.system)},
      {getLocalizedString("Idle"), std::nullopt, percent(1 - load.user - load.system)}};
  if (const auto celsius = SystemTexts::hottest(now, Temperature::Kind::processor)) {
    parts.push_back(
        {getLocalizedString("Temperature"), std::nullopt, shown(SystemTexts::degrees(*celsius))});
  }
  const bool isKnown = !now.cores.empty();
  if (!isKnown) parts.clear();
  ui_->processorCard->setValue(isKnown ? percent(load.user + load.system)
                                       : getLocalizedString("No information"));
  ui_->processorCard->setParts(std::move(parts));
  // One core is the whole processor.
  ui_->coreCard->setVisible(now.cores.size() > 1);
  ui_->coreGrid->show(history);
}

void SystemStartViewController::showMemory() {
  const SystemHistory& history = feed_->history();
  const SSMemoryInfo& now = history.latest().memory;
  if (now.totalMemory == 0) {
    ui_->memoryCard->setValue(getLocalizedString("No information"));
    ui_->memoryCard->setParts({});
    return;
  }
  HistoryChart* chart = ui_->memoryCard->chart();
  chart->setMaximum(static_cast<double>(now.totalMemory), 1);
  chart->setValues(0, history.wiredMemory.values());
  chart->setValues(1, history.activeMemory.values());
  chart->setValues(2, history.inactiveMemory.values());
  const auto part = [](const char* name, std::optional<Token> colour, std::uint64_t bytes) {
    return Part{getLocalizedString(name), colour, memory(static_cast<double>(bytes))};
  };
  ui_->memoryCard->setValue(
      memory(static_cast<double>(now.usedMomory)),
      filledIn(getLocalizedString("of %@ used"), memory(static_cast<double>(now.totalMemory))));
  ui_->memoryCard->setParts({part("Programs", Token::accentFill, now.activeMemory),
                             part("System", Token::success, now.wiredMemory),
                             part("Cache", Token::control, now.inactiveMemory),
                             part("Free", std::nullopt, now.freeMemory)});
}

void SystemStartViewController::showTransfers() {
  const SystemHistory& history = feed_->history();
  const SystemSample& now = history.latest();
  ui_->diskCard->chart()->setValues(0, history.diskRead.values());
  ui_->diskCard->chart()->setValues(1, history.diskWritten.values());
  std::vector<Part> parts = {
      {getLocalizedString("Read"), Token::accentFill, rate(now.disk.in)},
      {getLocalizedString("Written"), Token::warningFill, rate(now.disk.out)}};
  if (const auto celsius = SystemTexts::hottest(now, Temperature::Kind::drive)) {
    parts.push_back(
        {getLocalizedString("Temperature"), std::nullopt, shown(SystemTexts::degrees(*celsius))});
  }
  ui_->diskCard->setValue(now.disks.empty() ? getLocalizedString("No disk")
                                            : rate(now.disk.in + now.disk.out));
  ui_->diskCard->setParts(std::move(parts));

  ui_->networkCard->chart()->setValues(0, history.networkReceived.values());
  ui_->networkCard->chart()->setValues(1, history.networkSent.values());
  ui_->networkCard->setRemark(displayText(SystemTexts::networkState(now)));
  ui_->networkCard->setValue(rate(now.network.in + now.network.out));
  ui_->networkCard->setParts(
      {{getLocalizedString("Received"), Token::accentFill, rate(now.network.in)},
       {getLocalizedString("Sent"), Token::success, rate(now.network.out)}});
}

void SystemStartViewController::showFacts() {
  const auto& information = feed_->information();
  if (!information) return;
  ui_->greetingLabel->setText(displayText(SystemTexts::machineName(*information)));
  ui_->factRow->setFacts(
      {{getLocalizedString("Processor"), displayText(SystemTexts::processor(*information))},
       {getLocalizedString("System"), displayText(SystemTexts::system(*information))},
       {getLocalizedString("Memory"), displayText(information->sysPhysicalMemory)},
       {getLocalizedString("Up for"),
        shown(SystemTexts::upTime(feed_->history().latest().upTimeSeconds))}});
}

}  // namespace brisko
