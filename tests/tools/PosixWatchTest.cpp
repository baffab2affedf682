// watch: its terminal, its end, output that nobody reads or that cannot be written, and what it costs.

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "tests/tools/ImportedFiles.h"
#include "tests/tools/Watching.h"

using namespace tool_test;
using ::testing::HasSubstr;

namespace {

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

}  // namespace

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
