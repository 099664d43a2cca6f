#pragma once

/// The space of coordinates.
class MSpace {
public:
    enum Space {
        kInvalid = 0,
        kTransform = 1,
        kPreTransform = 2,
        kPostTransform = 3,
        kWorld = 4,
        kObject = kPreTransform,
        kLast = 5
    };
};
