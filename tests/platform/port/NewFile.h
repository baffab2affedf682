#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tessera/platform/base/Results.h"
#include "tessera/platform/port/Paths.h"

/// A private file beside that one, with this in it.
inline std::filesystem::path newFileBeside(const std::filesystem::path& file, const std::string& content) {
    std::filesystem::path made;
    EXPECT_EQ(Platform::port::makePrivateFileBeside(file, made), ERROR_SUCCESS);
    std::ofstream(made) << content;
    return made;
}
