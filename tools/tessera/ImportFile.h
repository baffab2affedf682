#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "System.h"
#include "tessera/platform/base/CString.h"

namespace Tool {

/// Neighbouring lines that are not handed to the phone book, all for one reason.
struct SkippedLines {
    int first;
    int count;
    const char* why;
};

/// A line that is handed to the phone book, which will not keep all of it as it stands there.
struct LineNote {
    int line;
    std::string text;
};

/// A file of contacts, checked, and written anew as the phone book reads it: UTF-16LE without a mark, lines
/// that end with a line feed alone, none that the phone book would make nothing good of, country calling codes
/// separated from the rest of their numbers.
class ImportFile {
public:
    /// `text` is the file's, in well-formed UTF-8. Throws a Failure that names the file when it is none of contacts.
    ImportFile(const std::string& path, std::string_view text);

    /// The file for the phone book, there while this lives.
    const std::string& cleanPath() const { return clean_.path(); }
    /// Lines behind the header, those that are skipped included.
    int lines() const { return lines_; }
    /// In their order; the header is line 1.
    const std::vector<SkippedLines>& skipped() const { return skipped_; }
    /// Whether there are lines in it, and none of them can be imported; blank ones do not count.
    bool isAllBad() const;
    /// In the order of their lines, one a line at most.
    const std::vector<LineNote>& notes() const { return notes_; }

private:
    void take(const CString& line, int number);
    void skip(int number, const char* why);
    void write(const CString& line);
    void flush();

    PrivateFile clean_;
    std::string buffer_;
    int lines_ = 0;
    std::vector<SkippedLines> skipped_;
    std::vector<LineNote> notes_;
};

}  // namespace Tool
