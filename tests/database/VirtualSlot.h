#pragma once

#include <cstddef>

namespace testing_support {

// Calls of virtual operations by their place in the class, as a program built against the interface makes
// them: not by name. In the Itanium C++ ABI the destructor, slot 0, takes two entries of the table, the
// complete one and the deleting one; slot k follows at entry k + 1.

inline void* entryOf(const void* object, std::size_t entry) {
    void* const* const table = *static_cast<void* const* const*>(object);
    return table[entry];
}

/// A member function is called as a function whose first parameter is the object.
template <class Result, class... Parameters, class Object>
Result callSlot(Object* object, std::size_t slot, Parameters... arguments) {
    using Operation = Result (*)(Object*, Parameters...);
    return reinterpret_cast<Operation>(entryOf(object, slot + 1))(object, static_cast<Parameters>(arguments)...);
}

template <class Object>
void deleteThroughSlot(Object* object) {
    using Destructor = void (*)(Object*);
    constexpr std::size_t deletingEntry = 1;
    reinterpret_cast<Destructor>(entryOf(object, deletingEntry))(object);
}

}  // namespace testing_support
