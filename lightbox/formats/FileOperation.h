#pragma once

#include "scene/NonCopyable.h"

namespace lightbox {

class Host;

/// An operation on scene files. Operations nest: a reference is read while its scene opens.
enum class FileOperation { New, Open, Import, Reference, Save, Export };

/// Marks an operation as running for the lifetime of this object. MFileIO and the conditions "readingFile",
/// "writingFile", "opening" and "newing" follow it.
class FileOperationScope : NonCopyable {
public:
    FileOperationScope(Host& host, FileOperation operation);
    ~FileOperationScope();

private:
    void UpdateConditions();

    Host& host_;
};

} // namespace lightbox
