#include "node/LayerDataFormat.h"

#include "core/Frame.h"
#include "core/Layer.h"
#include "host/Logger.h"

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

} // namespace

QByteArray LayerDataFormat::FromHex(const char* text, int length) {
    static const DigitTable values = MakeDigitTable();
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

void LayerDataFormat::ReportNotEncoded(const Layer& layer, const Frame& frame) {
    Logger::Error(
        QString("The picture of layer %1 at frame %2 cannot be encoded, for lack of memory. The scene "
                "cannot be saved now.")
            .arg(layer.GetName(), QString::number(frame.GetTimeValue())));
}

} // namespace vellix
