#pragma once

#include "formats/FileOperation.h"

namespace lightbox {

class Host;

/// While one exists, an operation of that kind runs: MFileIO and the conditions "readingFile", "writingFile",
/// "opening" and "newing" say so.
class FileOperationScope {
public:
    FileOperationScope(Host& host, FileOperation operation);
    ~FileOperationScope();
    FileOperationScope(const FileOperationScope&) = delete;
    FileOperationScope& operator=(const FileOperationScope&) = delete;

private:
    void TellConditions();

    Host& host_;
};

} // namespace lightbox
