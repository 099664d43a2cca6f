#pragma once

#include <maya/MApiNamespace.h>

#include <memory>

class QCursor;

/// The shape of the pointer while a tool is current.
class MCursor {
public:
    /// The ordinary pointer.
    MCursor();
    /// A bitmap and its mask, both in the X bitmap format (rows of whole bytes, lowest bit leftmost), and the
    /// hot spot.
    MCursor(short width, short height, short hotSpotX, short hotSpotY, unsigned char* bits,
            unsigned char* mask);
    MCursor(const MCursor& other);
    MCursor(MCursor&& other) noexcept;
    MCursor& operator=(const MCursor& other);
    MCursor& operator=(MCursor&& other) noexcept;
    ~MCursor();

    bool operator==(const MCursor& other) const;
    bool operator!=(const MCursor& other) const { return !(*this == other); }

    static const MCursor defaultCursor;
    static const MCursor crossHairCursor;
    static const MCursor doubleCrossHairCursor;
    static const MCursor editCursor;
    static const MCursor pencilCursor;
    static const MCursor handCursor;

private:
    friend class lightbox::ApiBridge;
    enum class Shape;
    explicit MCursor(Shape shape);

    struct Content;
    std::shared_ptr<const Content> content_;
};
