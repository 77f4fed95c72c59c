#pragma once

#include <string>

namespace brisko::test {

/// Makes `folder` with pictures, films, documents and others of which there are copies.
void makeDemoDuplicates(const std::string& folder);

}  // namespace brisko::test
