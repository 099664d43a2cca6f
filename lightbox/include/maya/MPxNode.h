#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

/// Base class of plug-in node types. The host makes and owns an instance for every node of the type. The
/// constructor cannot access the node yet: use postConstructor().
class MPxNode {
public:
    enum Type {
        kDependNode = 0,
        kLocatorNode,
        kDeformerNode,
        kManipContainer,
        kSurfaceShape,
        kFieldNode,
        kEmitterNode,
        kSpringNode,
        kIkSolverNode,
        kHardwareShader,
        kHwShaderNode,
        kTransformNode,
        kObjectSet,
        kFluidEmitterNode,
        kImagePlaneNode,
        kParticleAttributeMapperNode,
        kCameraSetNode,
        kConstraintNode,
        kManipulatorNode,
        kMotionPathNode,
        kClientDeviceNode,
        kThreadedDeviceNode,
        kAssembly,
        kSkinCluster,
        kGeometryFilter,
        kBlendShape,
        kLast
    };

    MPxNode();
    virtual ~MPxNode();
    MPxNode(const MPxNode&) = delete;
    MPxNode& operator=(const MPxNode&) = delete;

    /// Called once, when the node exists and its attributes are accessible.
    virtual void postConstructor();
    /// Called on a node that was made by duplicating another one, which is passed, after its attributes have
    /// the values of the other's. For a node that keeps something outside of them or that may not share it.
    virtual void copyInternalData(MPxNode* node);
    virtual Type type() const;

    MObject thisMObject() const;
    MTypeId typeId() const;
    MString typeName() const;
    MString name() const;

    /// Whether saved scenes leave out the node.
    bool doNotWrite(MStatus* ReturnStatus = nullptr) const;
    MStatus setDoNotWrite(bool flag);

    /// Adds an attribute to the node type that is being registered. Only valid in its initialize function.
    static MStatus addAttribute(const MObject& attr);
    static MStatus attributeAffects(const MObject& whenChanges, const MObject& isAffected);

private:
    friend class lightbox::ApiBridge;
    lightbox::Node* node_ = nullptr;
};
