#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "VCardLines.h"
#include "VCardProperty.h"

namespace Tool {

/// A card as the file has it.
struct VCard {
    int number = 0;  ///< Among the cards of the file, from 1.
    int line = 0;    ///< Where it begins.
    VCardVersion version = VCardVersion::v30;
    std::vector<VCardProperty> properties;
    std::vector<int> unreadableLines;
    std::vector<std::string> nested;  ///< Properties that hold a card of their own, which is passed over.
    std::string problem;              ///< Why it is no whole card; empty when it is.
};

/// Lines that belong to no card.
struct StrayLines {
    int first;
    int last;
};

/// Takes a file of cards apart, card by card. The bytes are borrowed; ASCII characters in them are themselves.
class VCardReader {
public:
    explicit VCardReader(std::string_view bytes) : lines_(bytes) {}

    bool next(VCard& card);
    /// Those that `next` has passed over so far.
    const std::vector<StrayLines>& stray() const { return stray_; }

private:
    bool nextLine(VCardVersion version);
    bool findBegin();
    void read(VCard& card);
    void take(VCard& card);

    VCardLines lines_;
    std::string line_;
    bool isAtBegin_ = false;  ///< The next card has begun already, before the end of the one before.
    int cards_ = 0;
    std::vector<StrayLines> stray_;
};

/// Whether one of so many first lines, blank ones not counted, begins a card.
bool beginWithVCard(std::string_view bytes, int lines);

}  // namespace Tool
