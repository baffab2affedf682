// Completion of the command line, as the shells do it.

#include <algorithm>
#include <filesystem>

#include "tests/tools/HelpOf.h"

using namespace tool_test;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::UnorderedElementsAre;
using ::testing::UnorderedElementsAreArray;
using testing_support::Command;

namespace {

/// A shell in a folder with some files.
class Shell : public Tool {
public:
    explicit Shell(std::string program) : program_(std::move(program)) {
        file("people.csv", "");
        file("people of mine.db", "");
    }

protected:
    Outcome run(std::vector<std::string> arguments) const {
        Command command = this->command(std::move(arguments));
        command.program = program_;
        command.environment["ZDOTDIR"] = command.environment["HOME"];
        command.environment["TERM"] = "dumb";
        return testing_support::run(command);
    }

private:
    std::string program_;
};

class Bash : public Shell {
public:
    Bash() : Shell("/bin/bash") {}

    /// What it offers for the last of the words behind "tessera".
    std::vector<std::string> offers(const CommandWords& words) const {
        std::vector<std::string> arguments{"--norc", "--noprofile", "-c", script, "bash", BASH_COMPLETION, "tessera"};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        return linesOf(outcome.out);
    }

    std::string registered() const {
        return run({"--norc", "--noprofile", "-c", "source \"$1\" && complete -p tessera", "bash", BASH_COMPLETION})
            .out;
    }

private:
    static constexpr const char* script = R"(
        cd "$HOME" && source "$1" && shift
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        _tessera
        ((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}")";
};

class Zsh : public Shell {
public:
    Zsh() : Shell(ZSH) {}

    /// Each of the lines when it has been completed.
    std::vector<std::string> completed(const std::vector<std::string>& lines) const {
        std::vector<std::string> arguments{"-f", COMPLETE_ZSH, std::filesystem::path(ZSH_COMPLETION).parent_path()};
        arguments.insert(arguments.end(), lines.begin(), lines.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return linesOf(outcome.out);
    }
};

CommandWords with(CommandWords words, const std::string& more) {
    words.push_back(more);
    return words;
}

}  // namespace

TEST(BashCompletion, IsRegisteredForTheTool) {
    EXPECT_EQ(Bash().registered(), "complete -F _tessera tessera\n");
}

TEST(BashCompletion, OffersTheCommandsAndOptionsThatHelpNames) {
    const Bash bash;
    for (const auto& [command, help] : helpOfAll(bash)) {
        SCOPED_TRACE(joined(command));
        if (!help.commands.empty()) {
            EXPECT_THAT(bash.offers(with(command, "")), UnorderedElementsAreArray(help.commands));
        }
        const auto offered = bash.offers(with(command, "--"));
        EXPECT_THAT(offered, IsSupersetOf(help.options));
        EXPECT_THAT(offered, IsSupersetOf({"--store", "--json", "--help"}));
    }
}

TEST(BashCompletion, OffersOnlyWhatBeginsWithTheWord) {
    EXPECT_THAT(Bash().offers({"re"}), ElementsAre("recover"));
    EXPECT_THAT(Bash().offers({"list", "--pre"}), ElementsAre("--prefix"));
}

TEST(BashCompletion, OffersTheValuesThatThereAre) {
    const Bash bash;
    EXPECT_THAT(bash.offers({"speed-dial", "set", "5", "15", ""}), ElementsAre("mobile", "home", "business"));
    EXPECT_THAT(bash.offers({"group", "reject", "회사", "o"}), ElementsAre("on", "off"));
    EXPECT_THAT(bash.offers({"call", "log", "--type", "m"}), ElementsAre("missed"));
    EXPECT_THAT(bash.offers({"call", "log", "--type", "=", "m"}), ElementsAre("missed"));
    EXPECT_THAT(bash.offers({"call", "log", "--type", "="}), ElementsAre("incoming", "outgoing", "missed"));
}

TEST(BashCompletion, OffersNothingWhereNobodyCanKnow) {
    const Bash bash;
    EXPECT_THAT(bash.offers({"show", ""}), IsEmpty());
    EXPECT_THAT(bash.offers({"add", "--name", ""}), IsEmpty());
    EXPECT_THAT(bash.offers({"import", "people.csv", ""}), IsEmpty());
    EXPECT_THAT(bash.offers({"dance", ""}), Not(Contains("dance")));
}

TEST(BashCompletion, OffersFilesWithBlanksInTheirNamesToo) {
    const Bash bash;
    for (const CommandWords& line : {CommandWords{"import"},
                                     {"export"},
                                     {"backup"},
                                     {"recover"},
                                     {"recover", "a.db"},
                                     {"--store"},
                                     {"list", "--store"}})
        EXPECT_THAT(bash.offers(with(line, "peo")), UnorderedElementsAre("people.csv", "people of mine.db"))
            << joined(line);
}

TEST(BashCompletion, KnowsTheCommandBehindTheOptionsOfAll) {
    const Bash bash;
    EXPECT_THAT(bash.offers({"--json", "--store", "list", "call", "o"}), ElementsAre("oldest"));
    EXPECT_THAT(bash.offers({"--store", "=", "list", "call", "o"}), ElementsAre("oldest"));
    EXPECT_THAT(bash.offers({"add", "--name", "list", "--pre"}), IsEmpty());
}

TEST(ZshCompletion, CompletesCommandsOptionsValuesAndFiles) {
    const Zsh zsh;
    const std::string people = (zsh / "people.csv").string();
    const std::string begun = people.substr(0, people.size() - 2);
    const std::vector<std::pair<std::string, std::string>> lines = {
        {"imp", "import "},
        {"speed-dial mo", "speed-dial move "},
        {"--json rec", "--json recover "},
        {"list --pre", "list --prefix="},
        {"speed-dial set 5 15 mo", "speed-dial set 5 15 mobile "},
        {"call log --type mi", "call log --type missed "},
        {"recover old " + begun, "recover old " + people + ' '},
        {"--store=" + begun, "--store=" + people + ' '},
        {"list --no-group --pre", "list --no-group --pre"},  // they exclude each other
    };
    std::vector<std::string> typed;
    std::vector<std::string> expected;
    for (const auto& [line, completed] : lines) {
        typed.push_back("tessera " + line);
        expected.push_back("tessera " + completed);
    }

    EXPECT_EQ(zsh.completed(typed), expected);
}

TEST(ZshCompletion, KnowsEveryCommand) {
    const Zsh zsh;
    std::vector<std::string> typed;
    std::vector<std::string> expected;
    for (const auto& [command, help] : helpOfAll(zsh)) {
        if (command.empty()) continue;
        typed.push_back("tessera " + joined(command));
        expected.push_back("tessera " + joined(command) + ' ');  // a blank behind what is whole
    }

    EXPECT_EQ(zsh.completed(typed), expected);
}
