#pragma once

namespace brisko {

/// One file of resources/ as it was when the program was built.
struct EmbeddedResource {
  const char* name;  ///< its path below resources/; null ends the table
  const char* begin;
  const char* end;
};

/// All of them, sorted by name.
const EmbeddedResource* embeddedResources();

}  // namespace brisko
