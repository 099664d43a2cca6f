#pragma once

#include <QApplication>
#include <QFontMetrics>
#include <QString>

namespace vellix {

/// A name as the text of a menu entry: on one line, shortened at its end to a width that a menu can have, and
/// without a mnemonic.
inline QString MenuText(const QString& name) {
    constexpr int widest = 300; // pixels
    QString text =
        QFontMetrics(QApplication::font("QMenu")).elidedText(name.simplified(), Qt::ElideRight, widest);
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace vellix
