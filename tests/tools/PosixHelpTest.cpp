// The examples of --help, as a shell takes them.

#include <cstdlib>
#include <filesystem>

#include "tests/tools/HelpOf.h"
#include "tests/tools/StoreFolder.h"

using namespace tool_test;
using ::testing::HasSubstr;
using testing_support::Command;

namespace {

/// A phone book, and files beside it, with all that the examples name.
class Book : public Tool {
public:
    Book() {
        file("contacts.csv",
             "Name,Group,Categories,Mobile\n김민수,친구,,010-2345-6789\nMinsu Kim,회사,,+1 212-555-0123\n"
             "고민정,가족,,010-1618-0339\n");
        (*this)("import", (*this / "contacts.csv").string());
        (*this)("call", "log", "01023456789");
        (*this)("call", "log", "01016180339");
        (*this)("speed-dial", "set", "5", "15", "mobile");
        std::filesystem::copy(store(), *this / "damaged.db");
        damage(*this / "damaged.db", 3);
        std::filesystem::copy(store(), *this / "untouched.db");
    }

    /// The example as it stands, for a shell in the folder of the book.
    Command shell(const std::string& example) const {
        Command command = this->command({"-c", "cd \"$HOME\" && " + example});
        command.program = "/bin/sh";
        const std::string programs = std::filesystem::path(TESSERA_TOOL).parent_path();
        command.environment["PATH"] = programs + ':' + std::getenv("PATH");
        return command;
    }

    /// Undoes what an example has done to the book and beside it.
    void restore() const {
        for (const auto& entry : std::filesystem::directory_iterator(store().parent_path())) {
            const std::string name = entry.path().filename();
            if (name != "contacts.csv" && name != "damaged.db" && name != "untouched.db" && !entry.is_directory())
                std::filesystem::remove(entry.path());
        }
        std::filesystem::copy(*this / "untouched.db", store());
    }
};

/// An example that goes on until nobody reads it any more.
void expectToTellOfChanges(const Book& book, const std::string& example) {
    testing_support::Process process(book.shell(example));
    std::string begun;
    while (begun.find("following") == std::string::npos) {
        const auto read = process.readError(std::chrono::seconds(60));
        ASSERT_TRUE(read) << begun;
        begun += *read;
    }
    book("add", "--name", "Anna");
    const auto told = process.read(std::chrono::seconds(60));
    ASSERT_TRUE(told);
    EXPECT_THAT(*told, HasSubstr("Anna"));
    process.closeOutput();
    book("add", "--name", "Anton");  // a program that passes the lines on learns by the next that nobody reads them
    process.wait();
}

}  // namespace

TEST(ToolHelp, ShowsExamplesThatWork) {
    const Book book;
    ASSERT_EQ(book("--store", (book / "damaged.db").string(), "check").status, 1);
    for (const auto& [command, help] : helpOfAll(book)) {
        for (const std::string& example : help.examples) {
            SCOPED_TRACE(example);
            book.restore();
            if (command == CommandWords{"watch"}) {
                expectToTellOfChanges(book, example);
                continue;
            }
            const Outcome outcome = run(book.shell(example));
            EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
        }
    }
}
