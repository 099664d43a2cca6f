#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

/// Base of the node types that plug-ins define. The host makes an instance for every node of the type and
/// owns it. The node is not reachable from the constructor yet: use postConstructor().
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

    /// Called once when the node stands and its attributes can be reached.
    virtual void postConstructor();
    virtual Type type() const;

    MObject thisMObject() const;
    MTypeId typeId() const;
    MString typeName() const;
    MString name() const;

    /// Whether the node is left out of saved scenes.
    bool doNotWrite(MStatus* ReturnStatus = nullptr) const;
    MStatus setDoNotWrite(bool flag);

    /// Adds an attribute to the node type that is being registered. Only valid in its initialize function.
    static MStatus addAttribute(const MObject& attr);
    static MStatus attributeAffects(const MObject& whenChanges, const MObject& isAffected);

private:
    friend class lightbox::ApiBridge;
    lightbox::Node* node_ = nullptr;
};
