#pragma once

#include "tessera/Export.h"
#include "tessera/platform/base/CString.h"

/// A file of bytes. Closes itself when destroyed.
class TESSERA_API CFile {
public:
    /// What Open accepts; it reads bytes, and others may write meanwhile, whatever of these is said.
    enum OpenFlags : UINT { modeRead = 0x0000, shareDenyWrite = 0x0020, typeBinary = 0x8000 };

    CFile() = default;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    ~CFile();

    /// Opens an existing file for reading; FALSE when there is none, it is not a regular file, or it
    /// may not be read. The path is a UTF-16 text in the system's own notation.
    BOOL Open(const WCHAR* path, UINT flags);
    /// The file's length in bytes.
    std::uint64_t GetLength() const;
    /// Reads up to `count` bytes; answers how many were read, fewer at the end of the file or on an error.
    std::size_t Read(void* buffer, std::size_t count);
    /// Does nothing when no file is open.
    void Close();

private:
    int descriptor_ = -1;
};
