#include "FakeStatistics.h"
#include "TemporaryFolder.h"
#include "TestHost.h"
#include "VarSystemInfo.h"

#include <gtest/gtest.h>

using namespace brisko;
using namespace brisko::test;

namespace {

class VarSystemInfoTest : public testing::Test {
 protected:
  VarSystemInfoTest() {
    auto made = std::make_unique<FakeStatistics>();
    statistics = made.get();
    host.host().statistics = std::move(made);
  }
  void release(const char* text) { statistics->values["kern.osrelease"] = std::string(text); }

  TestHost host;
  FakeStatistics* statistics = nullptr;
};

TEST_F(VarSystemInfoTest, ModelNameComesFromTheTableElseFromTheFamily) {
  statistics->values["hw.model"] = std::string("MacBookPro15,1");
  const VarSystemInfo info;
  EXPECT_EQ(info.sysModelID, "MacBookPro15,1");
  EXPECT_EQ(info.sysModelName, "MacBook Pro (15-inch, 2018)");

  TemporaryFolder folder;
  folder.file("MachineNames.plist",
              "<plist version=\"1.0\"><dict><key>X1,1</key><string>The X</string></dict></plist>");
  const Environment resources("BRISKO_RESOURCES", folder.path().c_str());
  const std::pair<const char*, const char*> cases[] = {{"X1,1", "The X"},
                                                       {"Macmini8,1", "Macmini8,1"},
                                                       {"IMAC99,1", "iMac"},
                                                       {"mac mini 9", "Mac mini"},
                                                       {"", ""},
                                                       {"MacBookPro15,1", "MacBookPro15,1"},
                                                       {"Mac Pro", "Mac Pro"}};
  for (const auto& [identifier, name] : cases)
    EXPECT_EQ(VarSystemInfo::_modelNameFromID(identifier), name) << identifier;
}

TEST_F(VarSystemInfoTest, MachineThatTellsNothingHasEmptyTexts) {
  const VarSystemInfo info;
  EXPECT_EQ(info.sysModelID, "");
  EXPECT_EQ(info.sysModelName, "");
  EXPECT_FALSE(VarSystemInfo::_strControlEntry("hw.model"));
  EXPECT_EQ(VarSystemInfo::_numControlEntry("hw.memsize"), 0U);
  EXPECT_FALSE(VarSystemInfo::_strIORegistryEntry("IOPlatformSerialNumber"));
  EXPECT_FALSE(VarSystemInfo::getOSVersionInfo());
  EXPECT_FALSE(VarSystemInfo::getMinorVer());
}

TEST_F(VarSystemInfoTest, BrandLosesTradeMarksFiguresAndSpeed) {
  const std::pair<const char*, const char*> cases[] = {
      {"Intel(R) Core(TM) i7-8700B CPU @ 3.20GHz", "Intel Core i7"},
      {"Intel(R) Xeon(R) Processor", "Intel Xeon Processor"},
      {"AMD Ryzen 9 5950X 16-Core Processor", "AMD Ryzen Core Processor"},
      {"CPU 5", ""},
      {"11th Gen Intel(r) cpu", "Gen Intel cpu"},
      {"", ""}};
  for (const auto& [brand, name] : cases)
    EXPECT_EQ(VarSystemInfo::_parseBrandName(brand), name) << brand;
}

TEST_F(VarSystemInfoTest, VersionAndNameRunFourBehindTheKernel) {
  release("18.7.0");
  EXPECT_FALSE(VarSystemInfo::getOSVersionInfo()) << "no build";
  statistics->values["kern.osversion"] = std::string("18G103");
  EXPECT_EQ(VarSystemInfo::getOSVersionInfo(), "10.14.7 (18G103)");
  EXPECT_EQ(VarSystemInfo::getMinorVer(), "macOS Mojave");
  const std::pair<const char*, const char*> names[] = {{"10.8.0", "OS X Snow Leopard"},
                                                       {"16-0", "macOS Sierra"},
                                                       {"21.6.0", "17"},
                                                       {"9.8.0", "5"},
                                                       {"6.1.0-18-amd64", "2"},
                                                       {"3.0", "-1"}};
  for (const auto& [kernel, name] : names) {
    release(kernel);
    EXPECT_EQ(VarSystemInfo::getMinorVer(), name) << kernel;
  }
  release("21");
  EXPECT_EQ(VarSystemInfo::getOSVersionInfo(), "10.17.0 (18G103)");
  release("");
  EXPECT_FALSE(VarSystemInfo::getOSVersionInfo());
}

}  // namespace
