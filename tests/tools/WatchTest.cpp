// watch: what others do to contacts and categories, told as it happens, and the phone book in step with it.

#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using testing_support::Command;
using testing_support::Process;

namespace {

constexpr std::chrono::seconds patience{60};

/// A watcher that has begun to follow the store.
class Watch {
public:
    using Read = std::optional<std::string> (Process::*)(std::chrono::milliseconds);

    explicit Watch(const Command& command) : process_(command) {
        EXPECT_THAT(errorLine(), AllOf(HasSubstr("following "), HasSubstr("interrupt to end")));
    }

    /// The next line of its output, which it has a minute for.
    std::string line() { return nextLine(out_, &Process::read); }
    std::string errorLine() { return nextLine(err_, &Process::readError); }
    Json json() { return Json::parse(line(), nullptr, false); }
    /// What became of whom, by that many lines.
    std::vector<std::string> changes(std::size_t count) {
        std::vector<std::string> told;
        while (told.size() < count) {
            const Json change = json();
            if (!change.is_object()) break;
            told.push_back(change.value("what", "") + ' ' + change.value("name", ""));
        }
        return told;
    }

    /// What is left of its output when it has been asked to end; it must end well.
    std::string end(void (Process::*ask)() = &Process::terminate) {
        (process_.*ask)();
        while (const auto text = process_.read(patience)) {
            if (text->empty()) break;
            out_ += *text;
        }
        EXPECT_EQ(process_.wait().status, 0);
        return out_;
    }
    Process& process() { return process_; }

private:
    std::string nextLine(std::string& unread, Read read) {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        std::size_t length = 0;
        while ((length = unread.find('\n')) == std::string::npos) {
            const auto text = (process_.*read)(patience);
            if (!text || std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "no line, but \"" << unread << '"';
                return {};
            }
            unread += *text;
        }
        const std::string line = unread.substr(0, length);
        unread.erase(0, length + 1);
        return line;
    }

    Process process_;
    std::string out_;
    std::string err_;
};

/// A phone book with the groups that a new one has, and a watcher.
class Watched : public Tool {
public:
    Watched() { (*this)("init"); }

