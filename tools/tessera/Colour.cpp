#include "Colour.h"

#include <cstdlib>
#include <string_view>

#include "System.h"

namespace Tool {

namespace {

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool isWanted(const Settings& settings, bool isTerminal) {
    if (settings.json) return false;
    if (settings.colour != Settings::Colour::automatic) return settings.colour == Settings::Colour::always;
    const std::string_view terminal = environment("TERM");
    return isTerminal && environment("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
}

std::string_view sequenceOf(Accent accent) {
    switch (accent) {
        case Accent::heading:
            return "\x1B[1m";  // bold
        case Accent::match:
            return "\x1B[1;32m";  // bold green
        case Accent::error:
            return "\x1B[1;31m";  // bold red
    }
    return {};
}

}  // namespace

bool outputHasColour(const Settings& settings) {
    return isWanted(settings, outputIsTerminal());
}

bool errorHasColour(const Settings& settings) {
    return isWanted(settings, errorIsTerminal());
}

std::string accented(const std::string& text, Accent accent, bool hasColour) {
    constexpr std::string_view plain = "\x1B[0m";
    if (!hasColour || text.empty()) return text;
    return std::string(sequenceOf(accent)).append(text).append(plain);
}

}  // namespace Tool
