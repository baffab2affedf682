#include <filesystem>
#include <system_error>

#include <gtest/gtest.h>

#include "tessera/platform/port/Paths.h"
#include "tests/platform/port/ScopedVariable.h"
#include "tests/platform/port/ScratchFolder.h"

namespace fs = std::filesystem;
using namespace Platform::port;

namespace {

fs::path absolute(const fs::path& file) {
    std::error_code error;
    const fs::path path = absolutePath(file, error);
    EXPECT_FALSE(error) << file;
    return path;
}

fs::path real(const fs::path& file) {
    std::error_code error;
    const fs::path path = realPath(file, error);
    EXPECT_FALSE(error) << file;
    return path;
}

}  // namespace

TEST(AbsolutePath, OfAnotherMachineIsOfThatMachine) {
    EXPECT_EQ(absolute(LR"(\\server\share\store.db)").native(), LR"(\\server\share\store.db)");
    EXPECT_EQ(absolute(L"//server/share/store.db").native(), LR"(\\server\share\store.db)");
    EXPECT_EQ(real(LR"(\\server\share\store.db)").native(), LR"(\\server\share\store.db)");
}

TEST(AbsolutePath, IsSpelledAsUsual) {
    EXPECT_EQ(absolute(LR"(\\?\C:\folder\store.db)").native(), LR"(C:\folder\store.db)");
    EXPECT_EQ(absolute(LR"(\\?\UNC\server\share\store.db)").native(), LR"(\\server\share\store.db)");
    EXPECT_EQ(absolute(L"C:/folder/../store.db").native(), LR"(C:\store.db)");
    EXPECT_EQ(absolute(LR"(C:\store.db. . )").native(), LR"(C:\store.db)");
}

TEST(AbsolutePath, OfNoNameIsAnError) {
    std::error_code error;
    EXPECT_EQ(absolutePath(fs::path(), error), fs::path());
    EXPECT_TRUE(error);
}

TEST(RealPath, HasTheNameThatTheSystemKeeps) {
    const ScratchFolder scratch;
    const fs::path file = scratch.withFile("Store.db", "content");

    EXPECT_EQ(real(scratch / "STORE.DB").native(), real(file).native());
    EXPECT_EQ(real(file).filename(), "Store.db");
    EXPECT_TRUE(fs::equivalent(real(file), file));
}

TEST(RealPath, WhatIsNotThereYetKeepsItsName) {
    const ScratchFolder scratch;

    EXPECT_EQ(real(scratch / "New" / "Store.db").native(), (real(scratch.path()) / "New" / "Store.db").native());
}

TEST(DefaultStorePath, IsBelowTheFolderForDataOfPrograms) {
    const auto placeWith = [](const char* folder) {
        const ScopedVariable data("LOCALAPPDATA", folder);
        return defaultStorePath().native();
    };

    EXPECT_EQ(placeWith(R"(C:\Data)"), LR"(C:\Data\Tessera\store.db)");
    EXPECT_EQ(placeWith(R"(\\server\home)"), LR"(\\server\home\Tessera\store.db)");
    EXPECT_EQ(placeWith("Data"), L"");
    EXPECT_EQ(placeWith(""), L"");
}
