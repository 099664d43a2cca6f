#pragma once

// Forward declarations of the OpenMaya classes, and the function types that plug-ins register.

class M3dView;
class MAngle;
class MArgDatabase;
class MArgList;
class MArgParser;
class MBoundingBox;
class MColor;
class MCallbackIdArray;
class MCommandResult;
class MDagModifier;
class MDagPath;
class MDGModifier;
class MDistance;
class MDoubleArray;
class MEvent;
class MFnAttribute;
class MFnDagNode;
class MFnDependencyNode;
class MFnPlugin;
class MIntArray;
class MMatrix;
class MObject;
class MObjectHandle;
class MPlug;
class MPoint;
class MPointArray;
class MPxCommand;
class MPxContext;
class MPxContextCommand;
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
class MUserData;
class MVector;
class MVectorArray;

namespace MHWRender {
class MFrameContext;
class MPxDrawOverride;
class MRenderer;
class MTexture;
class MTextureManager;
class MUIDrawManager;
} // namespace MHWRender

/// Makes one instance of a registered class; the host owns it.
using MCreatorFunction = void* (*)();
/// Creates the attributes of a registered node type. Called once, on registration.
using MInitializeFunction = MStatus (*)();
/// Builds the syntax of a registered command.
using MCreateSyntaxFunction = MSyntax (*)();

namespace lightbox {
class ApiBridge;
class Attribute;
class Node;
class NodeType;
class Object;
class View;
} // namespace lightbox
