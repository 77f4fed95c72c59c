#pragma once

#include <array>
#include <memory>

namespace brisko {

class PageController;

enum class ModuleGroup { none, cleanup, tools, privacy };

/// One row of the sidebar and the page behind it.
struct Module {
  int index;          ///< the page's identifier everywhere
  const char* label;  ///< key of its name
  const char* icon;   ///< image names, used exactly as they stand here
  const char* selectedIcon;
  ModuleGroup group;
  const char* sentence;  ///< key of one sentence on what it does
  std::unique_ptr<PageController> (*createPage)();
};

/// All modules, in the order of the sidebar. A new one is one more row here.
const std::array<Module, 10>& moduleTable();

}  // namespace brisko
