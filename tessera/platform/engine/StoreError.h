#pragma once

#include <string>

#include "tessera/platform/base/Results.h"

namespace Platform {

/// Makes `error` the thread's last platform error, with a sentence for people that names the file.
/// Answers `error`, so that a failing call can say why and return in one step.
DWORD setStoreError(DWORD error, std::string text);

/// The sentence of the thread's last store error; empty when there was none.
const std::string& storeErrorText();

}  // namespace Platform
