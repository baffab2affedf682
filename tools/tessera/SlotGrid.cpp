#include "SlotGrid.h"

#include <algorithm>
#include <vector>

#include "DisplayText.h"
#include "tessera/phonebook/PhoneBookDBMgr.h"
#include "tessera/platform/base/Unicode.h"

namespace Tool {

namespace {

using PhoneBook::SpeedDialInfo;

constexpr std::size_t numberWidth = 3;  // two digits and a blank
constexpr std::size_t cellGap = 2;
constexpr std::size_t shortestName = 4;
constexpr std::size_t longestName = 16;
constexpr std::size_t mostColumns = 10;  // a slot is easy to find in tens

std::string nameOf(const SpeedDialInfo& slot) {
    if (slot.dwSDialID == 0) return "-";
    if (!slot.strName.IsEmpty()) return displayable(utf8Of(slot.strName.view()));
    return displayable(utf8Of(PhoneBook::PhoneBookDBMgr::makeTelNoStrFromCID(slot.strTelNo).view()));
}

std::string cellOfSlot(std::size_t slot, const std::string& name, std::size_t nameWidth) {
    std::string cell = (slot < 10 ? " " : "") + std::to_string(slot) + " ";
    const std::string cut = cutToWidth(name, nameWidth);
    return cell + cut + std::string(nameWidth - std::min(nameWidth, displayWidth(cut)), ' ');
}

}  // namespace

std::string slotGrid(std::span<const SpeedDialInfo> slots, std::size_t width) {
    std::vector<std::string> names;
    std::size_t longest = shortestName;
    for (const SpeedDialInfo& slot : slots) {
        names.push_back(nameOf(slot));
        longest = std::max(longest, displayWidth(names.back()));
    }
    const std::size_t room = width > numberWidth ? width - numberWidth : 1;
    const std::size_t nameWidth = std::min({longest, longestName, room});
    const std::size_t cellWidth = numberWidth + nameWidth + cellGap;
    const std::size_t columns = std::clamp<std::size_t>((width + cellGap) / cellWidth, 1, mostColumns);

    std::string grid;
    std::string line;
    for (std::size_t i = 0; i < names.size(); ++i) {
        line += cellOfSlot(i + 1, names[i], nameWidth);
        if ((i + 1) % columns != 0 && i + 1 != names.size()) {
            line.append(cellGap, ' ');
            continue;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        grid += line + '\n';
        line.clear();
    }
    return grid;
}

}  // namespace Tool
