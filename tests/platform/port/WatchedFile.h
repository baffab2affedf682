#pragma once

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/support/TemporaryStore.h"

class FileWatchTest : public testing::Test {
protected:
    FileWatchTest() { std::ofstream(file()) << "contents"; }
    std::filesystem::path file() const { return folder_ / "watched"; }

private:
    testing_support::TemporaryFolder folder_;
};
