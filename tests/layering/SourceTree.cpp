#include "tests/layering/SourceTree.h"

#include <fstream>
#include <regex>
#include <sstream>

namespace Layering {

namespace {

namespace fs = std::filesystem;

/// The text with its comments blanked; every line keeps its number, and strings are left alone.
std::string withoutComments(std::string_view text) {
    std::string code(text);
    enum class In { statement, lineComment, blockComment, string } state = In::statement;
    for (std::size_t i = 0; i < code.size(); ++i) {
        const std::string_view two = text.substr(i, 2);
        const char ch = text[i];
        if (state == In::statement) {
            if (two == "//") state = In::lineComment;
            if (two == "/*") state = In::blockComment;
            if (ch == '"') state = In::string;
        } else if (state == In::string) {
            if (ch == '\\') ++i;
            if (ch == '"' || ch == '\n') state = In::statement;
        } else if (state == In::lineComment && ch == '\n') {
            state = In::statement;
        } else if (state == In::blockComment && two == "*/") {
            code[i] = code[i + 1] = ' ';
            ++i;
            state = In::statement;
        }
        const bool isComment = state == In::lineComment || state == In::blockComment;
        if (isComment && code[i] != '\n') code[i] = ' ';
    }
    return code;
}

Include quoted(const std::string& name, const std::string& file, const fs::path& root) {
    Include include{.file = file, .line = 0, .target = name, .isOurs = true, .isFound = false};
    const fs::path beside = (fs::path(file).parent_path() / name).lexically_normal();
    for (const fs::path& candidate : {fs::path(name).lexically_normal(), beside}) {
        if (!fs::exists(root / candidate)) continue;
        include.target = candidate.generic_string();
        include.isFound = true;
        break;
    }
    return include;
}

bool isSource(const fs::path& path) {
    const fs::path extension = path.extension();
    return extension == ".h" || extension == ".cpp" || extension == ".inc";
}

std::string contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream contents;
    contents << stream.rdbuf();
    return contents.str();
}

}  // namespace

Findings findingsIn(std::string_view text, const std::string& file, const fs::path& root) {
    static const std::regex includeLine(R"re(^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>))re");
    static const std::regex conditionLine(R"(^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b(.*))");
    static const std::regex systemMacro(
        R"(\b(_?WIN(?:32|64)|__CYGWIN__|__MINGW\w*|_*linux_*|_*unix_*|__APPLE__|__MACH__|__ANDROID__|__\w*BSD__|__QNX\w*|__EMSCRIPTEN__|_POSIX\w*|__GLIBC\w*)\b)");

    Findings findings;
    std::istringstream lines(withoutComments(text));
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        std::smatch match;
        if (std::regex_search(line, match, includeLine)) {
            Include include =
                match[1].matched ? quoted(match[1], file, root) : Include{.file = file, .line = 0, .target = match[2]};
            include.line = number;
            findings.includes.push_back(include);
        } else if (std::regex_search(line, match, conditionLine)) {
            const std::string condition = match[1];
            if (std::regex_search(condition, match, systemMacro))
                findings.conditions.push_back({file, number, match[1]});
        }
    }
    return findings;
}

Findings findingsBelow(const fs::path& folder, const fs::path& root) {
    Findings all;
    if (!fs::exists(folder)) return all;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || !isSource(entry.path())) continue;
        const std::string file = fs::relative(entry.path(), root).generic_string();
        const Findings found = findingsIn(contentsOf(entry.path()), file, root);
        all.includes.insert(all.includes.end(), found.includes.begin(), found.includes.end());
        all.conditions.insert(all.conditions.end(), found.conditions.begin(), found.conditions.end());
    }
    return all;
}

}  // namespace Layering
