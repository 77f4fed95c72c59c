#pragma once

#include <QIcon>

#include <string>

namespace brisko {

/// The icon of an application: a name of the desktop's icon theme, or an absolute path. Looked for
/// once; null when there is none. Main thread only.
const QIcon& applicationIcon(const std::string& name);

}  // namespace brisko
