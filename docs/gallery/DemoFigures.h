#pragma once

#include "SystemSampler.h"

namespace brisko {
struct Host;
}

namespace brisko::test {

/// A laptop with `cores` cores that is worked at: second by second, always the same.
SystemSample demoSample(int second, int cores = 8);

/// Lets `host` tell that laptop's identity, and no figures of its own.
void installDemoFigures(Host& host);

}  // namespace brisko::test
