#include "Progress.h"

#include <iostream>
#include <string>

#include "System.h"

namespace Tool {

namespace {

constexpr std::size_t barWidth = 30;

}  // namespace

Progress::~Progress() {
    clear();
}

void Progress::show(int done) {
    if (!wanted_ || total_ == 0) return;
    const auto filled = barWidth * static_cast<std::size_t>(done) / static_cast<std::size_t>(total_);
    std::string bar = "[" + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] " +
                      std::to_string(done) + " of " + std::to_string(total_) + ' ' + units_;
    // Spaces and a carriage return, no escape sequences: any terminal will do.
    std::cerr << '\r' << bar << std::flush;
    drawn_ = bar.size();
}

bool progressIsWanted(const Settings& settings) {
    return errorIsTerminal() && !(settings.json && outputIsTerminal());
}

void Progress::clear() {
    if (drawn_ == 0) return;
    std::cerr << '\r' << std::string(drawn_, ' ') << '\r' << std::flush;
    drawn_ = 0;
}

}  // namespace Tool
