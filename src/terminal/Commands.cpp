#include "Commands.h"

#include "AppsCommand.h"
#include "BrowsersCommand.h"
#include "CheckUpdateCommand.h"
#include "CloseCommand.h"
#include "DiskCommand.h"
#include "DisksCommand.h"
#include "DuplicatesCommand.h"
#include "JunkCommand.h"
#include "LargeCommand.h"
#include "LoginItemsCommand.h"
#include "ProcessesCommand.h"
#include "RelatedCommand.h"
#include "ShredCommand.h"
#include "SmartCommand.h"
#include "StatusCommand.h"
#include "SwitchCommand.h"
#include "UninstallCommand.h"

namespace brisko {
namespace {

using Maker = std::unique_ptr<Command> (*)();

template <typename Kind>
std::unique_ptr<Command> make() {
  return std::make_unique<Kind>();
}

constexpr Maker kMakers[] = {
    make<StatusCommand>,
    make<JunkCommand>,
    make<AppsCommand>,
    make<RelatedCommand>,
    make<UninstallCommand>,
    make<DuplicatesCommand>,
    make<LargeCommand>,
    make<DisksCommand>,
    make<DiskCommand>,
    make<SmartCommand>,
    make<ProcessesCommand>,
    make<CloseCommand>,
    make<LoginItemsCommand>,
    make<BrowsersCommand>,
    make<ShredCommand>,
    make<SwitchCommand>,
    make<CheckUpdateCommand>,
};

}  // namespace

std::vector<std::unique_ptr<Command>> makeCommands() {
  std::vector<std::unique_ptr<Command>> commands;
  for (const Maker maker : kMakers)
    commands.push_back(maker());
  return commands;
}

}  // namespace brisko
