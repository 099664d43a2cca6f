#pragma once

/// The types of objects and function sets.
class MFn {
public:
    enum Type {
        kInvalid = 0,
        kBase = 1,
        kNamedObject = 2,
        kModel = 3,
        kDependencyNode = 4,
        kAnimCurve = 7,
        kDagNode = 107,
        kTransform = 110,
        kJoint = 121,
        kShape = 248,
        kCamera = 250,
        kWorld = 251,
        kLocator = 281,
        kMesh = 296,
        kPluginDependNode = 455,
        kPluginLocatorNode = 456,
        kTime = 516,
        kScript = 638,
        kUnknown = 528,
        kUnknownDag = 316,
        kUnknownTransform = 246,
        kSelectionItem = 558,
        kAttribute = 561,
        kCompoundAttribute = 571,
        kEnumAttribute = 568,
        kMessageAttribute = 576,
        kNumericAttribute = 562,
        kTypedAttribute = 579,
        kUnitAttribute = 580,
        kMatrixAttribute = 575,
        kData = 587,
        kPluginData = 596,
        kStringData = 581,
        kPlugin = 584
    };
};
