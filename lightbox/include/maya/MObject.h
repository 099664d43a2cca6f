#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MFn.h>

#include <memory>

/// A handle to an object of the host: a node, an attribute, a data value, a plug-in. Keeps the object alive,
/// also a node outside the scene. A default-constructed handle is null.
class MObject {
public:
    bool hasFn(MFn::Type fs) const;
    bool isNull() const { return !handle_; }
    MFn::Type apiType() const;
    const char* apiTypeStr() const;

    bool operator==(const MObject& other) const { return handle_ == other.handle_; }
    bool operator!=(const MObject& other) const { return handle_ != other.handle_; }

    static MObject kNullObj;

private:
    friend class lightbox::ApiBridge;
    std::shared_ptr<lightbox::Object> handle_;
};
