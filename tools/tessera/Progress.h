#pragma once

#include <cstddef>

namespace Tool {

/// A bar on standard error, drawn over itself, that says how far long work has come.
class Progress {
public:
    Progress(int total, bool wanted) : total_(total), wanted_(wanted) {}
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(int done);
    /// Takes the bar off the screen; the next `show` draws it again.
    void clear();

private:
    int total_;
    bool wanted_;
    std::size_t drawn_ = 0;  ///< Columns on the screen.
};

}  // namespace Tool
