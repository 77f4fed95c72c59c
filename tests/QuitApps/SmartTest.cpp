#include "AtaSmart.h"
#include "CSMARTAttribute.h"
#include "Dispatch.h"
#include "FakeSmartDevice.h"
#include "Host.h"
#include "NSNotificationCenter.h"
#include "TestHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace brisko::test {
namespace {

using testing::ElementsAre;

using Raw = std::array<std::uint8_t, 6>;

void setRecord(SmartSector& data, std::size_t index, std::uint8_t id, const Raw& raw) {
  std::uint8_t* record = data.data() + 2 + 12 * index;
  record[0] = id;
  for (std::size_t i = 0; i < raw.size(); ++i)
    record[5 + i] = raw[i];
}

TEST(AtaSmart, rawValuesAreReadByTheAttributesFormat) {
  struct Row {
    std::uint8_t id;
    Raw raw;
    std::uint32_t value;
  };
  const Row rows[] = {
      {194, {0xE7, 1, 2, 3, 4, 5}, static_cast<std::uint32_t>(-25)},
      {190, {35, 9, 9, 0, 0, 0}, 35},
      {9, {0x10, 0x27, 0x00, 0x05, 0, 0}, 10'000},
      {240, {0xFF, 0xFF, 0xFF, 1, 0, 0}, 0xFFFFFF},
      {3, {1, 2, 3, 0, 0, 0}, 0x0201},
      {5, {1, 2, 3, 0, 0, 0}, 0x0201},
      {196, {1, 2, 3, 0, 0, 0}, 0x0201},
      {12, {1, 2, 3, 4, 5, 6}, 0x04030201},
  };
  for (const Row& row : rows) {
    SmartSector data{};
    setRecord(data, 29, row.id, row.raw);
    EXPECT_EQ(ata_format_attr_raw_value(ataSmartAttribute(data, 29)), row.value) << int{row.id};
  }
  SmartSector data{};
  setRecord(data, 0, 1, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(ata_get_attr_raw_value(ataSmartAttribute(data, 0)), 0x060504030201U);
}

TEST(AtaSmart, identifyWordsCountOnlyWhenTheyAreValid) {
  SmartSector identify{};
  EXPECT_EQ(ataSmartSupport(identify), -1);
  identify[2 * 82] = identify[2 * 85] = 1;
  identify[2 * 83 + 1] = 0x40;
  EXPECT_EQ(ataSmartSupport(identify), 1);
  EXPECT_EQ(ataIsSmartEnabled(identify), -1);
  identify[2 * 87 + 1] = 0xC0;
  EXPECT_EQ(ataIsSmartEnabled(identify), -1);
  identify[2 * 87 + 1] = 0x40;
  EXPECT_EQ(ataIsSmartEnabled(identify), 1);
  identify[2 * 85] = 0xFE;
  EXPECT_EQ(ataIsSmartEnabled(identify), 0);
  SmartNode node;
  node.ataFeatures = 32;
  EXPECT_FALSE(is_smart_capable(node));
  node.isATABlockStorageDevice = true;
  EXPECT_TRUE(is_smart_capable(node));
}

class SmartReader : public testing::Test {
 protected:
  SmartReader() {
    auto made = std::make_unique<FakeSmartDevice>();
    registry = made.get();
    Host::current().smartDevice = std::move(made);
    token_ = NSNotificationCenter::defaultCenter().addObserver(
        "updateTemperature",
        [this](const NSNotification& notice) { temperatures.push_back(notice.object); });
  }
  ~SmartReader() override { NSNotificationCenter::defaultCenter().removeObserver(token_); }

  static SmartSector sector(std::uint8_t degrees) {
    SmartSector data{};
    setRecord(data, 0, 9, {0x10, 0x27, 0, 5, 0, 0});
    setRecord(data, 3, 194, {99, 0, 0, 0, 0, 0});
    setRecord(data, 4, 12, {7, 0, 0, 0, 0, 0});
    setRecord(data, 9, 194, {degrees, 0, 0, 0, 0, 0});  // a later one counts
    return data;
  }

  TestHost host;
  FakeSmartDevice* registry = nullptr;
  std::vector<std::string> temperatures;

 private:
  int token_ = 0;
};

TEST_F(SmartReader, theFirstDriveIsReadWithoutAName) {
  const auto drive = registry->add("disk0");
  drive->data = sector(38);
  CSMARTAttribute reader;
  EXPECT_EQ(reader.GetSmartAttribute(std::nullopt), CSMARTAttribute::State::answering);
  EXPECT_EQ(reader.GetTemperature(), 38);
  EXPECT_EQ(reader.GetPowerOnHour(), 10'000U);
  EXPECT_EQ(reader.GetPowerCycleCount(), 7U);
  EXPECT_EQ(drive->enabled, 1);
  EXPECT_TRUE(reader.hasTimer());
  for (const char* line :
       {"pathname = /dev/disk0", "IOServiceGetMatchingService",
        "SMARTEnableDisableOperations enable success", "SMARTReadData success",
        "SMARTReadDataThresholds success", "iTemperature begin", "rawvalue is = lld%",
        "attr id = 194", "Uptime = 10000, Powercyclecount = 7, iTemperature = 38"}) {
    EXPECT_TRUE(host.logged(line)) << line;
  }
}

TEST_F(SmartReader, theWayUpEndsAtTheFirstCapableObject) {
  const auto drive = registry->add("controller");
  drive->data = sector(20);
  FakeSmartDevice::Entry partition;
  partition.node.path = "/registry/part";
  partition.node.name = "disk3s1";
  partition.parentPath = "/registry/controller";
  registry->entries.push_back(partition);
  CSMARTAttribute reader;
  EXPECT_EQ(reader.GetSmartAttribute("rdisk3s1"), CSMARTAttribute::State::answering);
  CSMARTAttribute other;
  registry->entries.back().parentPath = "";
  errno = 0;
  EXPECT_EQ(other.GetSmartAttribute("disk3s1"), CSMARTAttribute::State::noDevice);
  EXPECT_EQ(errno, ENODEV);
  EXPECT_FALSE(other.hasTimer());
  EXPECT_TRUE(host.logged("Find this device's parent and try again"));
}

TEST_F(SmartReader, eachFailureLeavesWhatWasKnown) {
  const auto drive = registry->add("disk0");
  drive->data = sector(30);
  drive->openError = EACCES;
  CSMARTAttribute closed;
  EXPECT_EQ(closed.GetSmartAttribute("disk0"), CSMARTAttribute::State::noInterface);
  EXPECT_EQ(closed.error(), EACCES);
  EXPECT_TRUE(host.logged("Please enable smart!"));
  drive->openError = 0;
  drive->enableError = EIO;
  CSMARTAttribute reader;
  EXPECT_EQ(reader.GetSmartAttribute("disk0"), CSMARTAttribute::State::notAnswering);
  EXPECT_TRUE(host.logged("SMARTEnableDisableOperations failed with 5!"));
  EXPECT_TRUE(reader.hasTimer()) << "the drive may answer later";
  reader.GetThreaholds();
  EXPECT_EQ(reader.GetTemperature(), 30);
  drive->dataError = EIO;
  reader.GetThreaholds();
  EXPECT_EQ(reader.GetTemperature(), 30);
  drive->dataError = 0;
  drive->thresholdsError = EIO;
  reader.GetThreaholds();
  EXPECT_EQ(reader.GetTemperature(), 0);
  EXPECT_EQ(reader.GetPowerOnHour(), 10'000U);
  // One that only other attributes tell of does not count.
  drive->thresholdsError = 0;
  drive->data = {};
  setRecord(drive->data, 0, 190, {44, 0, 0, 0, 0, 0});
  reader.GetThreaholds();
  EXPECT_EQ(reader.GetTemperature(), 0);
  Dispatch::runPending();
  EXPECT_THAT(temperatures, ElementsAre("30", "30")) << "nothing once the temperature is unknown";
}

TEST_F(SmartReader, theTimerTellsTheTemperatureOnTheMainQueue) {
  const auto drive = registry->add("disk0");
  drive->nvme = true;
  drive->health = {51, 100, 3};
  {
    CSMARTAttribute reader(std::chrono::milliseconds(5));
    EXPECT_EQ(reader.GetSmartAttribute("disk0"), CSMARTAttribute::State::answering);
    EXPECT_EQ(reader.GetPowerCycleCount(), 3U);
    Dispatch::runUntil([this] { return temperatures.size() >= 2; });
  }
  Dispatch::runPending();
  const auto told = temperatures.size();
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  Dispatch::runPending();
  EXPECT_EQ(temperatures.size(), told) << "the timer ends with the reader";
  EXPECT_EQ(temperatures.front(), "51");
}

}  // namespace
}  // namespace brisko::test
