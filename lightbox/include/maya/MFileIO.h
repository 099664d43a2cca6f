#pragma once

#include <maya/MStatus.h>
#include <maya/MString.h>

/// The state of the host's scene file operations.
class MFileIO {
public:
    static bool isReadingFile();
    static bool isWritingFile();
    static bool isOpeningFile();
    static bool isNewingFile();
    static bool isImportingFile();
    static bool isReferencingFile();
    /// The path of the scene; empty for one that was never saved.
    static MString currentFile();
};
