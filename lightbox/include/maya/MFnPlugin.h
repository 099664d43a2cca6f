#pragma once

#include <maya/MFnBase.h>
#include <maya/MPxData.h>
#include <maya/MPxNode.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

/// The exported entry points of a plug-in.
#if defined(_WIN32)
#define PLUGIN_EXPORT __declspec(dllexport)
#else
#define PLUGIN_EXPORT __attribute__((visibility("default")))
#endif
#if defined(__clang__)
// Only the name has C linkage, for the lookup; both sides are C++.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" PLUGIN_EXPORT MStatus initializePlugin(MObject obj);
extern "C" PLUGIN_EXPORT MStatus uninitializePlugin(MObject obj);
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

/// Function set of plug-ins: registers and deregisters a plug-in's classes. Fails for a name or id that is
/// already registered, and for the deregistration of another plug-in's class.
class MFnPlugin : public MFnBase {
public:
    MFnPlugin();
    explicit MFnPlugin(MObject& object, const char* vendor = "Unknown", const char* version = "Unknown",
                       const char* requiredApiVersion = "Any", MStatus* ReturnStatus = nullptr);
    MFn::Type type() const override;

    MString vendor(MStatus* ReturnStatus = nullptr) const;
    MString version(MStatus* ReturnStatus = nullptr) const;
    MString apiVersion(MStatus* ReturnStatus = nullptr) const;
    MString name(MStatus* ReturnStatus = nullptr) const;
    MString loadPath(MStatus* ReturnStatus = nullptr) const;

    MStatus registerCommand(const MString& commandName, MCreatorFunction creatorFunction,
                            MCreateSyntaxFunction createSyntaxFunction = nullptr);
    /// Empties the undo queue first, since it may hold instances of the command.
    MStatus deregisterCommand(const MString& commandName);
    MStatus registerContextCommand(const MString& commandName, MCreatorFunction creatorFunction);
    MStatus deregisterContextCommand(const MString& commandName);

    MStatus registerData(const MString& typeName, const MTypeId& typeId, MCreatorFunction creatorFunction,
                         MPxData::Type type = MPxData::kData);
    /// Fails while values of the type exist.
    MStatus deregisterData(const MTypeId& typeId);

    /// Runs the initialize function, which creates and adds the type's attributes. Supports kDependNode and
    /// kLocatorNode.
    MStatus registerNode(const MString& typeName, const MTypeId& typeId, MCreatorFunction creatorFunction,
                         MInitializeFunction initializeFunction, MPxNode::Type type = MPxNode::kDependNode,
                         const MString* classification = nullptr);
    /// Fails while nodes of the type exist.
    MStatus deregisterNode(const MTypeId& typeId);
};
