#pragma once

#include <maya/MApiNamespace.h>

#include <iosfwd>

/// Identifies a node type or a data type in scene files.
class MTypeId {
public:
    MTypeId() = default;
    explicit MTypeId(unsigned int id)
        : id_(id) {}
    /// An id within a block: the prefix fills the upper 24 bits.
    MTypeId(unsigned int prefix, unsigned int id)
        : id_((prefix << 8) | (id & 0xffU)) {}

    unsigned int id() const { return id_; }
    bool operator==(const MTypeId& other) const { return id_ == other.id_; }
    bool operator!=(const MTypeId& other) const { return id_ != other.id_; }

private:
    unsigned int id_ = 0;
};

std::ostream& operator<<(std::ostream& os, const MTypeId& id);
