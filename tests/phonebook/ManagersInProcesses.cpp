#include "tests/phonebook/ManagersInProcesses.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/phonebook/ManagersAtWork.h"
#include "tests/support/TemporaryStore.h"

namespace testing_support {
namespace {

WString textOf(const std::string& bytes) {
    return WString(textOfUtf8(bytes).value().view());
}

// A report as text: what was done, then a line for each contact.

void writeReport(const std::filesystem::path& path, const WorkReport& report) {
    std::ofstream out(path);
    out << report.succeeded << ' ' << report.inserted << ' ' << report.updated << ' ' << report.deleted << '\n';
    for (const auto& [oid, contact] : report.left)
        out << oid << '|' << contact << '\n';
}

WorkReport readReport(const std::filesystem::path& path) {
    WorkReport report;
    std::ifstream in(path);
    in >> report.succeeded >> report.inserted >> report.updated >> report.deleted >> std::ws;
    const auto field = [&in](char end) {
        std::string text;
        std::getline(in, text, end);
        return text;
    };
    while (in.peek() != std::ifstream::traits_type::eof()) {
        const auto oid = static_cast<unsigned>(std::stoul(field('|')));
        const WString name = textOf(field('|'));
        const WString mobile = textOf(field('|'));
        report.left[oid] = {name, mobile, textOf(field('\n'))};
    }
    return report;
}

/// Whatever is thrown ends the process here: it must not return into the copy of the test that it is.
[[noreturn]] void workAndExit(const TemporaryFolder& folder, unsigned worker, std::chrono::seconds howLong) noexcept {
    WorkReport report;
    const bool mounted = ObjectStore::mount((folder / "store.db").string(), quickOptions()) != FALSE;
    if (mounted) report = workFor(howLong, worker);
    ObjectStore::unmount();
    writeReport(folder / std::to_string(worker), report);
    ::_exit(0);
}

}  // namespace

void expectTwoProcessesLeaveWhatTheySay(std::chrono::seconds howLong) {
    const TemporaryFolder folder;
    std::array<pid_t, workers> children{};
    for (unsigned worker = 0; worker < workers; ++worker) {
        children[worker] = ::fork();
        ASSERT_NE(children[worker], -1);
        if (children[worker] == 0) workAndExit(folder, worker, howLong);
    }
    WorkReports reports;
    for (unsigned worker = 0; worker < workers; ++worker) {
        int status = -1;
        ASSERT_EQ(::waitpid(children[worker], &status, 0), children[worker]);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        reports[worker] = readReport(folder / std::to_string(worker));
    }
    ASSERT_TRUE(ObjectStore::mount((folder / "store.db").string(), quickOptions()));
    expectHeld(reports);
    ObjectStore::unmount();
}

}  // namespace testing_support
