#include "node/LayerDataParts.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/Logger.h"
#include "paint/VectorClones.h"

#include <algorithm>
#include <array>

namespace vellix {

namespace {

constexpr quint8 NO_DIGIT = 0x10;

using DigitTable = std::array<quint8, 256>;

DigitTable MakeDigitTable() {
    DigitTable values;
    values.fill(NO_DIGIT);
    for (quint8 value = 0; value < 16; ++value) {
        values[static_cast<uchar>("0123456789abcdef"[value])] = value;
        values[static_cast<uchar>("0123456789ABCDEF"[value])] = value;
    }
    return values;
}

const DigitTable& Digits() {
    static const DigitTable values = MakeDigitTable();
    return values;
}

inline uchar DigitOf(uchar value) {
    return static_cast<uchar>(value + (value < 10 ? '0' : 'a' - 10));
}

// Written so that the compiler can vectorise it.
VELLIX_VECTOR_CLONES
void WriteDigits(const uchar* bytes, int count, uchar* text) {
    const uchar* __restrict from = bytes;
    uchar* __restrict to = text;
    for (int i = 0; i < count; ++i) {
        to[2 * i] = DigitOf(static_cast<uchar>(from[i] >> 4));
        to[2 * i + 1] = DigitOf(static_cast<uchar>(from[i] & 15));
    }
}

} // namespace

QByteArray LayerDataParts::FromHex(const char* text, int length) {
    const DigitTable& values = Digits();
    QByteArray bytes(length / 2, Qt::Uninitialized);
    const auto* digit = reinterpret_cast<const uchar*>(text);
    quint8 all = length % 2 == 0 ? 0 : NO_DIGIT;
    for (char& byte : bytes) {
        const quint8 high = values[*digit++];
        const quint8 low = values[*digit++];
        all |= high | low;
        byte = static_cast<char>(high << 4 | low);
    }
    return all < NO_DIGIT ? bytes : QByteArray::fromHex(QByteArray::fromRawData(text, length));
}

void LayerDataParts::ToHex(const uchar* bytes, int count, char* text) {
    WriteDigits(bytes, count, reinterpret_cast<uchar*>(text));
}

bool LayerDataParts::LooksLikeHex(const char* text, int length) {
    constexpr int least = 2 * 57; // of the smallest PNG: signature, header, pixels, end
    constexpr int most = 1000;    // are enough to tell
    const int looked = std::min(length, most);
    const auto isDigit = [&](char letter) { return Digits()[static_cast<uchar>(letter)] != NO_DIGIT; };
    return length >= least && std::count_if(text, text + looked, isDigit) >= looked * 9 / 10;
}

void LayerDataParts::ReportNotEncoded(const Layer& layer, const Frame& frame) {
    Logger::Error(
        QString("The picture of layer %1 at frame %2 cannot be encoded, for lack of memory. The scene "
                "cannot be saved now.")
            .arg(layer.GetName(), QString::number(frame.GetTimeValue())));
}

} // namespace vellix
