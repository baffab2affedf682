#include <fstream>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/layering/IncludeRules.h"
#include "tests/layering/SourceTree.h"

using Layering::Include;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::filesystem::path root = TESSERA_SOURCE_DIR;
constexpr const char* scannedFolders[] = {"tessera", "tools", "examples"};

std::set<std::string> installedHeaders() {
    std::set<std::string> headers;
    std::ifstream list(TESSERA_INSTALLED_HEADERS_LIST);
    for (std::string line; std::getline(list, line);)
        headers.insert(std::filesystem::relative(line, root).generic_string());
    return headers;
}

Include ours(const std::string& file, const std::string& target) {
    return {.file = file, .line = 1, .target = target, .isOurs = true, .isFound = true};
}

Include foreign(const std::string& file, const std::string& target) {
    return {.file = file, .line = 1, .target = target};
}

const std::set<std::string> installedInTheseTests = {"tessera/platform/base/CString.h",
                                                     "tessera/platform/objectstore/CeDB.h", "tessera/database/Table.h",
                                                     "tessera/phonebook/PhoneBookDBMgr.h"};

std::string objectionTo(const Include& include) {
    return Layering::objectionTo(include, installedInTheseTests);
}

}  // namespace

TEST(SourceTree, EveryIncludeFollowsTheTableOfLayers) {
    const std::set<std::string> installed = installedHeaders();
    std::vector<std::string> objections;

    for (const char* folder : scannedFolders)
        for (const Include& include : Layering::findingsBelow(root / folder, root).includes)
            if (std::string objection = Layering::objectionTo(include, installed); !objection.empty())
                objections.push_back(std::move(objection));

    EXPECT_THAT(objections, IsEmpty());
}

TEST(SourceTree, OnlyThePortAsksForTheSystem) {
    std::vector<std::string> objections;

    for (const char* folder : scannedFolders)
        for (const auto& condition : Layering::findingsBelow(root / folder, root).conditions)
            if (std::string objection = Layering::objectionTo(condition); !objection.empty())
                objections.push_back(std::move(objection));

    EXPECT_THAT(objections, IsEmpty());
}

TEST(SourceTree, TheScanSeesTheLibrary) {
    const Layering::Findings findings = Layering::findingsBelow(root / "tessera", root);

    std::set<std::string_view> layers;
    for (const Include& include : findings.includes)
        layers.insert(Layering::layerOf(include.file));

    EXPECT_THAT(layers, testing::IsSupersetOf({"tessera/platform/base", "tessera/platform/objectstore"}));
}

TEST(SourceTree, EveryInstalledHeaderExists) {
    const std::set<std::string> installed = installedHeaders();

    EXPECT_FALSE(installed.empty());
    for (const std::string& header : installed)
        EXPECT_TRUE(std::filesystem::exists(root / header)) << header;
}

TEST(IncludeRules, AnIncludePointsDown) {
    EXPECT_EQ(objectionTo(ours("tessera/database/Table.cpp", "tessera/platform/base/CString.h")), "");
    EXPECT_EQ(objectionTo(ours("tessera/database/Table.cpp", "tessera/phonebook/model/PBRecord.h")), "");
    EXPECT_EQ(objectionTo(ours("tessera/phonebook/Records.cpp", "tessera/database/Table.h")), "");
    EXPECT_EQ(objectionTo(ours("tessera/platform/engine/Record.h", "tessera/platform/port/Paths.h")), "");
    EXPECT_EQ(objectionTo(ours("tessera/platform/objectstore/Store.cpp", "tessera/platform/engine/Record.h")), "");
    EXPECT_EQ(objectionTo(ours("tools/tessera/Main.cpp", "tessera/phonebook/PhoneBookDBMgr.h")), "");
    EXPECT_EQ(objectionTo(ours("tools/tessera/Main.cpp", "tools/tessera/port/Shell.h")), "");
}

