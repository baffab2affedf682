// The manual, as a reader sees it.

#include <cctype>

#include "tests/tools/HelpOf.h"

using namespace tool_test;
using ::testing::HasSubstr;

namespace {

/// The page in words with single blanks between them, however they are set.
std::string wordsOfManual() {
    const Outcome page =
        testing_support::run({.program = MANDOC, .arguments = {"-T", "utf8", "-O", "width=1000", MANUAL}});
    EXPECT_EQ(page.status, 0) << page.err;
    std::string words;
    for (const char ch : page.out) {
        if (ch == '\b') {
            words.pop_back();  // a letter is printed twice to be bold, and over a line to be underlined
        } else if (!std::isspace(static_cast<unsigned char>(ch))) {
            words += ch;
        } else if (!words.ends_with(' ')) {
            words += ' ';
        }
    }
    return words;
}

}  // namespace

TEST(Manual, NamesEveryCommandWithItsOptionsSummaryAndExamples) {
    const Tool tool;
    const std::string manual = wordsOfManual();
    for (const auto& [command, help] : helpOfAll(tool)) {
        if (command.empty()) continue;
        EXPECT_THAT(manual, HasSubstr(help.summary + '.'));
        for (const std::string& option : help.options)
            EXPECT_THAT(manual, HasSubstr(' ' + option + ' ')) << joined(command);
        if (!help.commands.empty()) continue;  // a family's examples stand with its commands
        EXPECT_THAT(manual, HasSubstr("tessera [options] " + joined(command) + ' '));
        for (const std::string& example : help.examples)
            EXPECT_THAT(manual, HasSubstr(example));
    }
}

TEST(Manual, ShowsWhichArgumentsExcludeOneAnother) {
    const std::string manual = wordsOfManual();
    EXPECT_THAT(manual, HasSubstr("tessera [options] delete [PERSON ... | --all] [--yes] "));
    EXPECT_THAT(manual, HasSubstr("tessera [options] list [--group NAME | --no-group | --prefix TEXT] "));
    EXPECT_THAT(manual, HasSubstr("tessera [options] search TEXT [--and TEXT] ... "));
    EXPECT_THAT(manual, HasSubstr("tessera [options] speed-dial set SLOT PERSON NUMBER "));
}

TEST(Manual, ExplainsWhatHelpLeavesOut) {
    const std::string manual = wordsOfManual();
    for (const char* heading : {"WHAT CAN BE WRONG", "IMPORT FILES", "EXPORT FILES", "NAMING A CONTACT", "OUTPUT",
                                "ENVIRONMENT", "EXIT STATUS"})
        EXPECT_THAT(manual, HasSubstr(heading));
    EXPECT_THAT(manual, HasSubstr("TESSERA_SHARED_FOLDER"));
    EXPECT_THAT(manual, HasSubstr("A country calling code behind a plus sign"));
}
