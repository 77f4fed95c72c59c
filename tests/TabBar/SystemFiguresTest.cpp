#include "SystemHistory.h"
#include "SystemSampler.h"
#include "SystemTexts.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace brisko;

namespace {

TEST(SystemFigures, RatesCountEachDeviceThatIsStillThere) {
  const std::vector<TransferCounters> before = {{"sda", 1000, 500}, {"usb", 9000, 9000}};
  const std::vector<TransferCounters> now = {{"sda", 3000, 400}, {"new", 1u << 30U, 7}};
  const TransferRate rate = rateBetween(before, now, 2);
  EXPECT_DOUBLE_EQ(rate.in, 1000) << "the new one's past is not traffic";
  EXPECT_EQ(rate.out, 0) << "went back";
  EXPECT_EQ(rateBetween(before, now, 0).in, 0);
  EXPECT_EQ(rateBetween({}, {}, 1).in, 0);
}

SystemSample sampleOf(std::vector<CpuLoad> cores) {
  SystemSample sample;
  sample.cores = std::move(cores);
  return sample;
}

TEST(SystemFigures, HistoryHoldsTwoMinutesWithTheirGaps) {
  SystemHistory history;
  history.skip(5);
  EXPECT_TRUE(history.processor.values().empty()) << "a gap before anything is nothing";
  for (int second = 0; second < 130; ++second)
    history.add(sampleOf({{second / 1000.0, 0}, {0, second / 1000.0}}));
  ASSERT_EQ(history.processorUser.values().size(), FigureHistory::kSeconds);
  EXPECT_FLOAT_EQ(history.processorUser.values().front(), 0.005F);
  EXPECT_FLOAT_EQ(history.processor.values().back(), 0.129F) << "the mean of two cores";
  history.skip(3);
  history.add(sampleOf({{1, 0}, {1, 0}}));
  const auto& values = history.cores.at(1).values();
  ASSERT_EQ(values.size(), FigureHistory::kSeconds);
  EXPECT_EQ(values[119], 1);
  EXPECT_TRUE(std::isnan(values[118]) && std::isnan(values[116]));
  EXPECT_FLOAT_EQ(values[115], 0.129F);
  history.add(sampleOf({}));
  EXPECT_EQ(history.processor.values().back(), 1) << "a refusal is no new value";
  history.add(sampleOf({{0.5, 0}}));
  ASSERT_EQ(history.cores.size(), 1U);
  EXPECT_EQ(history.cores[0].values().size(), 1U);
  history.skip(FigureHistory::kSeconds);
  EXPECT_TRUE(history.processor.values().empty());
}

TEST(SystemFigures, Texts) {
  const std::pair<std::uint64_t, const char*> upTimes[] = {{0, ""},
                                                           {59, "less than a minute"},
                                                           {1409, "23 min"},
                                                           {3600 * 4 + 720, "4 h 12 min"},
                                                           {86400, "1 day 0 h"},
                                                           {3 * 86400 + 4 * 3600, "3 days 4 h"}};
  for (const auto& [seconds, text] : upTimes)
    EXPECT_EQ(SystemTexts::upTime(seconds), text);
  EXPECT_EQ(SystemTexts::percent(0.126), "13%");
  EXPECT_EQ(SystemTexts::percent(1.2), "100%");
  EXPECT_EQ(SystemTexts::rate(12'340'000.4), "12.34 MB/s");
  EXPECT_EQ(SystemTexts::rate(-1), "0.00 KB/s");
  SystemSample sample;
  EXPECT_EQ(SystemTexts::networkState(sample), "No network device");
  EXPECT_FALSE(SystemTexts::hottest(sample, Temperature::Kind::drive));
  sample.interfaces = {{"eth0", 0, 0, false}};
  EXPECT_EQ(SystemTexts::networkState(sample), "Not connected");
  sample.interfaces.push_back({"wlan0", 0, 0, true});
  EXPECT_EQ(SystemTexts::networkState(sample), "Connected through wlan0");
  sample.temperatures = {{"a", Temperature::Kind::processor, 50},
                         {"b", Temperature::Kind::drive, 40},
                         {"c", Temperature::Kind::drive, 45}};
  EXPECT_EQ(SystemTexts::hottest(sample, Temperature::Kind::drive), 45);
}

}  // namespace
