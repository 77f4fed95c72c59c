#include "LogCapture.h"
#include "PropertyList.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

#include <sys/stat.h>

namespace brisko {
namespace {

using test::LogCapture;

PropertyList sample() {
  return PropertyList::Dictionary{
      {"array", PropertyList::Array{1, "two", PropertyList::Dictionary{{"three", 3.25}}}},
      {"negative", std::int64_t{-42}},
      {"largest", UINT64_MAX},
      {"smallest", INT64_MIN},
      {"yes", true},
      {"no", false},
      {"text", "<&> \"ä\" \n\x01 end"},
      {"data", PropertyList::Data{std::string("\0\xFF\x80 x", 5)}},
      {"date", PropertyList::Date{700000000}},
      {"empty", PropertyList::Dictionary{}},
      {"list", PropertyList::Array{}},
  };
}

std::string binary(const std::string& xml) {
  plist_t node = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &node);
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(node, &bytes, &length);
  std::string result(bytes, length);
  std::free(bytes);
  plist_free(node);
  return result;
}

// A binary list from its objects' bytes, one byte per offset and reference while that suffices.
std::string binaryOf(const std::vector<std::string>& objects, std::uint64_t root = 0) {
  std::string bytes = "bplist00";
  std::vector<std::uint64_t> offsets;
  for (const std::string& object : objects) {
    offsets.push_back(bytes.size());
    bytes += object;
  }
  const auto append = [&bytes](std::uint64_t number, int size) {
    while (size-- > 0)
      bytes += static_cast<char>(number >> (8 * size));
  };
  const std::uint64_t table = bytes.size();
  for (const std::uint64_t offset : offsets)
    append(offset, 4);
  bytes += std::string(6, '\0');
  append(4, 1);
  append(2, 1);
  append(objects.size(), 8);
  append(root, 8);
  append(table, 8);
  return bytes;
}

std::string arrayOf(std::initializer_list<std::uint16_t> references) {
  std::string bytes(1, static_cast<char>(0xA0 + references.size()));
  for (const std::uint16_t reference : references) {
    bytes += static_cast<char>(reference >> 8U);
    bytes += static_cast<char>(reference);
  }
  return bytes;
}

TEST(PropertyList, EveryTypeSurvivesXmlAndBinary) {
  const PropertyList list = sample();
  EXPECT_EQ(PropertyList::parse(list.xml(), "xml"), list);
  const PropertyList fromBinary = PropertyList::parse(binary(list.xml()), "binary");
  EXPECT_EQ(fromBinary, list);
  EXPECT_EQ(fromBinary["smallest"].integer(), INT64_MIN);
  EXPECT_EQ(fromBinary["largest"].unsignedInteger(), UINT64_MAX);
}

TEST(PropertyList, LookUpsOfWhatIsNotThereAreEmpty) {
  const PropertyList list = sample();
  EXPECT_TRUE(list["missing"]["deeper"][std::size_t{7}].isNull());
  EXPECT_TRUE(list["array"][std::size_t{3}].isNull());
  EXPECT_EQ(list["text"].integer(), 0);
  EXPECT_EQ(list["array"].string(), "");
  EXPECT_EQ(list["negative"].unsignedInteger(), 0U);
  EXPECT_EQ(list["largest"].integer(), 0);
  EXPECT_EQ(PropertyList(1e30).integer(), 0);
  EXPECT_EQ(PropertyList(std::nan("")).integer(), 0);
  EXPECT_EQ(PropertyList(-2.9).integer(), -2);
  EXPECT_TRUE(PropertyList(2).boolean());
  PropertyList changed = list;
  changed.set("text", PropertyList());
  EXPECT_EQ(changed.dictionary().size(), list.dictionary().size() - 1);
}

TEST(PropertyList, XmlAsOthersWriteItIsRead) {
  const PropertyList list = PropertyList::parse(
      "\xEF\xBB\xBF<?xml version='1.0'?><!DOCTYPE plist PUBLIC \"-//A//B\" \"http://x/y.dtd\">\n"
      "<!-- <array><array> -->\n<plist version=\"1.0\"><dict >\n<key>a</key><!-- - --><string>x"
      "<![CDATA[<array>]]>&#x41;&amp;</string><key>b</key><integer>0x1F</integer>"
      "<key>c</key><string/><key>d</key><data>\n aGk=\n</data><key>e</key><true "
      "/></dict></plist>\n",
      "others");
  EXPECT_EQ(list["a"].string(), "x<array>A&");
  EXPECT_EQ(list["b"].integer(), 31);
  EXPECT_TRUE(list["c"].isString());
  EXPECT_EQ(list["d"].dataBytes(), "hi");
  EXPECT_TRUE(list["e"].boolean());
}

TEST(PropertyList, ArchiveReferencesReadAsDictionaries) {
  EXPECT_EQ(PropertyList::parse(binaryOf({"\x80\x07"}), "uid")["CF$UID"].integer(), 7);
}

TEST(PropertyList, NestingIsReadUpToItsLimitAndRefusedAbove) {
  const auto xml = [](std::size_t levels) {
    std::string text = "<plist>";
    for (std::size_t i = 0; i < levels; ++i)
      text += "<array>";
    for (std::size_t i = 0; i < levels; ++i)
      text += "</array>";
    return text + "</plist>";
  };
  const auto chain = [](std::size_t levels) {
    std::vector<std::string> objects;
    for (std::size_t i = 0; i + 1 < levels; ++i) {
      objects.push_back(arrayOf({static_cast<std::uint16_t>(i + 1)}));
    }
    objects.push_back(arrayOf({}));
    return binaryOf(objects);
  };
  LogCapture log;
  EXPECT_TRUE(PropertyList::parse(xml(512), "x").isArray());
  EXPECT_TRUE(PropertyList::parse(chain(512), "b").isArray());
  EXPECT_EQ(log.lines().size(), 0U);
  for (const std::size_t levels : {std::size_t{513}, std::size_t{60'000}}) {
    EXPECT_TRUE(PropertyList::parse(xml(levels), "x").isNull()) << levels;
    EXPECT_TRUE(PropertyList::parse(chain(levels), "b").isNull()) << levels;
  }
  EXPECT_TRUE(PropertyList::parse(xml(2'000'000), "x").isNull());
  EXPECT_EQ(log.lines().size(), 5U);
  EXPECT_EQ(log.lines().back(), "Cannot read property list x: it is nested too deep");
}

TEST(PropertyList, HostileListsGiveNullAndOneLineEach) {
  std::vector<std::string> doubling;  // 2^40 values once every reference is followed
  for (std::uint16_t i = 1; i <= 40; ++i)
    doubling.push_back(arrayOf({i, i}));
  doubling.push_back("\x09");
  std::vector<std::string> repeated = {std::string("\xAF\x11\x04\x00", 4)};  // 1,024 times 1 MiB
  for (int i = 0; i < 1024; ++i)
    repeated[0] += std::string("\0\1", 2);
  repeated.push_back(std::string("\x4F\x12\x00\x10\x00\x00", 6) + std::string(1 << 20, 'x'));
  // A chain of 300 levels below a chain of 300, joined by a reference to what was seen before.
  std::vector<std::string> joined = {arrayOf({301, 1})};
  for (std::uint16_t i = 1; i < 300; ++i) {
    joined.push_back(arrayOf({static_cast<std::uint16_t>(i + 1)}));
  }
  joined.push_back(arrayOf({301}));
  for (std::uint16_t i = 301; i < 600; ++i) {
    joined.push_back(arrayOf({static_cast<std::uint16_t>(i + 1)}));
  }
  joined.push_back(arrayOf({}));
  std::string entities = "<plist><string>";
  for (int i = 0; i < 1'000'000; ++i)
    entities += "&amp;";
  entities += "</string></plist>";
  std::string values = "<plist><array>";
  for (int i = 0; i < 2'000'001; ++i)
    values += "<true/>";
  values += "</array></plist>";

  std::string keys = "<plist><dict>";
  for (int i = 0; i < 70'000; ++i)
    keys += "<key>" + std::to_string(i) + "</key><true/>";
  const std::string binaryKeys = binary(keys + "</dict></plist>");
  keys += "</dict></plist>";

  const std::vector<std::string> kLists = {
      "",
      "no list",
      "<plist>",
      "<plist><dict></plist></dict>",
      "<plist><array></dict></plist>",
      "<plist><!-- <array></array></plist>",
      "<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>",
      "<plist><string>&nosuch;</string></plist>",
      "<plist><dict><string>no key</string></dict></plist>",
      "<?><array><array>?><plist><true/></plist>",
      std::string("<plist><string>a\0b</string></plist>", 35),
      entities,
      values,
      keys,
      binaryKeys,
      "bplist00",
      std::string("bplist00") + std::string(32, '\xFF'),
      binaryOf({arrayOf({0})}),
      binaryOf({arrayOf({1}), arrayOf({2}), arrayOf({1})}),
      binaryOf({std::string("\xD1\x00\x01\x00\x00", 5), "\x51k"}),
      binaryOf({std::string("\xD1\x00\x01\x00\x02", 5), std::string("\x53k\0y", 4), "\x09"}),
      binaryOf({std::string("\xD1\x00\x01\x00\x02", 5), std::string("\x62\0k\0\0", 5), "\x09"}),
      binaryOf({arrayOf({9})}),
      binaryOf({"\x09"}, 5),
      binaryOf({"\x5F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}),
      binaryOf({"\x6F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}),
      binaryOf({"\xAF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}),
      binaryOf(doubling),
      binaryOf(repeated),
      binaryOf(joined),
  };
  for (const std::string& list : kLists) {
    LogCapture log;
    EXPECT_TRUE(PropertyList::parse(list, "hostile\n").isNull()) << list.substr(0, 100);
    ASSERT_EQ(log.lines().size(), 1U) << list.substr(0, 100);
    EXPECT_TRUE(log.lines()[0].starts_with("Cannot read property list hostile\\n: "));
  }
}

// Cuts and changes of good lists must never end the process, whatever they read as.
TEST(PropertyList, DamagedListsNeverEndTheProcess) {
  LogCapture log;
  std::mt19937 random(7);
  const std::string xml = sample().xml();
  for (const std::string& whole : {xml, binary(xml)}) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      PropertyList::parse(whole.substr(0, length), "cut");
    }
    for (int i = 0; i < 20'000; ++i) {
      std::string damaged = whole;
      for (std::uint32_t changes = random() % 4 + 1; changes > 0; --changes) {
        const std::size_t at = random() % damaged.size();
        switch (random() % 4) {
          case 0:
            damaged[at] = static_cast<char>(random());
            break;
          case 1:
            damaged[at] = static_cast<char>(damaged[at] ^ (1U << random() % 8));
            break;
          case 2:
            damaged.insert(at, damaged.substr(random() % damaged.size(), 20));
            break;
          default:
            damaged.erase(at, random() % 20);
        }
        if (damaged.empty()) damaged.push_back('<');
      }
      const PropertyList read = PropertyList::parse(damaged, "damaged");
      if (!read.isNull()) read.xml();
    }
  }
}

TEST(PropertyList, FilesThatAreNoneAreSkippedWithoutWaiting) {
  test::TemporaryFolder folder;
  const std::string fifo = folder / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string large = folder.sizedFile("large", (std::size_t{64} << 20U) + 1);
  LogCapture log;
  EXPECT_TRUE(PropertyList::read(folder / "missing").isNull());
  EXPECT_EQ(log.lines().size(), 0U);
  for (const std::string& path :
       {fifo, large, folder.path(), folder.link("loop", "loop"), std::string("/dev/zero")}) {
    EXPECT_TRUE(PropertyList::read(path).isNull()) << path;
  }
  EXPECT_EQ(log.lines().size(), 5U);
}

TEST(PropertyList, WritingInPlaceKeepsTheInodeAndRefusesLinks) {
  test::TemporaryFolder folder;
  const std::string path = folder.file("list", std::string(10'000, 'x'));
  const std::string other = folder / "other";
  std::filesystem::create_hard_link(path, other);
  ASSERT_TRUE(sample().writeInPlace(path));
  EXPECT_EQ(PropertyList::read(other), sample());

  const std::string made = folder / "made";
  ASSERT_TRUE(sample().writeInPlace(made));
  struct stat status;
  ASSERT_EQ(stat(made.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);

  const std::string target = folder.file("target", "precious");
  const std::string fifo = folder / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  LogCapture log;
  for (const std::string& refused : {folder.link("link", target), folder.link("dangling", "new"),
                                     fifo, folder.path(), folder / "no/such"}) {
    EXPECT_FALSE(sample().writeInPlace(refused)) << refused;
  }
  EXPECT_EQ(log.lines().size(), 5U);
  EXPECT_EQ(test::contentOf(target), "precious");
  EXPECT_FALSE(test::exists(folder / "new"));
}

}  // namespace
}  // namespace brisko
