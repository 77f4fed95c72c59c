#pragma once

namespace brisko {

class DesktopEntryText;

/// Makes an autostart entry start its program without a window in front, or as usual again. Only
/// programs that are known to have an option for it can; other entries stay as they are.
void startHidden(DesktopEntryText& entry, bool isHidden);

}  // namespace brisko
