// Writes what people and shells read of the tool: its manual and its completions.
// tessera_pages manual FRAME | bash | zsh     to standard output

#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "../tessera/Program.h"
#include "../tessera/port/Shell.h"
#include "Pages.h"

namespace {

std::string contentsOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream contents;
    contents << stream.rdbuf();
    if (!stream) throw std::runtime_error(file + ": cannot be read");
    return contents.str();
}

std::string pageOf(const Tool::Command& program, const std::vector<std::string>& arguments) {
    if (arguments.size() == 2 && arguments[0] == "manual") return Pages::manual(program, contentsOf(arguments[1]));
    if (arguments == std::vector<std::string>{"bash"}) return Pages::bashCompletion(program);
    if (arguments == std::vector<std::string>{"zsh"}) return Pages::zshCompletion(program);
    throw std::runtime_error("usage: tessera_pages manual FRAME | bash | zsh");
}

}  // namespace

int main(int argc, char** argv) {
    const Tool::port::StandardStreams streams;
    try {
        Tool::Settings settings;
        Tool::Action chosen;
        Tool::Command program(Tool::programText());
        Tool::defineProgram(program, settings, chosen);
        std::cout << pageOf(program, {argv + 1, argv + argc});
        return std::cout.flush() ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "tessera_pages: " << error.what() << '\n';
        return 1;
    }
}
