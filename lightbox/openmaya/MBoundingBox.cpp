#include <maya/MBoundingBox.h>

#include <algorithm>

MBoundingBox::MBoundingBox(const MPoint& corner1, const MPoint& corner2) {
    expand(corner1);
    expand(corner2);
}

void MBoundingBox::clear() {
    *this = MBoundingBox();
}

void MBoundingBox::expand(const MPoint& point) {
    if (empty_) {
        min_ = max_ = point;
        empty_ = false;
        return;
    }
    for (unsigned int axis = 0; axis < 3; ++axis) {
        min_[axis] = std::min(min_[axis], point[axis]);
        max_[axis] = std::max(max_[axis], point[axis]);
    }
}

void MBoundingBox::expand(const MBoundingBox& box) {
    if (!box.empty_) {
        expand(box.min_);
        expand(box.max_);
    }
}

bool MBoundingBox::contains(const MPoint& point) const {
    return intersects(MBoundingBox(point, point));
}

bool MBoundingBox::intersects(const MBoundingBox& box, double tolerance) const {
    bool overlap = !empty_ && !box.empty_;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        overlap =
            overlap && min_[axis] - tolerance <= box.max_[axis] && box.min_[axis] <= max_[axis] + tolerance;
    }
    return overlap;
}

MPoint MBoundingBox::center() const {
    return MPoint((min_.x + max_.x) / 2, (min_.y + max_.y) / 2, (min_.z + max_.z) / 2);
}
