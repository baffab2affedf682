#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Options.h"
#include "Pages.h"

namespace Pages {

namespace {

/// A word as roff sets it, whatever is in it.
std::string roff(const std::string& word) {
    std::string set;
    for (const char ch : word) {
        if (ch == '\\') {
            set += "\\e";
        } else if (ch == '-') {
            set += "\\-";
        } else {
            set += ch;
        }
    }
    return set;
}

std::string bold(const std::string& words) {
    return "\\fB" + roff(words) + "\\fP";
}

/// "--and" of "--and," and the like: how much of a word is the name of an option; 0 when it is no option.
std::size_t lengthOfOption(const std::string& word) {
    if (!word.starts_with("--")) return 0;
    const auto isPart = [](unsigned char ch) { return ch == '-' || std::isalnum(ch) != 0; };
    const auto end = std::find_if_not(word.begin() + 2, word.end(), isPart);
    return static_cast<std::size_t>(end - word.begin());
}

/// The names of the command's arguments: words that stand for something else.
std::set<std::string> placeholdersOf(const Command& command) {
    std::set<std::string> names;
    for (const CLI::Option* argument : argumentsOf(command))
        names.insert(nameOf(*argument));
    return names;
}

/// The words of a sentence, those that are typed in bold and those that stand for something else in italics.
class Words {
public:
    explicit Words(const Command& command) : placeholders_(placeholdersOf(command)) {}

    /// What is between quotes is one word.
    std::vector<std::string> of(const std::string& text) const;

private:
    std::string styled(const std::string& word) const;

    std::set<std::string> placeholders_;
};

std::string Words::styled(const std::string& word) const {
    if (const std::size_t length = lengthOfOption(word); length != 0)
        return bold(word.substr(0, length)) + roff(word.substr(length));
    const std::size_t letters = word.find_last_not_of(".,;:") + 1;
    if (placeholders_.count(word.substr(0, letters)) != 0)
        return "\\fI" + word.substr(0, letters) + "\\fP" + word.substr(letters);
    return roff(word);
}

std::vector<std::string> Words::of(const std::string& text) const {
    std::vector<std::string> words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        if (word.front() != '\'') {
            words.push_back(styled(word));
            continue;
        }
        std::string more;
        while (word.find('\'', 1) == std::string::npos && stream >> more)
            word += ' ' + more;
        const std::size_t end = word.find('\'', 1);
        if (end == std::string::npos) throw std::runtime_error("a quote has no end: " + text);
        words.push_back(bold(word.substr(1, end - 1)) + roff(word.substr(end + 1)));
    }
    return words;
}

/// The words in lines of a page's source: a sentence begins on a line of its own, and none is a request by mistake.
std::string linesOf(const std::vector<std::string>& words) {
    constexpr std::size_t longest = 78;
    std::string lines;
    std::string line;
    const auto end = [&] {
        if (!line.empty()) lines += (line.front() == '.' || line.front() == '\'' ? "\\&" + line : line) + '\n';
        line.clear();
    };
    for (const std::string& word : words) {
        if (line.size() + 1 + word.size() > longest) end();
        line += (line.empty() ? "" : " ") + word;
        if (word.ends_with('.')) end();
    }
    end();
    return lines;
}

std::string argumentText(const CLI::Option& argument) {
    return "Ar " + nameOf(argument) + (takesMany(argument) ? " ..." : "");
}

std::string optionText(const CLI::Option& option) {
    const std::string flag = "Fl " + roff(nameOf(option).substr(1));
    return takesValue(option) ? flag + " Ar " + option.get_type_name() : flag;
}

std::string textOf(const CLI::Option& option) {
    return option.get_positional() ? argumentText(option) : optionText(option);
}

/// What of a command excludes one another stands between bars; what is optional is in brackets.
std::string usageOf(const Command& command) {
    std::string lines;
    std::vector<const CLI::Option*> parts = argumentsOf(command);
    const auto options = optionsOf(command);
    parts.insert(parts.end(), options.begin(), options.end());
    std::set<const CLI::Option*> written;
    for (const CLI::Option* part : parts) {
        if (!written.insert(part).second) continue;
        std::string line = textOf(*part);
        const auto excluded = part->get_excludes();
        for (const CLI::Option* other : parts) {
            const bool isAlternative = std::ranges::find(excluded, other) != excluded.end();
            if (isAlternative && written.insert(other).second) line += " | " + textOf(*other);
        }
        lines += (part->get_required() ? "." : ".Op ") + line + '\n';
        if (!part->get_positional() && takesMany(*part)) lines += "\\&...\n";
    }
    return lines;
}

std::string synopsisOf(const Command& program) {
    std::string lines;
    for (const Command* command : leavesOf(program))
        lines += ".Nm\n.Op Ar options\n.Cm " + command->path() + '\n' + usageOf(*command);
    return lines;
}

std::string itemOf(const CLI::Option& option, const Words& words) {
    return ".It " + textOf(option) + '\n' + linesOf(words.of(option.get_description() + '.'));
}

/// What a command's options and arguments mean; empty when it has none.
std::string listOf(const Command& command) {
    const Words words(command);
    std::string items;
    for (const CLI::Option* argument : argumentsOf(command))
        items += itemOf(*argument, words);
    for (const CLI::Option* option : optionsOf(command))
        items += itemOf(*option, words);
    return items.empty() ? items : ".Pp\n.Bl -tag -width Ds -compact\n" + items + ".El\n";
}

std::string headOf(const Command& command) {
    std::string head = ".It Cm " + command.path();
    for (const CLI::Option* argument : argumentsOf(command))
        head += (argument->get_required() ? " " : " Op ") + argumentText(*argument);
    return head + '\n';
}

std::string paragraphsOf(const Command& command) {
    const Words words(command);
    std::string text = linesOf(words.of(command.text().summary + '.'));
    for (const std::string& paragraph : command.text().details)
        text += ".Pp\n" + linesOf(words.of(paragraph));
    return text;
}

std::string examplesOf(const Command& command) {
    std::string lines;
    for (const std::string& example : command.text().examples)
        lines += roff(example) + '\n';
    return ".Bd -literal -offset indent\n" + lines + ".Ed\n";
}

/// The families' own paragraphs stand before their commands.
std::string commandsOf(const Command& program) {
    std::string text;
    for (const Command* command : program.commands()) {
        const bool isFamily = !command->commands().empty();
        text += headOf(*command) + paragraphsOf(*command);
        if (isFamily) {
            text += commandsOf(*command);
        } else {
            text += listOf(*command) + examplesOf(*command);
        }
    }
    return text;
}

std::string globalOptionsOf(const Command& program) {
    const Words words(program);
    std::string items = ".It Fl \\-help\n" + linesOf(words.of(program.get_help_ptr()->get_description() + '.'));
    for (const CLI::Option* option : optionsOf(program))
        items += itemOf(*option, words);
    return items;
}

void replaceLine(std::string& page, const std::string& name, const std::string& lines) {
    const std::string line = '\n' + name + '\n';
    const std::size_t place = page.find(line);
    if (place == std::string::npos) throw std::runtime_error("the manual's frame has no line " + name);
    page.replace(place + 1, line.size() - 1, lines);
}

}  // namespace

std::string manual(const Command& program, const std::string& frame) {
    std::string page = frame;
    replaceLine(page, "@SYNOPSIS@", synopsisOf(program));
    replaceLine(page, "@OPTIONS@", globalOptionsOf(program));
    replaceLine(page, "@COMMANDS@", commandsOf(program));
    replaceLine(page, "@EXAMPLES@", examplesOf(program));
    return page;
}

}  // namespace Pages
