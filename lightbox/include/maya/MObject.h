#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MFn.h>

#include <memory>

/// A handle to something of the host: a node, an attribute, a data value, a plug-in. It keeps what it points
/// at alive, also after a node left the scene; a default-constructed handle is null.
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
