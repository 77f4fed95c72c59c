#pragma once

#include "Command.h"
#include "DiskAndVolumeObj.h"

#include <string>

namespace brisko {

struct DiskCommandEnd;
struct DiskListing;
struct FormatPlan;

/// "brisko disk": renames, formats and ejects, where the window offers that too. Afterwards it
/// looks whether anything has changed, whatever the disk tool said.
class DiskCommand : public Command {
 public:
  const char* name() const override { return "disk"; }
  const char* summary() const override { return "Rename, format or eject a volume"; }
  void declare(CLI::App& app) override;
  int execute(const GlobalOptions& global) override;

 private:
  int rename(const DiskListing& listing, const DiskNode& node, const GlobalOptions& global) const;
  int format(const DiskListing& listing, const DiskNode& node, const GlobalOptions& global) const;
  int eject(const DiskListing& listing, const DiskNode& node, const GlobalOptions& global) const;
  FormatPlan formatPlan(const DiskAndVolumeObj& node) const;
  bool userConfirmsFormat(const DiskAndVolumeObj& node, const FormatPlan& plan,
                          const GlobalOptions& global) const;

  CLI::App* rename_ = nullptr;
  CLI::App* format_ = nullptr;
  CLI::App* eject_ = nullptr;
  std::string id_;
  std::string newName_;
  std::string type_;
  std::string formatName_;
  std::string confirmation_;
};

}  // namespace brisko
