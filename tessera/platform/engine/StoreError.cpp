#include "tessera/platform/engine/StoreError.h"

#include <utility>

namespace Platform {
namespace {

thread_local std::string lastText;

}  // namespace

DWORD setStoreError(DWORD error, std::string text) {
    SetLastError(error);
    lastText = std::move(text);
    return error;
}

const std::string& storeErrorText() {
    return lastText;
}

}  // namespace Platform
