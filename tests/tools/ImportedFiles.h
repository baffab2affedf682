#pragma once

#include <string>
#include <vector>

#include "tests/tools/ToolTest.h"

namespace tool_test {

/// A file as a phone or another program writes it.
inline std::string foreignFile(const std::string& name) {
    return std::string(FOREIGN_FILES) + "/" + name;
}

/// The contacts of the phone book, in the order of their names, without their identifiers.
inline Json contactsIn(const Tool& tool) {
    Json contacts = tool.json(0, "list");
    for (Json& contact : contacts) {
        contact.erase("oid");
        // Goes with every other field that only our phone book has.
        if (contact.contains("private") && contact["private"] == 0) contact.erase("private");
    }
    return contacts;
}

inline std::vector<Json> objectsOf(const std::string& lines) {
    std::vector<Json> objects;
    for (const std::string& line : linesOf(lines))
        objects.push_back(Json::parse(line));
    return objects;
}

/// A command is refused before it touches the phone book.
inline void expectRefusal(const Tool& tool, const std::vector<std::string>& arguments, int status,
                          const std::string& why) {
    expectFailure(run(tool.command(arguments)), status, why);
    EXPECT_FALSE(exists(tool.store())) << why;
}

}  // namespace tool_test
