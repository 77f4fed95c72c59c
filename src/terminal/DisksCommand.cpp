#include "DisksCommand.h"

#include "DisksReport.h"
#include "Interruption.h"
#include "Output.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace brisko {

void DisksCommand::declare(CLI::App& app) {
  app.add_option("ID", id_, "Only this disk or volume, in detail: an identifier such as sda1");
}

int DisksCommand::execute(const GlobalOptions& global) {
  const DiskListing listing = DiskListing::take();
  if (Interruption::happened()) return kInterrupted;
  if (id_.empty()) {
    listing.writeComplaints();
    const bool written =
        writeOut(global.json ? documentText(disksDocument(listing)) : disksText(listing));
    return written ? kDone : kNotDone;
  }
  const DiskNode node = listing.nodeNamed(id_, false);
  if (!node) return kNotDone;
  const bool written =
      writeOut(global.json ? documentText(diskDocument(listing, *node)) : diskText(listing, *node));
  return written ? kDone : kNotDone;
}

}  // namespace brisko
