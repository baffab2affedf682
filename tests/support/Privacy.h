#pragma once

#include <filesystem>

namespace testing_support {

/// Whether a file or folder is for its owner only and, on Windows, for the system and its administrators.
bool isPrivate(const std::filesystem::path& path);

}  // namespace testing_support
