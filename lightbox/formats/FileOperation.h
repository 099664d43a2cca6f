#pragma once

#include "scene/NonCopyable.h"

namespace lightbox {

class Host;

/// What is being done with scene files at this moment; operations nest (a reference is read while its scene
/// opens).
enum class FileOperation { New, Open, Import, Reference, Save, Export };

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
