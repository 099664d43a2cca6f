#include "scene/Object.h"

#include <maya/MObject.h>

#include <map>

MObject MObject::kNullObj;

bool MObject::hasFn(MFn::Type fs) const {
    return handle_ && handle_->HasFn(fs);
}

MFn::Type MObject::apiType() const {
    return handle_ ? handle_->ApiType() : MFn::kInvalid;
}

const char* MObject::apiTypeStr() const {
    static const std::map<MFn::Type, const char*> names = {{MFn::kDependencyNode, "kDependencyNode"},
                                                           {MFn::kAnimCurve, "kAnimCurve"},
                                                           {MFn::kDagNode, "kDagNode"},
                                                           {MFn::kTransform, "kTransform"},
                                                           {MFn::kShape, "kShape"},
                                                           {MFn::kCamera, "kCamera"},
                                                           {MFn::kWorld, "kWorld"},
                                                           {MFn::kLocator, "kLocator"},
                                                           {MFn::kPluginDependNode, "kPluginDependNode"},
                                                           {MFn::kPluginLocatorNode, "kPluginLocatorNode"},
                                                           {MFn::kTime, "kTime"},
                                                           {MFn::kScript, "kScript"},
                                                           {MFn::kUnknown, "kUnknown"},
                                                           {MFn::kUnknownDag, "kUnknownDag"},
                                                           {MFn::kUnknownTransform, "kUnknownTransform"},
                                                           {MFn::kCompoundAttribute, "kCompoundAttribute"},
                                                           {MFn::kEnumAttribute, "kEnumAttribute"},
                                                           {MFn::kMessageAttribute, "kMessageAttribute"},
                                                           {MFn::kNumericAttribute, "kNumericAttribute"},
                                                           {MFn::kTypedAttribute, "kTypedAttribute"},
                                                           {MFn::kUnitAttribute, "kUnitAttribute"},
                                                           {MFn::kMatrixAttribute, "kMatrixAttribute"},
                                                           {MFn::kPluginData, "kPluginData"},
                                                           {MFn::kPlugin, "kPlugin"}};
    const auto found = names.find(apiType());
    return found == names.end() ? "kInvalid" : found->second;
}
