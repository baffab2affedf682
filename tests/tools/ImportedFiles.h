#pragma once

#include <string>
#include <vector>

#include "tests/tools/CardText.h"
#include "tests/tools/ToolTest.h"

namespace tool_test {

using testing_support::vcard;

/// A file as a phone or another program writes it.
inline std::string foreignFile(const std::string& name) {
    return std::string(FOREIGN_FILES) + "/" + name;
}

/// So many of one group.
inline std::string fileOfPeople(int count) {
    std::string text = "Name,Group\n";
    for (int person = 1; person <= count; ++person)
        text += "Person " + std::to_string(person) + ",친구,,010-" + std::to_string(1'000'000 + person) + "\n";
    return text;
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

/// Imports the file of that path; answers what is said of it.
template <class... Options>
std::string imported(const Tool& tool, const std::string& path, Options... options) {
    const Outcome outcome = tool("import", path, options...);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
}

/// The names of all contacts of the phone book, in their order.
inline std::vector<std::string> namesIn(const Tool& tool) {
    return namesIn(tool.json(0, "list"));
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