    Command watching() const { return command({"--json", "watch"}); }
    Json added(const std::string& name) const { return json(0, "add", "--name", name)["oid"]; }
    std::vector<std::string> groups() const { return namesIn(json(0, "group", "list")); }
};

/// How many rows of the phone book's own add to contacts.
DWORD extensionRows(const Tool& tool) {
    DWORD rows = 0;
    asAnotherProgram(tool, [&] {
        CCeDBDatabase extension;
        ASSERT_TRUE(extension.open(TEXT("QZ_PhoneBookExt"), nullptr, nullptr));
        rows = extension.getNumRecords();
    });
    return rows;
}

/// More changes at once than the store remembers, none to a contact or a category.
void makeTheStoreForget(const Tool& tool) {
    asAnotherProgram(tool, [] {
        CCeDBDatabase calls;
        ASSERT_TRUE(calls.open(TEXT("QZ_CallHistory"), nullptr, nullptr));
        CCeDBRecord call;
        call.addProp(CCeDBProp::ofUI4(0x402, 1));
        ObjectStoreBatch batch;
        ASSERT_NE(calls.seekToRecord(calls.add(call)), 0u);
        for (int i = 0; i < 100'010; ++i)
            ASSERT_TRUE(calls.writeCurrent(call));
        ASSERT_TRUE(batch.end());
    });
}

/// A pipe as small as the system makes them, which is open and not read.
class UnreadPipe {
public:
    explicit UnreadPipe(std::string path) : path_(std::move(path)) {
        EXPECT_EQ(mkfifo(path_.c_str(), 0600), 0);
        end_ = open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        EXPECT_GT(fcntl(end_, F_SETPIPE_SZ, 4096), 0);
    }
    ~UnreadPipe() { close(end_); }
    UnreadPipe(const UnreadPipe&) = delete;
    UnreadPipe& operator=(const UnreadPipe&) = delete;

    const std::string& path() const { return path_; }
    bool waitForText() const {
        pollfd waiting{end_, POLLIN, 0};
        return poll(&waiting, 1, static_cast<int>(std::chrono::milliseconds(patience).count())) == 1;
    }

private:
    std::string path_;
    int end_ = -1;
};

std::string fileOfPeople(int count) {
    std::string text = "Name,Group\n";
    for (int person = 1; person <= count; ++person)
        text += "Person " + std::to_string(person) + ",친구,,010-" + std::to_string(1'000'000 + person) + "\n";
    return text;
}

}  // namespace

TEST(ToolWatch, TellsWhatOtherCommandsDoEachOnce) {
    const Watched tool;
    Watch watch(tool.watching());
    const std::string anna = tool.added("Anna").dump();
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created Anna"));
    tool("edit", anna, "--name", "Anne");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-changed Anne"));
    tool("import", tool.file("people.csv", "Name,Group\nPaul,친구\n고민정\n"));
    EXPECT_THAT(watch.changes(2), ElementsAre("contact-created Paul", "contact-created 고민정"));
    tool("category", "add", "chess");
    EXPECT_THAT(watch.changes(1), ElementsAre("category-created chess"));
    tool("category", "rename", "친구", "동무");
    EXPECT_THAT(watch.changes(2), ElementsAre("contact-changed Paul", "category-changed 동무"));
    tool("category", "delete", "chess");
    EXPECT_THAT(watch.changes(1), ElementsAre("category-deleted "));
    tool("delete", anna);
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-deleted "));
    EXPECT_EQ(watch.end(), "");
}

TEST(ToolWatch, TellsNothingOfCallsSlotsAndGroupSettings) {
    const Watched tool;
    const std::string anna = tool.json(0, "add", "--name", "Anna", "--mobile", "010-1")["oid"].dump();
    Watch watch(tool.watching());
    tool("call", "log", "010-1");
    tool("speed-dial", "set", "5", anna, "mobile");
    tool("group", "ring", "친구", "--call", "ding");
    tool.added("last");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created last"));
    EXPECT_EQ(watch.end(), "");
}

TEST(ToolWatch, TellsNothingOfWhatWasBefore) {
    const Watched tool;
    tool.added("before");
    Watch watch(tool.watching());
    tool.added("after");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created after"));
}

TEST(ToolWatch, WritesAnObjectALine) {
    const Watched tool;
    Watch watch(tool.watching());
    const Json before = tool.json(0, "call", "log", "1")["time"];
    const Json anna = tool.added("Anna");
    const Json after = tool.json(0, "call", "log", "1")["time"];

    const Json created = watch.json();
    tool("delete", anna.dump());
    const Json deleted = watch.json();

    EXPECT_THAT(keysOf(created), ElementsAre("sequence", "time", "what", "oid", "name"));
    EXPECT_THAT(keysOf(deleted), ElementsAre("sequence", "time", "what", "oid"));
    EXPECT_EQ(created["oid"], anna);
    EXPECT_EQ(deleted["oid"], anna);
    EXPECT_GT(deleted["sequence"].get<std::uint64_t>(), created["sequence"].get<std::uint64_t>());
    EXPECT_GE(created["time"].get<std::string>(), before.get<std::string>());
    EXPECT_LE(created["time"].get<std::string>(), after.get<std::string>());
}

TEST(ToolWatch, LeavesOutTheNameOfWhoHasNone) {
    const Watched tool;
    Watch watch(tool.watching());
    tool("add", "--mobile", "010-1");
    EXPECT_THAT(keysOf(watch.json()), ElementsAre("sequence", "time", "what", "oid"));
}

TEST(ToolWatch, AlignsItsLinesAndShowsTheTimeAsCallsDo) {
    const Watched tool;
    Watch stream(tool.watching());
    Command command = tool.command({"watch"});
    command.environment["TZ"] = "Asia/Seoul";
    Watch watch(command);
    tool.added("김민수");
    tool("category", "add", "chess");
    command.arguments = {"call", "log", "1", "--at", stream.json()["time"].get<std::string>()};
    const std::string time = linesOf(testing_support::run(command).out).at(1).substr(16);

    const std::string contact = watch.line();
    const std::string category = watch.line();

    EXPECT_THAT(contact, MatchesRegex("[0-9]+ +" + time + "  contact added     [0-9]+ +김민수"));
    EXPECT_THAT(category, MatchesRegex("[0-9]+ +[-0-9]+ [:0-9]+  category added    [0-9]+ +chess"));
    EXPECT_EQ(contact.find("김"), category.find("chess"));
}

TEST(ToolWatch, ShowsWhatMightUpsetATerminalInPlainText) {
    const Watched tool;
    Watch stream(tool.watching());
    Watch watch(tool.command({"watch"}));
    tool.added("김\x1b[2J\xc2\x9b\n수");
    EXPECT_THAT(watch.line(), HasSubstr("김\\u{1b}[2J\\u{9b}\\u{a}수"));
    const std::string line = stream.line();
    EXPECT_THAT(line, HasSubstr("김\\u001b[2J\\u009b\\n수"));
    EXPECT_EQ(Json::parse(line)["name"], "김\x1b[2J\xc2\x9b\n수");
}

TEST(ToolWatch, CutsItsLinesToTheTerminal) {
    const Watched tool;
    Watch stream(tool.command({"watch"}));
    Command onTerminal = tool.command({"watch"});
    onTerminal.outputToTerminal = true;
    onTerminal.terminalColumns = 70;
    onTerminal.environment["COLUMNS"] = "";
    Watch watch(onTerminal);
    for (const std::string& name :
         {std::string(60, 'x'), std::string("김민수김민수김민수김민수김민수"), std::string("Anna")}) {
        tool.added(name);
        const std::string whole = stream.line();
        const std::string cut = watch.line();  // which the terminal ends with a carriage return

        ASSERT_TRUE(cut.ends_with('\r'));
        EXPECT_TRUE(whole.ends_with(name)) << whole;
        const std::string shown = cut.substr(0, cut.size() - 1);
        if (name == "Anna") {
            EXPECT_EQ(shown, whole);
            continue;
        }
        ASSERT_TRUE(shown.ends_with("…")) << shown;
        const std::string kept = shown.substr(0, shown.size() - std::string("…").size());
        EXPECT_TRUE(whole.starts_with(kept));
        // The columns before the name are ASCII: what is left of it fills the terminal but for half a character.
        const std::size_t place = whole.find(name);
        const bool isWide = name.front() != 'x';
        const std::size_t width = place + (kept.size() - place) * (isWide ? 2 : 3) / 3 + 1;
        EXPECT_THAT(width, ::testing::AnyOf(70u, isWide ? 69u : 70u)) << shown;
    }
}

TEST(ToolWatch, GivesAContactWithCategoriesItsGroupBeforeItTells) {
    const Watched tool;
    Watch watch(tool.watching());
    const Json anna = addContactAlone(tool, TEXT("Anna"), TEXT("친구, 회사"));
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created Anna"));
    EXPECT_EQ(tool.json(0, "show", anna.dump())["group"], "친구");
    fileUnder(tool, anna, TEXT("회사"));
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-changed Anna"));
    EXPECT_FALSE(tool.json(0, "show", anna.dump()).contains("group"));
}

TEST(ToolWatch, HasFollowedAllThatItTellsOf) {
    const Watched tool;
    Watch watch(tool.watching());
    asAnotherProgram(tool, [] {
        const testing_support::ContactsSession session;
        const ObjectStoreBatch batch;
        for (int i = 0; i < 500; ++i) {
            const ComPtr<IContact> contact = session.newContact();
            contact->put_Categories(testing_support::bstr(TEXT("친구")).get());
            ASSERT_EQ(contact->Save(), S_OK);
        }
    });
    watch.changes(500);
    EXPECT_EQ(extensionRows(tool), 500u);
}

TEST(ToolWatch, EmptiesTheSlotsOfAContactThatIsGone) {
    const Watched tool;
    const Json anna = tool.json(0, "add", "--name", "Anna", "--mobile", "010-1")["oid"];
    tool("speed-dial", "set", "5", anna.dump(), "mobile");
    Watch watch(tool.watching());
    deleteContactAlone(tool, anna);
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-deleted "));
    EXPECT_EQ(tool.json(0, "speed-dial", "list"), Json::array());
    EXPECT_EQ(extensionRows(tool), 0u);
}

TEST(ToolWatch, MakesAndDropsTheGroupsOfCategories) {
    const Watched tool;
    addCategoryAlone(tool, TEXT("before"), 40);
    Watch watch(tool.watching());
    EXPECT_THAT(tool.groups(), ElementsAre("before", "가족", "친구", "학교", "회사"));
    const CEOID chess = addCategoryAlone(tool, TEXT("chess"), 41);
    EXPECT_THAT(watch.changes(1), ElementsAre("category-created chess"));
    EXPECT_THAT(tool.groups(), ElementsAre("before", "chess", "가족", "친구", "학교", "회사"));
    deleteCategoryAlone(tool, chess);
    EXPECT_THAT(watch.changes(1), ElementsAre("category-deleted "));
    EXPECT_THAT(tool.groups(), ElementsAre("before", "가족", "친구", "학교", "회사"));
}

TEST(ToolWatch, FollowsAnImportCompletely) {
    const Watched tool;
    Watch watch(tool.watching());
    tool("import", tool.file("people.csv", fileOfPeople(2'000)));
    std::vector<std::string> expected;
    for (int person = 1; person <= 2'000; ++person)
        expected.push_back("contact-created Person " + std::to_string(person));
    EXPECT_EQ(watch.changes(2'000), expected);
    EXPECT_EQ(watch.end(), "");
}

TEST(ToolWatch, WorksSideBySideWithAnother) {
    const Watched tool;
    Watch one(tool.watching());
    Watch other(tool.watching());
    for (const CString name : {TEXT("Anna"), TEXT("Paul"), TEXT("Bella")})
        addContactAlone(tool, name, TEXT("친구"));
    const auto three = ElementsAre("contact-created Anna", "contact-created Paul", "contact-created Bella");
    EXPECT_THAT(one.changes(3), three);
    EXPECT_THAT(other.changes(3), three);
    EXPECT_EQ(one.end(), "");
    EXPECT_EQ(other.end(), "");
    EXPECT_EQ(extensionRows(tool), 3u);
}

TEST(ToolWatch, EndsWellWhenInterruptedAndWhenTerminated) {
    const Watched tool;
    for (const auto ask : {&Process::interrupt, &Process::terminate}) {
        Watch watch(tool.watching());
        tool.added("Anna");
        watch.changes(1);
        EXPECT_EQ(watch.end(ask), "");
    }
}

TEST(ToolWatch, EndsWellWhenNobodyReadsAnyMore) {
    const Watched tool;
    Watch watch(tool.watching());
    watch.process().closeOutput();
    const Outcome outcome = watch.process().wait();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST(ToolWatch, EndsWellWhileItsReaderLeavesTheOutputUnread) {
    const Watched tool;
    const UnreadPipe pipe((tool / "pipe").string());
    Command command = tool.watching();
    command.arguments = {"-c", "exec \"$0\" watch >\"$1\"", std::exchange(command.program, "/bin/sh"), pipe.path()};
    Watch watch(command);
    tool("import", tool.file("people.csv", fileOfPeople(500)));
    EXPECT_TRUE(pipe.waitForText());
    EXPECT_EQ(watch.end(), "");
}

TEST(ToolWatch, SaysWhenItsOutputCannotBeWritten) {
    const Watched tool;
    Command command = tool.watching();
    command.arguments = {"-c", "exec \"$0\" watch >/dev/full", std::exchange(command.program, "/bin/sh")};
    Watch watch(command);
    tool.added("Anna");
    EXPECT_THAT(watch.errorLine(), HasSubstr("tessera: cannot write to standard output"));
    EXPECT_EQ(watch.process().wait().status, 3);
}

TEST(ToolWatch, GoesOnFromNowWhenTheStoreHasForgottenWhatWas) {
    const Watched tool;
    Watch watch(tool.watching());
    makeTheStoreForget(tool);
    EXPECT_THAT(watch.errorLine(), HasSubstr("tessera: more has changed"));
    tool.added("Anna");
    EXPECT_THAT(watch.changes(1), ElementsAre("contact-created Anna"));
}

TEST(ToolWatch, NeedsNoProcessorWhileNothingIsWritten) {
    const Watched tool;
    Watch watch(tool.watching());
    for (const std::string name : {"Anna", "Paul", "Bella"})
        tool.added(name);
    watch.changes(3);
    const auto before = watch.process().processorTime();
    for (int i = 0; i < 20; ++i)
        tool("list");
    EXPECT_LT(watch.process().processorTime() - before, std::chrono::milliseconds(20));
}

TEST(ToolWatch, WantsAPhoneBook) {
    const Tool tool;
    expectFailure(tool("watch"), 3, "there is no phone book in " + tool.store().string());
    expectFailure(tool("watch", "contacts"), 2, "contacts");
    EXPECT_FALSE(exists(tool.store()));
}
