#pragma once

namespace brisko::srm {

/// Overwrites the values of a file's or folder's extended attributes by random bytes of the same
/// length, flushes them, and removes the attributes. What the system keeps for itself ("system.",
/// "security.") holds nothing of the user's and stays. 0, or errno's value of the first that could
/// not be overwritten.
int eraseExtendedAttributes(int file);

}  // namespace brisko::srm
