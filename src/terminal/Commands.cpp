#include "Commands.h"

#include "CheckUpdateCommand.h"
#include "CloseCommand.h"
#include "DuplicatesCommand.h"
#include "JunkCommand.h"
#include "LoginItemsCommand.h"
#include "DiskCommand.h"
#include "DisksCommand.h"
#include "DuplicatesCommand.h"
#include "JunkCommand.h"
#include "SmartCommand.h"
#include "LargeCommand.h"
#include "ShredCommand.h"
#include "AppsCommand.h"
#include "DuplicatesCommand.h"
#include "JunkCommand.h"
#include "RelatedCommand.h"
#include "UninstallCommand.h"
#include "ProcessesCommand.h"
#include "StatusCommand.h"

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
    make<ProcessesCommand>,
    make<CloseCommand>,
    make<LoginItemsCommand>,
    make<CheckUpdateCommand>,
    make<JunkCommand>, make<DuplicatesCommand>, make<DisksCommand>,
    make<DiskCommand>, make<SmartCommand>,
    make<LargeCommand>,
    make<ShredCommand>,
};

}  // namespace

std::vector<std::unique_ptr<Command>> makeCommands() {
  std::vector<std::unique_ptr<Command>> commands;
  for (const Maker maker : kMakers)
    commands.push_back(maker());
  return commands;
}

}  // namespace brisko
