#include "tessera/platform/engine/StoreError.h"

#include <utility>

#include "tessera/platform/port/ThreadLocal.h"

namespace Platform {
namespace {

struct LastText {
    std::string text;
};

std::string& lastText() {
    return port::ofThisThread<LastText>().text;
}

}  // namespace

DWORD setStoreError(DWORD error, std::string text) {
    SetLastError(error);
    lastText() = std::move(text);
    return error;
}

const std::string& storeErrorText() {
    return lastText();
}

}  // namespace Platform
