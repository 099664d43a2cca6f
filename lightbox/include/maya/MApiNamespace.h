#pragma once

// Forward declarations of the OpenMaya classes, and the function types that plug-ins hand over on
// registration.

class M3dView;
class MArgDatabase;
class MArgList;
class MArgParser;
class MBoundingBox;
class MCallbackIdArray;
class MCommandResult;
class MDagModifier;
class MDagPath;
class MDGModifier;
class MDoubleArray;
class MFnAttribute;
class MFnDagNode;
class MFnDependencyNode;
class MIntArray;
class MObject;
class MPlug;
class MPoint;
class MPxCommand;
class MPxData;
class MPxLocatorNode;
class MPxNode;
class MSelectionList;
class MStatus;
class MString;
class MStringArray;
class MSyntax;
class MTime;
class MTypeId;

/// Makes one instance of a registered class; the host owns it.
using MCreatorFunction = void* (*)();
/// Creates the attributes of a registered node type, once, on registration.
using MInitializeFunction = MStatus (*)();
/// Builds the flag table of a registered command.
using MCreateSyntaxFunction = MSyntax (*)();

namespace lightbox {
class Access;
class Attribute;
class Node;
class NodeType;
class Object;
} // namespace lightbox
