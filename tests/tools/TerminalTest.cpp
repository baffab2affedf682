// No text gets to a terminal as it is: whatever a contact, a group, a category, a slot, a call, a file's name or the
// command line holds, no command prints anything that a terminal would obey.

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tessera/platform/base/Unicode.h"
#include "tests/tools/Colours.h"
#include "tests/tools/HelpOf.h"
#include "tests/tools/HostilePhoneBook.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSubsetOf;
using testing_support::Command;

namespace {

using Arguments = std::vector<std::string>;

/// A command line, what it exits with, and whether it has a hostile text to print.
struct Line {
    Arguments arguments;
    int status = 0;
    bool shows = true;
};

struct Family {
    const char* called;
    std::vector<Line> lines;

    friend std::ostream& operator<<(std::ostream& out, const Family& family) { return out << family.called; }
};

// In the arguments these stand for what the phone book has.
const std::string contactOid = "{contact}";
const std::string callOid = "{call}";
const std::string peopleFile = "{people}";
const std::string brokenFile = "{broken}";
const std::string cardsFile = "{cards}";
const std::string tableFile = "{table}";
const std::string strangeFile = "{strange}";

const std::string text = utf8Of(hostileText);
const std::string name = utf8Of(hostileName);
const std::string word = "\x1B[31mred\xC2\x9B";
const std::string part = "\x1B[31mred\x1B]";  // of both contacts' names

const Family families[] = {
    {"Contacts",
     {
         {{"add", "--name", text, "--group", name, "--mobile", text}, 0, false},
         {{"add", "--name", text, "--birthday", word}, 2},
         {{"add", "--name", text, "--private", word}, 2},
         {{"edit", contactOid, "--name", text}, 0, false},
         {{"edit", "999", "--name", text}, 1, false},
         {{"edit", word, "--name", text}, 1},
         {{"delete", contactOid}, 0, false},
         {{"delete", name + name, "number:0103112"}, 1},
         {{"delete", part}, 2},
         {{"delete", "--all", "--yes"}, 0, false},
         {{"delete", "--all"}, 2, false},
         {{"delete", word}, 1},
         {{"show", contactOid}},
         {{"show", word}, 1},
         {{"show", part}, 2},
         {{"show", "number:" + word}, 1},
         {{"list"}},
         {{"list", "--group", name}},
         {{"list", "--prefix", word}, 1},
         {{"list", "--" + word}, 2},
         {{"search", "red"}},
         {{"search", word + word}, 1},
         {{"number", "01031"}},
         {{"number", word + "999"}, 1},
         {{"number", "\x1B[mred"}, 2, false},
         {{"identify", "0103112"}},
         {{"identify", "0103112", "--all"}},
         {{"identify", word}, 1},
         {{"identify", "\x1B[mred"}, 2, false},
     }},
    {"ImportAndExport",
     {
         {{"init"}},
         {{"import", word}, 3},
         {{"import", peopleFile}, 0, false},
         {{"import", brokenFile}, 3},
         {{"import", cardsFile}},
         {{"import", cardsFile, "--dry-run"}},
         {{"import", tableFile}},
         {{"import", tableFile, "--dry-run", "--keep-duplicates"}},
         {{"import", tableFile, "--map", word + "=name"}, 0},
         {{"import", tableFile, "--map", "no " + word + "=name"}, 2},
         {{"import", tableFile, "--map", "Name=" + word}, 2},
         {{"import", strangeFile}, 3},
         {{"import", peopleFile, "--encoding", word}, 2},
         {{"import", peopleFile, "--format", word}, 2},
         {{"export", "--format", word}, 2},
         {{"export", "--json"}, 0, false},
         {{"--json", "export", "/no/" + word}, 3},
     }},
    {"SpeedDial",
     {
         {{"speed-dial", "list"}},
         {{"speed-dial", "set", "7", contactOid, "mobile"}},
         {{"speed-dial", "set", word, contactOid, "mobile"}, 2},
         {{"speed-dial", "set", "7", contactOid, word}, 2},
         {{"speed-dial", "move", "5", "8"}},
         {{"speed-dial", "move", "5", word}, 2},
         {{"speed-dial", "clear", "5"}, 0, false},
         {{"speed-dial", "clear", "--all", "--yes"}, 0, false},
         {{"speed-dial", "free"}, 0, false},
         {{"speed-dial", "call", "5"}, 0, false},
     }},
    {"Group",
     {
         {{"group", "list"}},
         {{"group", "add", name + "2"}},
         {{"group", "add", name}, 3},
         {{"group", "rename", name, name + "3"}},
         {{"group", "rename", word, name}, 1},
         {{"group", "rename", name, word + ","}, 2, false},
         {{"group", "delete", name}},
         {{"group", "delete", word}, 1},
         {{"group", "reject", name, "on"}},
         {{"group", "reject", name, word}, 2},
         {{"group", "ring", name, "--call", text, "--message", text}},
         {{"group", "ring", word, "--call", text}, 1},
     }},
    {"Category",
     {
         {{"category", "list"}},
         {{"category", "add", name + "2"}},
         {{"category", "add", name}, 3},
         {{"category", "rename", name, name + "3"}},
         {{"category", "rename", word, name}, 1},
         {{"category", "delete", name}},
         {{"category", "delete", word}, 1},
     }},
    {"Call",
     {
         {{"call", "log", "0103112", "--cnap", text, "--cdnip", text, "--name", text}},
         {{"call", "log", "1", "--type", word}, 2},
         {{"call", "log", "1", "--at", word}, 2},
         {{"call", "log", "\x1B[mred"}, 2, false},
         {{"call", "list"}},
         {{"call", "last"}},
         {{"call", "oldest"}},
         {{"call", "delete", callOid}, 0, false},
         {{"call", "delete", word}, 2},
         {{"call", "clear", "--yes"}, 0, false},
     }},
    {"Files",
     {
         {{"check"}},
         {{"check", "--full", "--repair"}},
         {{"check", word}, 2},
         {{"backup", "/no/" + word}, 3},
         {{"recover", word, word}, 2, false},
     }},
    {"CommandLine",
     {
         {{"watch", word}, 2},
         {{word}, 2},
         {{"group", word}, 2},
     }},
};

/// Whether a terminal would do something at the character, or turn what stands around it.
bool isObeyed(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x61C || code == 0x200E || code == 0x200F ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x206F) || code == 0xFEFF ||
           (code >= 0xFFF9 && code <= 0xFFFB);
}

