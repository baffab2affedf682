#pragma once

#include <map>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace Tool {

/// What people are told of a command, in --help and in the manual.
struct CommandText {
    std::string name;
    std::string summary;                     ///< One line without a full stop.
    std::vector<std::string> details = {};   ///< Paragraphs. What is in 'quotes' is typed as it stands there.
    std::vector<std::string> examples = {};  ///< Lines for a shell that work on a phone book with what they name.
};

/// What an argument or the value of an option can be, as far as a shell can complete it.
struct Completion {
    // The kinds of what a phone book has names for, as 'candidates' knows them.
    static constexpr const char* persons = "persons";
    static constexpr const char* groups = "groups";
    static constexpr const char* categories = "categories";

    bool isFile = false;
    std::vector<std::string> words = {};
    std::string names = {};  ///< One of the kinds: the phone book says which there are. Empty: none.
};

/// A command of the tool, a family of them, or the tool itself.
class Command : public CLI::App {
public:
    /// The tool itself.
    explicit Command(const CommandText& text);

    /// Adds a command below this one, which owns it.
    Command& add(const CommandText& text);
    /// The same for one that programs call: nobody is told of it.
    Command& addHidden(const CommandText& text);

    const CommandText& text() const { return text_; }
    /// The commands below that people are told of, in the order in which they were added.
    std::vector<const Command*> commands() const;
    /// What is typed behind "tessera" for it: "speed-dial set".
    std::string path() const;

    /// Says what an option of this command can be; those of which nothing is said can be anything.
    void completeWithFiles(const CLI::Option* option) { completions_[option] = {.isFile = true}; }
    void completeWithNames(const CLI::Option* option, const char* kind) { completions_[option] = {.names = kind}; }
    void completeWithWords(const CLI::Option* option, const std::vector<std::string>& words) {
        completions_[option] = {.words = words};
    }
    Completion completionOf(const CLI::Option* option) const;

private:
    Command(const CommandText& text, CLI::App* parent);

    CommandText text_;
    std::map<const CLI::Option*, Completion> completions_;
};

}  // namespace Tool
