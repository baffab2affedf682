#pragma once

#include <filesystem>

namespace testing_support {

/// Where to put files that need not outlive the test: into memory, where the system offers that. A disk that is waited
/// for again and again makes a test slow.
inline std::filesystem::path placeInMemory() {
    const std::filesystem::path shared = "/dev/shm";
    std::error_code none;
    return std::filesystem::is_directory(shared, none) ? shared : std::filesystem::temp_directory_path();
}

}  // namespace testing_support
