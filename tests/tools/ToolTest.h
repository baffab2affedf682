#pragma once

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/ToolRunner.h"

namespace tool_test {

using Json = nlohmann::ordered_json;
using testing_support::Outcome;
using testing_support::ToolRunner;

/// The tool that was built with this test.
class Tool : public ToolRunner {
public:
    Tool() : ToolRunner(TESSERA_TOOL) {}

    /// The document that a command writes with --json; the command must exit with that status.
    template <class... Arguments>
    Json json(int status, Arguments... arguments) const {
        const Outcome outcome = (*this)("--json", arguments...);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        return Json::parse(outcome.out, nullptr, false);
    }
};

/// The names that the objects of an array have.
inline std::vector<std::string> namesIn(const Json& objects) {
    std::vector<std::string> names;
    for (const Json& object : objects)
        names.push_back(object.value("name", ""));
    return names;
}

inline std::vector<std::string> keysOf(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& entry : object.items())
        keys.push_back(entry.key());
    return keys;
}

/// A cell of a table: the text with blanks up to that many characters.
inline std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    for (const char ch : text) {
        if (ch != '\n') {
            line += ch;
            continue;
        }
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty()) lines.push_back(line);
    return lines;
}

/// A command failed for that reason: the status, nothing on standard output, and one line that says why.
inline void expectFailure(const Outcome& outcome, int status, const std::string& why) {
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, ::testing::StartsWith("tessera: "));
    EXPECT_THAT(outcome.err, ::testing::HasSubstr(why));
    EXPECT_EQ(linesOf(outcome.err).size(), 1u) << outcome.err;
}

}  // namespace tool_test