TEST(IncludeRules, NothingPointsUp) {
    EXPECT_THAT(objectionTo(ours("tessera/platform/base/CString.h", "tessera/database/Table.h")),
                HasSubstr("tessera/platform/base may not include tessera/database/Table.h"));
    EXPECT_NE(objectionTo(ours("tessera/database/Table.cpp", "tessera/phonebook/PhoneBookDBMgr.h")), "");
    EXPECT_NE(objectionTo(ours("tessera/phonebook/model/PBRecord.cpp", "tessera/database/Table.h")), "");
    EXPECT_NE(objectionTo(ours("tessera/database/schema/AttrDef.h", "tessera/phonebook/model/PBRecord.h")), "");
    EXPECT_NE(objectionTo(ours("tessera/platform/windows/CWnd.cpp", "tessera/platform/objectstore/CeDB.h")), "");
    EXPECT_NE(objectionTo(ours("tessera/common/ValueList.cpp", "tessera/platform/objectstore/CeDB.h")), "");
    EXPECT_NE(objectionTo(ours("tessera/platform/port/Paths.cpp", "tessera/platform/base/CString.h")), "");
    EXPECT_NE(objectionTo(ours("tools/tessera/port/PosixShell.cpp", "tools/tessera/System.h")), "");
}

TEST(IncludeRules, NobodyLooksIntoThePlatformFromAbove) {
    EXPECT_NE(objectionTo(ours("tessera/database/Table.cpp", "tessera/platform/engine/Record.h")), "");
    EXPECT_NE(objectionTo(ours("tessera/database/Table.cpp", "tessera/platform/port/Paths.h")), "");
    EXPECT_NE(objectionTo(ours("tessera/phonebook/Records.cpp", "tessera/platform/objectstore/Store.h")), "");
    EXPECT_NE(objectionTo(ours("tools/tessera/Main.cpp", "tessera/database/RowOrder.h")), "");
    EXPECT_NE(objectionTo(ours("tools/tessera/port/PosixFiles.cpp", "tessera/platform/port/Paths.h")), "");
    EXPECT_NE(objectionTo(ours("examples/identify.cpp", "tessera/platform/port/Paths.h")), "");
}

TEST(IncludeRules, AnInstalledHeaderIncludesOnlyInstalledOnes) {
    EXPECT_THAT(objectionTo(ours("tessera/platform/objectstore/CeDB.h", "tessera/platform/engine/Record.h")),
                HasSubstr("not installed"));
    EXPECT_NE(objectionTo(ours("tessera/database/Table.h", "tessera/database/RowOrder.h")), "");
    EXPECT_EQ(objectionTo(ours("tessera/database/Table.cpp", "tessera/database/RowOrder.h")), "");
}

TEST(IncludeRules, AHeaderThatIsNotThereIsReported) {
    Include include = ours("tessera/database/Table.cpp", "tessera/database/Gone.h");
    include.isFound = false;

    EXPECT_THAT(objectionTo(include), HasSubstr("there is no header tessera/database/Gone.h"));
}

TEST(IncludeRules, StorageAndTextLibrariesStayInPrivateFilesOfThePlatform) {
    EXPECT_EQ(objectionTo(foreign("tessera/platform/engine/SqliteEngine.cpp", "sqlite3.h")), "");
    EXPECT_EQ(objectionTo(foreign("tessera/platform/port/Locale.cpp", "unicode/coll.h")), "");
    EXPECT_NE(objectionTo(foreign("tessera/platform/base/CString.h", "unicode/ustring.h")), "");
    EXPECT_NE(objectionTo(foreign("tessera/database/Table.cpp", "sqlite3.h")), "");
    EXPECT_NE(objectionTo(foreign("tools/tessera/Main.cpp", "sqlite3.h")), "");
}

