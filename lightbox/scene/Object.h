#pragma once

#include "scene/NonCopyable.h"

#include <maya/MFn.h>

#include <memory>

namespace lightbox {

/// Anything that an MObject can point at: nodes, attributes, data values, plug-ins.
class Object : public std::enable_shared_from_this<Object>, private NonCopyable {
public:
    virtual ~Object() = default;

    virtual MFn::Type ApiType() const = 0;
    /// Whether function sets of that type can work on the object.
    virtual bool HasFn(MFn::Type type) const = 0;
};

} // namespace lightbox
