#pragma once

#include <string>
#include <vector>

#include "tests/tools/ToolTest.h"

namespace tool_test {

/// Six contacts with all that makes widths hard.
class WideBook : public Tool {
public:
    WideBook() {
        for (const std::string& name :
             {std::string("가나다라마바사아자차카타파하"), std::string("plain"), std::string("😀😀😀😀😀😀😀😀"),
              std::string("e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301"),
              std::string("ＡＢＣＤＥＦＧ"), std::string(60, 'x')})
            (*this)("add", "--name", name, "--group", "친구들과 가족", "--mobile", "010-2345-6789");
    }

    testing_support::Command onTerminal(std::vector<std::string> arguments, unsigned short columns) const {
        testing_support::Command shown = command(std::move(arguments));
        shown.outputToTerminal = true;
        shown.errorToTerminal = true;
        shown.terminalColumns = columns;
        shown.environment["COLUMNS"] = "";
        shown.environment["NO_COLOR"] = "";
        shown.environment["TERM"] = "xterm";
        return shown;
    }
};

}  // namespace tool_test
