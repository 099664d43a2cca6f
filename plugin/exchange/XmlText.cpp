#include "exchange/XmlText.h"

#include <QChar>

namespace vellix {

QString ToXmlText(const QString& text) {
    QString result = text;
    for (int i = 0; i < result.size(); ++i) {
        const QChar c = result.at(i);
        if (c.isHighSurrogate() && i + 1 < result.size() && result.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (c.isSurrogate() || c.unicode() >= 0xfffe ||
                   (c.unicode() < 0x20 && c != QLatin1Char('\t') && c != QLatin1Char('\n') &&
                    c != QLatin1Char('\r'))) {
            result[i] = QChar(QChar::ReplacementCharacter);
        }
    }
    return result;
}

} // namespace vellix
