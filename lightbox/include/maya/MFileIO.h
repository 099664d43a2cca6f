#pragma once

#include <maya/MStatus.h>
#include <maya/MString.h>

/// What the host is doing with scene files at the moment.
class MFileIO {
public:
    static bool isReadingFile();
    static bool isWritingFile();
    static bool isOpeningFile();
    static bool isNewingFile();
    static bool isImportingFile();
    static bool isReferencingFile();
    /// Path of the scene; empty for one that was never saved.
    static MString currentFile();
};
