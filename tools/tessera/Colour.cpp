#include "Colour.h"

#include <cstdlib>
#include <string_view>

#include "port/Shell.h"

namespace Tool {

namespace {

bool isWanted(const Settings& settings, port::Stream stream) {
    if (settings.json) return false;
    if (settings.colour != Settings::Colour::automatic) return settings.colour == Settings::Colour::always;
    const char* const refusal = std::getenv("NO_COLOR");
    const bool isRefused = refusal != nullptr && *refusal != '\0';
    return !isRefused && port::takesColour(stream);
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
    return isWanted(settings, port::Stream::output);
}

bool errorHasColour(const Settings& settings) {
    return isWanted(settings, port::Stream::error);
}

std::string accented(const std::string& text, Accent accent, bool hasColour) {
    constexpr std::string_view plain = "\x1B[0m";
    if (!hasColour || text.empty()) return text;
    return std::string(sequenceOf(accent)).append(text).append(plain);
}

}  // namespace Tool