TEST(IncludeRules, OfTheToolOnlyThePortAndTheExchangeKnowTextLibraries) {
    EXPECT_EQ(objectionTo(foreign("tools/tessera/port/IcuEncodings.cpp", "unicode/ucnv.h")), "");
    EXPECT_NE(objectionTo(foreign("tools/tessera/exchange/Encoding.cpp", "unicode/ucnv.h")), "");
    EXPECT_EQ(objectionTo(foreign("tools/tessera/exchange/CsvReader.cpp", "csv.h")), "");
    EXPECT_NE(objectionTo(foreign("tools/tessera/Main.cpp", "unicode/ucnv.h")), "");
    EXPECT_NE(objectionTo(foreign("tools/tessera/Main.cpp", "csv.h")), "");
}

TEST(IncludeRules, TheOperatingSystemIsCalledInThePortOnly) {
    EXPECT_EQ(objectionTo(foreign("tessera/platform/port/Paths.cpp", "sys/stat.h")), "");
    EXPECT_EQ(objectionTo(foreign("tools/tessera/port/PosixShell.cpp", "unistd.h")), "");
    EXPECT_NE(objectionTo(foreign("tools/tessera/System.cpp", "unistd.h")), "");
    EXPECT_NE(objectionTo(foreign("tessera/platform/base/CFile.cpp", "unistd.h")), "");
    EXPECT_NE(objectionTo(foreign("tessera/phonebook/Import.cpp", "fcntl.h")), "");
    EXPECT_EQ(objectionTo(foreign("tessera/phonebook/Import.cpp", "vector")), "");
    EXPECT_NE(Layering::objectionTo(Layering::SystemCondition{"tessera/platform/base/CFile.cpp", 1, "_WIN32"}), "");
    EXPECT_EQ(Layering::objectionTo(Layering::SystemCondition{"tessera/platform/port/Paths.cpp", 1, "_WIN32"}), "");
}

TEST(SourceText, IncludesAndConditionsAreFoundWhereTheyStand) {
    const std::string text =
        "#pragma once\n"
        "#include <vector>\n"
        "  #  include \"tests/layering/IncludeRules.h\"  // ours\n"
        "#if defined(_WIN32) || FOO\n"
        "#elif defined(__linux__)\n"
        "#endif\n";

    const Layering::Findings findings = Layering::findingsIn(text, "tests/layering/Sample.h", root);

    ASSERT_EQ(findings.includes.size(), 2U);
    EXPECT_EQ(findings.includes[0].target, "vector");
    EXPECT_FALSE(findings.includes[0].isOurs);
    EXPECT_EQ(findings.includes[1].target, "tests/layering/IncludeRules.h");
    EXPECT_TRUE(findings.includes[1].isOurs && findings.includes[1].isFound);
    EXPECT_EQ(findings.includes[1].line, 3);
    ASSERT_EQ(findings.conditions.size(), 2U);
    EXPECT_EQ(findings.conditions[0].macro, "_WIN32");
    EXPECT_EQ(findings.conditions[1].line, 5);
}

TEST(SourceText, AHeaderBesideTheFileIsNamedByItsPlaceInTheTree) {
    const auto findings = Layering::findingsIn("#include \"IncludeRules.h\"\n", "tests/layering/Sample.cpp", root);

    ASSERT_EQ(findings.includes.size(), 1U);
    EXPECT_EQ(findings.includes[0].target, "tests/layering/IncludeRules.h");
}

TEST(SourceText, CommentsAreNotRead) {
    const std::string text =
        "// #include \"tessera/database/Gone.h\"\n"
        "/* #ifdef _WIN32\n"
        "#include <sqlite3.h> */ #include <map>\n"
        "const char* link = \"http://nowhere\";\n"
        "#include <set>\n";

    const Layering::Findings findings = Layering::findingsIn(text, "tests/layering/Sample.cpp", root);

    ASSERT_EQ(findings.includes.size(), 2U);
    EXPECT_EQ(findings.includes[0].target, "map");
    EXPECT_EQ(findings.includes[1].line, 5);
    EXPECT_TRUE(findings.conditions.empty());
}
