#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// The number in what a file has for one, and what does not go with it.
struct TelValue {
    std::u16string number;  ///< Empty when there is none.
    std::string remark;     ///< Empty when nothing is left out.
};

/// Takes a number as it is and out of a "tel:" address; other addresses have none.
TelValue telephoneNumberOf(std::u16string_view value);

}  // namespace Tool
