#pragma once

#include "PropertyList.h"

#include <string>
#include <vector>

namespace brisko::test {

/// A disk tool whose answers a test writes down: a private tools folder with a "diskutil" that
/// prints recorded property lists, and notes every command line it was started with.
class MadeDisks {
 public:
  using Fields = PropertyList::Dictionary;

  /// Everything lies below `folder`, which must exist.
  explicit MadeDisks(std::string folder);

  /// For the variable BRISKO_TOOLS.
  std::string tools() const { return folder_ + "/tools"; }
  /// For the variable XDG_RUNTIME_DIR: where the program keeps its fixed files.
  std::string runtime() const { return folder_ + "/run"; }

  /// Adds an entry to the listing, with its partitions under `key`, and the details of `id`.
  void addDisk(const std::string& id, Fields details, const std::vector<std::string>& partitions,
               const char* key = "Partitions");
  /// The details of a device.
  void setDetails(const std::string& id, Fields details);
  /// The answer to "apfs list".
  void setContainers(PropertyList::Array containers);
  /// Shell lines that the tool runs for this verb ("rename", "eject", …); $1 is the verb.
  void setAction(const std::string& verb, const std::string& shell);
  /// The file that is printed for a device; to be written over by an action.
  std::string detailsFile(const std::string& id) const;
  /// The listing as it is printed: to be broken by a test.
  std::string listingFile() const { return folder_ + "/list.plist"; }

  /// One line for each start: the arguments, each in angle brackets.
  std::vector<std::string> calls() const;

  /// A disk and a volume as the tool describes them; to be changed by the test.
  static Fields disk(const std::string& mediaName, std::uint64_t size);
  static Fields volume(const std::string& name, std::uint64_t size);

 private:
  void writeListing() const;

  std::string folder_;
  PropertyList::Array entries_;
};

}  // namespace brisko::test
