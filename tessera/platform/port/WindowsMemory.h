#pragma once

#include <memory>

#include "tessera/platform/port/WindowsSystem.h"

namespace Platform::port {

struct LocalFreeing {
    void operator()(void* memory) const { LocalFree(memory); }
};

/// Owns what the system has made and wants to be given back.
template <typename T>
using LocalPointer = std::unique_ptr<T, LocalFreeing>;

}  // namespace Platform::port