/// What a terminal would obey of a command's output besides the ends of lines.
std::vector<std::string> obeyedIn(const std::string& output) {
    const auto characters = textOfUtf8(output);
    if (!characters) return {"bytes that are no UTF-8"};
    std::vector<std::string> obeyed;
    for (const WCHAR ch : characters->view()) {
        if (ch == u'\n' || !isObeyed(ch)) continue;
        char code[8];
        std::snprintf(code, sizeof code, "%04X", static_cast<unsigned>(ch));
        obeyed.emplace_back(code);
    }
    return obeyed;
}

void expectHarmless(const Outcome& outcome) {
    EXPECT_THAT(obeyedIn(outcome.out), IsEmpty()) << outcome.out;
    EXPECT_THAT(obeyedIn(outcome.err), IsEmpty()) << outcome.err;
}

/// Without what the tool itself has to send: the terminal's driver puts carriage returns before line feeds, and an
/// import draws its bar over itself with them; and colours, which are none of those in the hostile texts.
std::string withoutItsOwn(std::string output) {
    std::erase(output, '\r');
    return withoutColours(std::move(output));
}

Outcome withoutItsOwn(Outcome outcome) {
    outcome.out = withoutItsOwn(outcome.out);
    outcome.err = withoutItsOwn(outcome.err);
    return outcome;
}

class Terminal : public ::testing::TestWithParam<Family> {
protected:
    Outcome runOn(const Line& line, Command (*changed)(Command)) {
        tool.restore();
        Arguments arguments = line.arguments;
        for (std::string& argument : arguments) {
            if (argument == contactOid) argument = tool.contact();
            if (argument == callOid) argument = tool.call();
            if (argument == peopleFile)
                argument = tool.file(word + ".csv", "Name\n" + word + ",,,,,,,,,," + word + "\n");
            if (argument == cardsFile)
                argument = tool.file(word + ".vcf", word + "\nBEGIN:VCARD\nFN:" + word + "\nBDAY:" + word +
                                                        "\nX-A;CHARSET=" + word + ":1\nNOTE;CHARSET=" + word +
                                                        ":1\nEND:VCARD\n");
            if (argument == tableFile)
                argument =
                    tool.file(word + ".table", "Name,Birthday," + word + "\n" + word + "," + word + "," + word + "\n");
            if (argument == strangeFile) argument = tool.file(word + ".strange", word + "," + word + "\n");
            if (argument == brokenFile) argument = tool.file(word + ".txt", "Name\n\xFF\x1B[2J\n");
        }
        arguments.insert(arguments.begin(), {"--store", tool.path()});
        return run(changed(tool.command(arguments)));
    }

