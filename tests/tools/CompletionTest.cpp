// Completion of the command line, as the shells do it.

#include <cstdlib>
#include <filesystem>

#include "tests/tools/HelpOf.h"

using namespace tool_test;
using ::testing::Contains;
using ::testing::ElementsAre;
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
        command.environment["PATH"] =
            std::filesystem::path(TESSERA_TOOL).parent_path().string() + ':' + std::getenv("PATH");
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

/// A shell into which lines are typed.
class Typed : public Shell {
public:
    Typed(std::string shell, std::string completions)
        : Shell(ZSH), shell_(std::move(shell)), completions_(std::move(completions)) {}

    /// Each of the lines when it has been completed.
    std::vector<std::string> completed(const std::vector<std::string>& lines) const {
        std::vector<std::string> arguments{"-f", COMPLETE_ZSH, shell_, completions_};
        arguments.insert(arguments.end(), lines.begin(), lines.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return linesOf(outcome.out);
    }

    /// What becomes of a line behind "tessera ", without that.
    std::string completed(const std::string& line) const {
        const auto lines = completed(std::vector{"tessera " + line});
        return lines.size() == 1 ? lines.front().substr(std::string("tessera ").size()) : "";
    }

    /// The output of a line as this shell understands it.
    std::string outputOf(const std::string& line) const {
        return run({"-f", "-c", shell_ == "zsh" ? line : "exec bash --norc -c \"$1\"", shell_, line}).out;
    }

private:
    std::string shell_;
    std::string completions_;
};

class Zsh : public Typed {
public:
    Zsh() : Typed("zsh", std::filesystem::path(ZSH_COMPLETION).parent_path()) {}
};

class TypedBash : public Typed {
public:
    TypedBash() : Typed("bash", BASH_COMPLETION) {}
};

template <class Typing>
class NameCompletion : public ::testing::Test {};
using TypedShells = ::testing::Types<TypedBash, Zsh>;
TYPED_TEST_SUITE(NameCompletion, TypedShells);

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

TEST(BashCompletion, OffersTheNamesThatThePhoneBookHas) {
    const Bash bash;
    for (const std::string name : {"Anna", "Annabel", "anna", "Bella", "Bella", "two\nlines"})
        bash("add", "--name", name, "--group", "chess club");
    EXPECT_THAT(bash.offers({"show", "An"}), UnorderedElementsAre("Anna", "Annabel"));
    EXPECT_THAT(bash.offers({"edit", ""}), UnorderedElementsAre("Anna", "Annabel", "anna", "Bella"));
    EXPECT_THAT(bash.offers({"delete", "Anna", "15", "B"}), ElementsAre("Bella"));
    EXPECT_THAT(bash.offers({"speed-dial", "set", "5", "B"}), ElementsAre("Bella"));
    EXPECT_THAT(bash.offers({"call", "log", "--name", "B"}), ElementsAre("Bella"));
    EXPECT_THAT(bash.offers({"list", "--group", ""}), UnorderedElementsAre("가족", "친구", "학교", "회사"));
    EXPECT_THAT(bash.offers({"group", "ring", "친"}), ElementsAre("친구"));
    EXPECT_THAT(bash.offers({"category", "rename", "친"}), ElementsAre("친구"));
    EXPECT_THAT(bash.offers({"category", "rename", "친구", ""}), IsEmpty());  // what is new is on no list
    EXPECT_THAT(bash.offers({"group", "add", ""}), IsEmpty());
    EXPECT_THAT(bash.offers({"add", "--name", ""}), IsEmpty());
}

TEST(BashCompletion, TakesTheNamesOutOfTheStoreThatTheLineNames) {
    const Bash bash;
    const std::string other = (bash / "other one.db").string();
    bash("--store", other, "add", "--name", "Anna");
    EXPECT_THAT(bash.offers({"--store", '"' + other + '"', "show", ""}), ElementsAre("Anna"));
    EXPECT_THAT(bash.offers({"--store", "=", "~/other\\ one.db", "show", ""}), ElementsAre("Anna"));
    EXPECT_THAT(bash.offers({"show", ""}), IsEmpty());
}

TEST(BashCompletion, KnowsAnArgumentWithAColonForOne) {
    const Bash bash;
    bash("add", "--name", "Anna");
    EXPECT_THAT(bash.offers({"speed-dial", "set", "5", "oid", ":", "15", "m"}), ElementsAre("mobile"));
    EXPECT_THAT(bash.offers({"speed-dial", "set", "5", "oid", ":", "1"}), IsEmpty());
    EXPECT_THAT(bash.offers({"delete", "oid", ":"}), IsEmpty());
    EXPECT_THAT(bash.offers({"delete", "oid", ":", "15", ""}), ElementsAre("Anna"));
}

TYPED_TEST(NameCompletion, WritesNamesSoThatTheShellReadsThemBack) {
    const TypeParam shell;
    const std::vector<std::string> names = {"Ann O'Brien", "Bob \"the $1\" `x` \\ Hill", "Cleo: chief @home = !",
                                            "김민수 & co;", "~ (x) [y] {z} *?#"};
    for (const std::string& name : names) {
        const std::string oid = shell.json(0, "add", "--name", name)["oid"].dump();
        const std::string begun = name.substr(0, static_cast<unsigned char>(name[0]) < 0x80 ? 1 : 3);
        for (const std::string quote : {"", "'", "\""}) {
            const bool isHomeFolder = begun == "~" && quote.empty();
            const bool isHistory = name.ends_with('!') && quote == "\"";
            if (isHomeFolder || isHistory) continue;
            const std::string line = shell.completed("show " + quote + begun);
            EXPECT_TRUE(line.ends_with(' ')) << line;  // a blank behind what is whole
            EXPECT_EQ(Json::parse(shell.outputOf("tessera --json " + line), nullptr, false).value("name", ""), name)
                << line;
        }
        shell("delete", "oid:" + oid);
    }
}

TYPED_TEST(NameCompletion, GoesOnAsFarAsNamesAreAlike) {
    const TypeParam shell;
    shell("add", "--name", "Anna Smith");
    shell("add", "--name", "Anna Schmidt");
    shell("add", "--name", "Bella");
    const std::string line = shell.completed("delete Bella An");
    EXPECT_EQ(line, "delete Bella Anna\\ S");
    EXPECT_EQ(shell.completed(line + "m"), "delete Bella Anna\\ Smith ");
    EXPECT_EQ(shell.completed("delete Bella 'Anna Sc"), "delete Bella 'Anna Schmidt' ");
}

TYPED_TEST(NameCompletion, TakesPersonsGroupsAndCategoriesOfTheStoreThatTheLineNames) {
    const TypeParam shell;
    const std::string other = (shell / "other.db").string();
    shell("--store", other, "add", "--name", "Anna");
    EXPECT_EQ(shell.completed("--store ~/other.db show A"), "--store ~/other.db show Anna ");
    EXPECT_EQ(shell.completed("--store=" + other + " list --group 친"), "--store=" + other + " list --group 친구 ");
    EXPECT_EQ(shell.completed("--store " + other + " category delete 회"),
              "--store " + other + " category delete 회사 ");
}

TYPED_TEST(NameCompletion, IsSilentWithoutAPhoneBook) {
    const TypeParam shell;
    EXPECT_EQ(shell.completed("show A"), "show A");
    shell.file("store.db", "no store");
    EXPECT_EQ(shell.completed("group ring A"), "group ring A");
    EXPECT_FALSE(exists(shell / "store.db-wal"));
}
