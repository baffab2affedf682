// Whatever is done with the tool alone, a check finds nothing wrong: with groups whose names read differently in a
// list, slot words of contacts that have no slot, numbers that change under their slots, and the like.

#include <random>

#include "tests/tools/ToolTest.h"

using namespace tool_test;

namespace {

using Line = std::vector<std::string>;

/// Makes up command lines, a few of everything, so that they meet.
class Work {
public:
    explicit Work(unsigned seed) : random_(seed) {}

    Line next() {
        switch (upTo(13)) {
            case 0:
            case 1:
            case 2:
                return withFields({"add", "--name", any({"Anna", "Bella", "김민수"})});
            case 3:
            case 4:
                return withFields({"edit", oid(), "--name", any({"Cara", "Dora"})});
            case 5:
                return {"delete", oid()};
            case 6:
            case 7:
                return {"speed-dial", "set", slot(), oid(), any({"mobile", "home", "business"})};
            case 8:
                return {"speed-dial", "move", slot(), slot()};
            case 9:
                return {"speed-dial", "clear", slot()};
            case 10:
                return {any({"group", "category"}), "add", group()};
            case 11:
                return {any({"group", "category"}), "rename", group(), group()};
            case 12:
                return {any({"group", "category"}), "delete", group()};
            default:
                return {"call", "log", number()};
        }
    }
    void know(const Json& added) { oids_.push_back(added["oid"].dump()); }

private:
    unsigned upTo(std::size_t largest) { return static_cast<unsigned>(random_() % (largest + 1)); }
    std::string any(const std::vector<std::string>& all) { return all[upTo(all.size() - 1)]; }
    std::string oid() { return any(oids_); }
    std::string slot() { return any({"1", "2", "3"}); }
    std::string number() { return any({"", "010-1", "0101", "02-2", "+82 10-3"}); }
    std::string group() { return any({"친구", "가족", "club", "tea"}); }

    Line withFields(Line line) {
        for (const char* key : {"--mobile", "--home", "--business"}) {
            if (upTo(1) == 0) line.insert(line.end(), {key, number()});
        }
        if (upTo(1) == 0) line.insert(line.end(), {"--group", any({"", "친구", "club", "none", "x;y", " q, r", ","})});
        if (upTo(3) == 0) line.insert(line.end(), {"--private", any({"0", "1", "0x0302", "0xFF630201"})});
        return line;
    }

    std::mt19937 random_;
    Line oids_ = {"15"};
};

std::string textOf(const std::vector<Line>& lines) {
    std::string text;
    for (const Line& line : lines) {
        for (const std::string& word : line)
            text += " '" + word + '\'';
        text += '\n';
    }
    return text;
}

void workAndCheck(unsigned seed) {
    const Tool tool;
    tool("init");
    Work work(seed);
    std::vector<Line> done;
    for (int i = 0; i < 60; ++i) {
        Line line = work.next();
        line.insert(line.begin(), "--json");
        const Outcome outcome = run(tool.command(line));
        done.push_back(line);
        ASSERT_NE(outcome.status, -1) << textOf(done);
        if (line[1] == "add" && outcome.status == 0) work.know(Json::parse(outcome.out));
        if (i % 10 == 9) {
            const Outcome checked = tool("check");
            ASSERT_EQ(checked.status, 0) << checked.out << "behind\n" << textOf(done);
        }
    }
    EXPECT_EQ(tool("check", "--full").status, 0);
}

}  // namespace

TEST(ToolCheckAfterWork, FindsNothingWrong) {
    for (const unsigned seed : {1u, 2u})
        workAndCheck(seed);
}
