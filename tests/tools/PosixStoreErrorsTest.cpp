// Folders in which a store cannot be made, or not without a word.

#include <filesystem>

#include "tests/tools/ToolTest.h"

using namespace tool_test;

TEST(ToolStore, CannotBeMadeWhereNobodyMayWrite) {
    const Tool tool;
    // Not even the administrator writes here.
    const std::filesystem::path store = "/proc/tessera-test/store.db";
    expectFailure(tool("--store", store.string(), "init"), 3, store.string());
    expectFailure(tool("--store", store.string(), "add", "--name", "Anna"), 3, store.string());
}

TEST(StoreAdvice, SaysWhatToDoAboutAFolderThatOthersMayWriteTo) {
    const Tool tool;
    std::filesystem::create_directory(tool / "shared");
    std::filesystem::permissions(tool / "shared", std::filesystem::perms::all);
    expectFailure(tool("--store", (tool / "shared/store.db").string(), "init"), 3, "TESSERA_SHARED_FOLDER=allow");
}
