#include "tessera/platform/port/LockHolder.h"

namespace Platform::port {

std::optional<Process> lockHolder(const std::filesystem::path&, std::uint64_t) {
    return std::nullopt;  // the system does not tell who has locked a part of a file
}

}  // namespace Platform::port
