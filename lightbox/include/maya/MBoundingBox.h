#pragma once

#include <maya/MPoint.h>

/// An axis-aligned box. A default-constructed or cleared box is empty until a point expands it.
class MBoundingBox {
public:
    MBoundingBox() = default;
    MBoundingBox(const MPoint& corner1, const MPoint& corner2);

    void clear();
    void expand(const MPoint& point);
    void expand(const MBoundingBox& box);
    bool contains(const MPoint& point) const;
    bool intersects(const MBoundingBox& box, double tolerance = 0.0) const;

    double width() const { return max_.x - min_.x; }
    double height() const { return max_.y - min_.y; }
    double depth() const { return max_.z - min_.z; }
    MPoint center() const;
    MPoint min() const { return min_; }
    MPoint max() const { return max_; }

private:
    bool empty_ = true;
    MPoint min_;
    MPoint max_;
};
