#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>

/// A small plug-in for tests of scene files: the data type "notes" (lines of text, id 0x10021), the node type
/// "notebook" that holds one in its attribute "pages" ("pg"), and the command "turnPage".
namespace notes {

MStatus Initialize(MObject plugin);
MStatus Uninitialize(MObject plugin);
/// Refuses to be initialised, after it has registered its data type.
MStatus InitializeBadly(MObject plugin);

/// Values and nodes that exist.
int ValueCount();
int NodeCount();
/// While true, values cannot write themselves.
void SetWritingFails(bool fails);

} // namespace notes
