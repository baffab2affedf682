#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

const fs::path root = TESSERA_SOURCE_DIR;

std::string contentsOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream contents;
    contents << stream.rdbuf();
    return contents.str();
}

/// What stands between "```cpp" and "```" for the first time; "" when nothing does.
std::string firstCppBlock(const std::string& text) {
    const std::string opening = "\n```cpp\n";
    const std::size_t begin = text.find(opening);
    if (begin == std::string::npos) return "";
    const std::size_t code = begin + opening.size();
    const std::size_t end = text.find("\n```\n", code);
    return end == std::string::npos ? "" : text.substr(code, end + 1 - code);
}

/// The files that a text links to, as written and without the place within them; not those on the web.
std::vector<std::string> linkedFiles(const std::string& text) {
    static const std::regex link(R"re(\]\(([^)#:\s]+)(#[^)]*)?\))re");
    std::vector<std::string> files;
    for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end; ++match)
        files.push_back((*match)[1]);
    return files;
}

void collectDocuments(const fs::path& folder, std::vector<fs::path>& documents) {
    if (!fs::exists(folder)) return;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".md") documents.push_back(entry.path());
}

std::vector<fs::path> documents() {
    std::vector<fs::path> all;
    for (const char* folder : {"docs", "tessera", "tools", "tests", "examples", "fuzz", "benchmarks"})
        collectDocuments(root / folder, all);
    for (const fs::directory_entry& entry : fs::directory_iterator(root))
        if (entry.path().extension() == ".md") all.push_back(entry.path());
    return all;
}

}  // namespace

TEST(Readme, ShowsTheExampleThatIsBuiltAndRun) {
    const std::string example = contentsOf(root / "examples/identify.cpp");

    ASSERT_FALSE(example.empty());
    EXPECT_EQ(firstCppBlock(contentsOf(root / "README.md")), example);
}

TEST(Documents, EveryLinkLeadsToAFile) {
    std::vector<std::string> broken;

    for (const fs::path& document : documents())
        for (const std::string& link : linkedFiles(contentsOf(document)))
            if (!fs::exists(document.parent_path() / link)) broken.push_back(document.string() + " -> " + link);

    EXPECT_THAT(broken, testing::IsEmpty());
}

TEST(FirstCppBlock, IsTheTextBetweenTheFences) {
    EXPECT_EQ(firstCppBlock("a\n```sh\nls\n```\n```cpp\nint i;\n\nint j;\n```\n```cpp\nno\n```\n"),
              "int i;\n\nint j;\n");
    EXPECT_EQ(firstCppBlock("no block\n"), "");
}

TEST(LinkedFiles, AreThoseOfTheTreeWithoutTheirAnchors) {
    EXPECT_THAT(linkedFiles("[a](docs/a.md) [b](../b.md#part) [c](https://c.org/) [d](#here)"),
                testing::ElementsAre("docs/a.md", "../b.md"));
}