    HostilePhoneBook tool;
};

Command unchanged(Command command) {
    return command;
}

Command onTerminal(Command command) {
    command.outputToTerminal = true;
    command.errorToTerminal = true;
    command.environment["TERM"] = "xterm";
    command.environment["NO_COLOR"] = "";
    return command;
}

Command withJson(Command command) {
    command.arguments.insert(command.arguments.begin(), "--json");
    return command;
}

std::string shown(const Line& line) {
    std::string words;
    for (const std::string& argument : line.arguments)
        words += Json(argument).dump(-1, ' ', true) + ' ';
    return words;
}

}  // namespace

TEST_P(Terminal, IsSentNothingThatItObeys) {
    for (const Line& line : GetParam().lines) {
        SCOPED_TRACE(shown(line));
        const Outcome outcome = runOn(line, unchanged);

        EXPECT_EQ(outcome.status, line.status) << outcome.err;
        expectHarmless(outcome);
        if (line.shows) {
            EXPECT_THAT(outcome.out + outcome.err, HasSubstr("\\u{1b}[31mred"));
        }
        expectHarmless(withoutItsOwn(runOn(line, onTerminal)));
    }
}

TEST_P(Terminal, IsSentJsonThatItDoesNotObey) {
    for (const Line& line : GetParam().lines) {
        SCOPED_TRACE(shown(line));
        const Outcome outcome = runOn(line, withJson);

        EXPECT_EQ(outcome.status, line.status) << outcome.err;
        expectHarmless(outcome);
        for (const std::string& document : outcome.out.starts_with('[') ? Arguments{outcome.out} : linesOf(outcome.out))
            EXPECT_TRUE(Json::accept(document)) << document;
        EXPECT_EQ(tool("--store", tool.path(), "list").status, 0);  // nothing that was said was done
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, Terminal, ::testing::ValuesIn(families),
                         [](const auto& each) { return std::string(each.param.called); });

TEST(Terminals, ShowAQuestionAsItIsMeant) {
    const HostilePhoneBook tool;
    for (const Arguments& question :
         {Arguments{"delete", "--all"}, {"speed-dial", "clear", "--all"}, {"call", "clear"}}) {
        auto command = onTerminal(tool.command({"--store", tool.path()}));
        command.arguments.insert(command.arguments.end(), question.begin(), question.end());
        command.typed = "n\n";
        const Outcome outcome = withoutItsOwn(run(command));

        EXPECT_EQ(outcome.status, 3);
        EXPECT_THAT(outcome.err, HasSubstr("\\u{1b}[31mred\\u{9b}\\u{a}\\u{202e}'; --.db?"));
        expectHarmless(outcome);
    }
}

TEST(Terminals, ShowTheListToChooseFromAsItIsMeant) {
    const HostilePhoneBook tool;
    auto command = onTerminal(tool.command({"--store", tool.path(), "show", part}));
    command.typed = "1\n";
    const Outcome outcome = withoutItsOwn(run(command));

    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("1  " + tool.contact() + "    \\u{1b}[31mred"));
    expectHarmless(outcome);
}

TEST(Terminals, ShowWhoIsToBeDeletedAsItIsMeant) {
    const HostilePhoneBook tool;
    tool("--store", tool.path(), "delete", "oid:" + tool.contact());
    expectHarmless(tool("--store", tool.path(), "delete", part));
    auto command = onTerminal(tool.command({"--store", tool.path(), "delete", part}));
    command.typed = "n\n";
    const Outcome outcome = withoutItsOwn(run(command));

    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.err, HasSubstr("Delete \\u{1b}[31mred"));
    expectHarmless(outcome);
}

TEST(Terminals, AreTestedWithEveryCommand) {
    const Tool tool;
    std::set<std::string> tested;
    for (const Family& family : families) {
        for (const Line& line : family.lines) {
            tested.insert(line.arguments[0]);
            if (line.arguments.size() > 1) tested.insert(line.arguments[0] + ' ' + line.arguments[1]);
        }
    }

    std::set<std::string> commands;
    for (const auto& [command, help] : helpOfAll(tool))
        if (!command.empty()) commands.insert(joined(command));
    EXPECT_THAT(commands, IsSubsetOf(tested));
    EXPECT_THAT(commands, ::testing::IsSupersetOf({"watch", "call log"}));
}
