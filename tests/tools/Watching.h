#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "tests/tools/ContactsOf.h"
#include "tests/tools/ToolTest.h"

namespace tool_test {

using testing_support::Command;
using testing_support::Process;

inline constexpr std::chrono::seconds patience{60};

/// A watcher that has begun to follow the store.
class Watch {
public:
    using Read = std::optional<std::string> (Process::*)(std::chrono::milliseconds);

    explicit Watch(const Command& command) : process_(interruptible(command)) {
        EXPECT_THAT(errorLine(),
                    ::testing::AllOf(::testing::HasSubstr("following "), ::testing::HasSubstr("interrupt to end")));
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
    std::string end(void (Process::*ask)() = &Process::interrupt) {
        (process_.*ask)();
        const Outcome outcome = process_.wait();
        EXPECT_EQ(outcome.status, 0);
        return out_ + outcome.out;
    }
    Process& process() { return process_; }

private:
    static Command interruptible(Command command) {
        command.interruptible = true;
        return command;
    }
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

}  // namespace tool_test
