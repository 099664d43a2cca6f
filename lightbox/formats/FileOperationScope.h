#pragma once

#include "formats/FileOperation.h"
#include "scene/NonCopyable.h"

namespace lightbox {

class Host;

/// While one exists, an operation of that kind runs: MFileIO and the conditions "readingFile", "writingFile",
/// "opening" and "newing" say so.
class FileOperationScope : NonCopyable {
public:
    FileOperationScope(Host& host, FileOperation operation);
    ~FileOperationScope();

private:
    void TellConditions();

    Host& host_;
};

} // namespace lightbox
