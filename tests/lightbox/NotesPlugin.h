#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>

/// A small plug-in for tests of scene files: the data type "notes" (lines of text, id 0x10021), the node type
/// "notebook" that holds one in its attribute "pages" ("pg"), and the command "turnPage".
namespace notes {

MStatus Initialize(MObject plugin);
MStatus Uninitialize(MObject plugin);
/// Registers the data type, then fails.
MStatus InitializeBadly(MObject plugin);

/// Number of existing values and nodes of the plug-in.
int ValueCount();
int NodeCount();
/// While true, writing a value fails.
void SetWritingFails(bool fails);

enum class Trouble {
    None,
    Complains, ///< shows an error, and still answers that all is well
    NoMemory,  ///< throws std::bad_alloc after the first line
};
/// What goes wrong when a value is read.
void SetReadingTrouble(Trouble trouble);

} // namespace notes
