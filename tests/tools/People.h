#pragma once

#include <string>
#include <vector>

#include "tests/tools/ToolTest.h"

namespace tool_test {

/// A phone book of whom a command may mean.
class People : public Tool {
public:
    /// Answers the identifier.
    template <class... Fields>
    std::string person(const std::string& name, Fields... fields) const {
        return json(0, "add", "--name", name, fields...)["oid"].dump();
    }

    std::string shown(const std::string& argument) const { return json(0, "show", argument)["oid"].dump(); }

    std::vector<std::string> names() const { return namesIn(json(0, "list")); }
};

/// Three whose names begin with the same syllable, two of them with the same name.
class Kims : public People {
public:
    const std::string minsu = person("김민수", "--mobile", "010-2345-6789");
    const std::string other = person("김민수", "--home", "02-1234");
    const std::string minjeong = person("김민정");
};

}  // namespace tool_test
