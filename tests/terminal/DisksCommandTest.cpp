#include "MadeDisks.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace brisko::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class DisksCommandTest : public testing::Test {
 protected:
  DisksCommandTest() : disks(folder.folder("disks")) {
    auto stick = MadeDisks::volume("Stick", 4'000'000'000);
    stick["Ejectable"] = true;
    auto drive = MadeDisks::disk("Stick Drive", 8'000'000'000);
    drive["Ejectable"] = true;
    disks.setDetails("sda1", MadeDisks::volume("System", 90'000'000'000));
    disks.setDetails("sdb1", stick);
    disks.addDisk("sda", MadeDisks::disk("Inner \x1B[31m", 100'000'000'000), {"sda1"});
    disks.addDisk("sdb", drive, {"sdb1"});
    folder.folder("root/Volumes/Stick");
    folder.folder("root/Volumes/System");
  }
  Outcome run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--root", folder / "root"});
    return program().run(arguments);
  }
  Program program() {
    Program program;
    program.variable("BRISKO_TOOLS", disks.tools()).variable("XDG_RUNTIME_DIR", disks.runtime());
    return program;
  }
  /// What the tool is made to do: put other details in the place of the volume's.
  void change(const char* verb, MadeDisks::Fields into) {
    disks.setDetails("changed", std::move(into));
    const std::string from = disks.detailsFile("changed");
    disks.setAction(verb, "sed s/changed/sdb1/ " + from + " > " + disks.detailsFile("sdb1"));
  }
  std::vector<std::string> operations() {
    std::vector<std::string> found;
    for (const std::string& call : disks.calls())
      if (!call.starts_with("<list>") && !call.starts_with("<info>")) found.push_back(call);
    return found;
  }
  /// One line on standard error that says `text`.
  static void expectRefused(const Outcome& outcome, int status, const char* text) {
    EXPECT_EQ(outcome.status, status) << outcome.errors;
    EXPECT_EQ(outcome.errorLines(), 1U) << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr(text));
  }

  TemporaryFolder folder;
  MadeDisks disks;
};

TEST_F(DisksCommandTest, theTreeAsTextAndAsADocument) {
  const Outcome text = run({"disks"});
  EXPECT_EQ(text.status, 0);
  EXPECT_THAT(text.output, HasSubstr("Inner \\x1B[31m"));
  EXPECT_THAT(text.output, HasSubstr("  sdb1     4.00 GB  Stick"));
  const auto json = run({"disks", "--json"}).json();
  ASSERT_EQ(json["disks"].size(), 2U);
  const auto& disk = json["disks"][1];
  EXPECT_EQ(disk["diskId"], "sdb");
  EXPECT_EQ(disk["isDisk"], true);
  EXPECT_EQ(disk["chrCount"], 1);
  const auto& volume = disk["chrArr"][0];
  EXPECT_EQ(volume["volumeName"], "Stick");
  EXPECT_EQ(volume["nFreeSize"], 1'000'000'000);
  EXPECT_EQ(volume["diskMount"], "/Volumes/Stick");
  const auto one = run({"disks", "/dev/sdb1", "--json"}).json();
  EXPECT_EQ(one["disks"][0]["diskId"], "sdb1");
  EXPECT_EQ(one["detail"]["usage"]["percent"], 75);
  EXPECT_EQ(one["offers"], (nlohmann::json{{"rename", true}, {"format", true}, {"eject", true}}));
  EXPECT_THAT(run({"disks", "sda1"}).output, HasSubstr("Offered:            rename\n"));
  expectRefused(run({"disks", "sdz"}), 1, "no disk or volume \"sdz\"");
}

TEST_F(DisksCommandTest, aRenameIsLookedAtAfterwards) {
  expectRefused(run({"disk", "rename", "sdb1", "Other"}), 1, "\"Stick\" was not renamed");
  EXPECT_THAT(operations(), ElementsAre("<rename><1234-ABCD><Other>"));
  disks.setAction("rename", "echo 'diskutil: it is read-only' >&2; exit 1");
  expectRefused(run({"disk", "rename", "sdb1", "Other"}), 1, "diskutil: it is read-only");
  change("rename", MadeDisks::volume("Other", 4'000'000'000));
  const Outcome done = run({"disk", "rename", "sdb1", "Other", "--json"});
  EXPECT_EQ(done.status, 0) << done.errors;
  EXPECT_EQ(done.json()["done"], true);
}

TEST_F(DisksCommandTest, whatIsNotOfferedIsNotDone) {
  expectRefused(run({"disk", "rename", "sda", "x"}), 1, "cannot be renamed");
  expectRefused(run({"disk", "format", "sda1", "--type", "ExFAT", "--yes", "--confirm", "System"}),
                1, "cannot be formatted");
  expectRefused(run({"disk", "eject", "sda1"}), 1, "cannot be ejected");
  expectRefused(run({"disk", "eject", "sdz"}), 1, "no disk or volume");
  const std::string tooLong(120, 'x');
  expectRefused(run({"disk", "rename", "sdb1", tooLong}), 2, "it has 120 characters, and 99 fit");
  expectRefused(run({"disk", "format", "sdb1", "--type", "ExFAT", "--name", tooLong, "--yes",
                     "--confirm", "Stick"}),
                2, "it has 120 characters, and 84 fit");
  expectRefused(run({"disk", "format", "sdb1", "--type", "XFS", "--yes", "--confirm", "Stick"}), 2,
                "no type \"XFS\"");
  expectRefused(run({"disk", "rename", "sdb1", ""}), 2, "give a name");
  EXPECT_THAT(operations(), IsEmpty());
}

TEST_F(DisksCommandTest, aFormatIsConfirmedTwice) {
  const std::vector<std::string> format = {"disk",  "format", "sdb1", "--type",
                                           "exfat", "--name", "Fresh"};
  const auto with = [&](std::vector<std::string> more) {
    more.insert(more.begin(), format.begin(), format.end());
    return run(more);
  };
  expectRefused(with({}), 2, "--yes and --confirm NAME");
  expectRefused(with({"--yes"}), 2, "--yes and --confirm NAME");
  expectRefused(with({"--confirm", "Stick"}), 2, "--yes and --confirm NAME");
  expectRefused(with({"--yes", "--confirm", "stick"}), 1, "not confirmed by its name");
  const Outcome plan = with({"--dry-run"});
  EXPECT_EQ(plan.output, "Would run: diskutil eraseVolume \"ExFAT\" \"Fresh\" \"/dev/sdb1\"\n");
  EXPECT_THAT(operations(), IsEmpty());
  expectRefused(with({"--yes", "--confirm", "Stick"}), 1, "was not formatted");
  auto fresh = MadeDisks::volume("Fresh", 4'000'000'000);
  fresh["VolumeUUID"] = "9999-0000";
  change("eraseVolume", fresh);
  const Outcome done = with({"--yes", "--confirm", "Stick"});
  EXPECT_EQ(done.status, 0) << done.errors;
  EXPECT_THAT(done.output, HasSubstr("sdb1 is now ExFAT, named \"Fresh\""));
  EXPECT_THAT(operations(), Contains("<eraseVolume><ExFAT><Fresh></dev/sdb1>").Times(2));
}

TEST_F(DisksCommandTest, onATerminalBothQuestionsAreAsked) {
  const std::vector<std::string> arguments = {"--root", folder / "root", "disk", "format",
                                              "sdb1",   "--type",        "ExFAT"};
  const Outcome no = program().terminal().input("n\n").run(arguments);
  EXPECT_EQ(no.status, 1);
  const Outcome wrong = program().terminal().input("y\nSystem\n").run(arguments);
  EXPECT_EQ(wrong.status, 1);
  EXPECT_THAT(wrong.output, HasSubstr("Type the volume's name"));
  EXPECT_THAT(operations(), IsEmpty());
  program().terminal().input("y\nStick\n").run(arguments);
  EXPECT_THAT(operations(), ElementsAre("<eraseVolume><ExFAT><NEW></dev/sdb1>"));
}

TEST_F(DisksCommandTest, anEjectedDiskIsGone) {
  expectRefused(run({"disk", "eject", "sdb"}), 1, "\"Stick\" was not ejected");
  disks.setAction("eject", "rm " + disks.detailsFile("sdb1"));
  const Outcome done = run({"disk", "eject", "sdb"});
  EXPECT_EQ(done.status, 0) << done.errors;
  EXPECT_THAT(operations(), ElementsAre("<eject></dev/sdb1>", "<eject></dev/sdb1>"));
}

TEST_F(DisksCommandTest, aToolThatDoesNotAnswerAfterwardsClaimsNothing) {
  const std::string tool = disks.tools() + "/diskutil";
  const std::string silence = "mv " + tool + " " + tool + ".away";
  disks.setAction("rename", silence);
  expectRefused(run({"disk", "rename", "sdb1", "Other"}), 1, "was renamed is not known");
  std::filesystem::rename(tool + ".away", tool);
  disks.setAction("eject", silence);
  expectRefused(run({"disk", "eject", "sdb"}), 1, "was not ejected");
}

TEST_F(DisksCommandTest, aMissingToolIsSaidAndNothingIsListed) {
  std::filesystem::remove(disks.tools() + "/diskutil");
  const Outcome outcome = run({"disks", "--json"});
  EXPECT_THAT(outcome.errors, HasSubstr("diskutil"));
  EXPECT_EQ(outcome.json()["disks"].size(), 0U);
}

TEST_F(DisksCommandTest, aSavedSectorIsDecoded) {
  std::string sector(512, '\0');
  const auto record = [&](std::size_t index, char id, std::string_view raw) {
    sector[2 + 12 * index] = id;
    sector.replace(2 + 12 * index + 5, raw.size(), raw);
  };
  record(0, 9, {"\x10\x27\x00\x05", 4});
  record(7, 12, "\x07");
  record(29, '\xC2', "\xE7");
  const std::string file = folder.file("sector", sector);
  EXPECT_EQ(run({"smart", "--sector", file, "--json"}).json(),
            (nlohmann::json{
                {"iTemperature", -25}, {"u64PowerOnHour", 10'000}, {"u64PowerCycleCount", 7}}));
  EXPECT_THAT(run({"smart", "--sector", file}).output, HasSubstr("10,000"));
  for (const std::string& wrong :
       {folder.file("short", sector.substr(1)), folder.file("long", sector + "x"),
        folder.file("empty"), folder / "missing", folder.folder("folder")}) {
    expectRefused(run({"smart", "--sector", wrong}), 2, wrong.c_str());
  }
  expectRefused(run({"smart", "--device", "none-such"}), 1, "no drive \"none-such\"");
}

}  // namespace
}  // namespace brisko::test
