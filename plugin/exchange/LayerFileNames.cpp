#include "exchange/LayerFileNames.h"

#include "exchange/XmlText.h"

#include <QRegularExpression>
#include <QSet>
#include <QString>

namespace vellix {

namespace {

/// In bytes of UTF-8. File systems allow 255 for the whole name.
constexpr int MAX_LAYER_FILE_NAME = 120;

QString SafeFileName(const QString& layer) {
    QString name;
    for (const QChar c : ToXmlText(layer).normalized(QString::NormalizationForm_C)) {
        const bool isRefused = c.category() == QChar::Other_Control ||
                               c == QChar(QChar::ReplacementCharacter) ||
                               QStringLiteral("/\\:*?\"<>|").contains(c);
        name.append(isRefused ? QLatin1Char('_') : c);
    }
    while (name.toUtf8().size() > MAX_LAYER_FILE_NAME) {
        name.chop(name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
    }
    name = name.trimmed();
    // A name that begins with a dot is hidden, or a folder; Windows drops dots at the end.
    static const QRegularExpression dots("^\\.|\\.$");
    while (dots.match(name).hasMatch()) {
        name.replace(dots, QStringLiteral("_"));
    }
    static const QRegularExpression device("^(con|prn|aux|nul|com\\d|lpt\\d)(\\.|$)",
                                           QRegularExpression::CaseInsensitiveOption);
    if (name.isEmpty() || device.match(name).hasMatch()) {
        name.prepend(QLatin1Char('_'));
    }
    return name;
}

} // namespace

QStringList LayerFileNames(const QStringList& layers) {
    QStringList names;
    QSet<QString> taken;
    for (const QString& layer : layers) {
        const QString wanted = SafeFileName(layer);
        QString name = wanted;
        for (int number = 2; taken.contains(name.toCaseFolded()); ++number) {
            name = wanted + QLatin1Char('_') + QString::number(number);
        }
        taken.insert(name.toCaseFolded());
        names.append(name);
    }
    return names;
}

} // namespace vellix
