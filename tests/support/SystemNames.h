#pragma once

#include <filesystem>
#include <string>

// What is named differently on each system. Texts are UTF-8.

namespace testing_support {

/// A file name with all in it that is hard and that the system allows.
extern const std::string boldFileName;
/// What TZ says for Seoul, nine hours before Greenwich.
extern const std::string zoneOfSeoul;

/// What a message about a store that this process keeps locked says of it behind "another program", where the system
/// tells who keeps a lock.
std::string asHolderOfALock(const std::string& program);

inline std::filesystem::path pathOf(const std::string& utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

}  // namespace testing_support
