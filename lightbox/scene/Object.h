#pragma once

#include "scene/NonCopyable.h"

#include <maya/MFn.h>

#include <memory>

namespace lightbox {

/// Base of everything that an MObject can refer to: nodes, attributes, data values, plug-ins.
class Object : public std::enable_shared_from_this<Object>, private NonCopyable {
public:
    virtual ~Object() = default;

    virtual MFn::Type ApiType() const = 0;
    /// Whether a function set of that type can work on the object.
    virtual bool HasFn(MFn::Type type) const = 0;
};

} // namespace lightbox
