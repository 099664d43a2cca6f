#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace vellix {

class Frame;
class Layer;

/// What the readers and writers of both stored forms share.
struct LayerDataParts {
    static constexpr int VERSION = 1;
    /// Name of a missing layer in the ASCII form.
    static constexpr const char* UNKNOWN_LAYER = "UNKNOWN";

    /// Like QByteArray::fromHex, which skips what is no digit, but several times faster for digits only. It
    /// is what opening a Maya ASCII scene takes longest for.
    static QByteArray FromHex(const char* text, int length);

    /// Writes the two hexadecimal digits of each byte, like QByteArray::toHex, but several times faster.
    static void ToHex(const uchar* bytes, int count, char* text);

    /// Whether the text is that of a picture, be it damaged: long, and nearly all hexadecimal digits.
    static bool LooksLikeHex(const char* text, int length);

    /// Logs that a drawing could not be encoded, so that its scene is not saved whole.
    static void ReportNotEncoded(const Layer& layer, const Frame& frame);
};

} // namespace vellix
