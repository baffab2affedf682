#pragma once

#include <cstddef>

#include "Settings.h"

namespace Tool {

/// A bar on standard error, drawn over itself, that says how far long work has come.
class Progress {
public:
    /// `units` are what is counted, such as "lines".
    Progress(int total, const char* units, bool wanted) : total_(total), units_(units), wanted_(wanted) {}
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(int done);
    /// Takes the bar off the screen; the next `show` draws it again.
    void clear();

private:
    int total_;
    const char* units_;
    bool wanted_;
    std::size_t drawn_ = 0;  ///< Columns on the screen.
};

/// Where JSON runs over the terminal a bar would only be in its way.
bool progressIsWanted(const Settings& settings);

}  // namespace Tool
