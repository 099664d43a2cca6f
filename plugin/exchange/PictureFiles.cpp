#include "exchange/PictureFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace vellix {

namespace {

struct NumberedName {
    bool hasNumber = false;
    int number = 0;
    QString stem; ///< what stands before the number, without the separators between
};

QString WithoutSeparators(QString stem) {
    while (!stem.isEmpty() && QStringLiteral("._- ").contains(stem.at(stem.size() - 1))) {
        stem.chop(1);
    }
    return stem;
}

NumberedName ReadName(const QString& path) {
    static const QRegularExpression lastNumber(QStringLiteral("^(.*?)((?:(?<![^._ ])-)?[0-9]+)[^0-9]*$"));
    const QString name = QFileInfo(path).completeBaseName();
    const QRegularExpressionMatch match = lastNumber.match(name);
    NumberedName result;
    if (match.hasMatch()) {
        result.number = match.captured(2).toInt(&result.hasNumber); // not so for one beyond an int
    }
    result.stem = WithoutSeparators(result.hasNumber ? match.captured(1) : name);
    return result;
}

bool Refuse(QString& fault, const QString& reason) {
    fault = reason;
    return false;
}

/// The names of a folder that a pattern with # stands for.
QStringList NamesOfNumbers(const QDir& folder, const QString& pattern) {
    const int last = pattern.lastIndexOf(QLatin1Char('#'));
    int first = last;
    while (first > 0 && pattern.at(first - 1) == QLatin1Char('#')) {
        --first;
    }
    const QRegularExpression wanted(QStringLiteral("^%1-?[0-9]+%2$")
                                        .arg(QRegularExpression::escape(pattern.left(first)),
                                             QRegularExpression::escape(pattern.mid(last + 1))));
    return folder.entryList(QDir::Files, QDir::Name).filter(wanted);
}

} // namespace

bool PictureFiles::Add(const QString& pattern, const std::function<std::vector<QString>()>& suffixes,
                       QString& fault) {
    const QFileInfo given(pattern);
    QDir folder(given.absolutePath());
    QStringList names;
    if (given.isDir()) {
        folder = QDir(given.absoluteFilePath());
        QStringList filters;
        for (const QString& suffix : suffixes()) {
            filters.append(QStringLiteral("*.") + suffix);
        }
        names = folder.entryList(filters, QDir::Files, QDir::Name);
    } else if (given.exists()) {
        names = QStringList(given.fileName());
    } else if (!folder.exists()) {
        return Refuse(fault, QStringLiteral("the folder \"%1\" does not exist").arg(folder.path()));
    } else if (given.fileName().contains(QLatin1Char('#'))) {
        names = NamesOfNumbers(folder, given.fileName());
    } else if (given.fileName().contains(QRegularExpression(QStringLiteral("[*?]")))) {
        names = folder.entryList({given.fileName()}, QDir::Files, QDir::Name);
    } else {
        return Refuse(fault, QStringLiteral("the file does not exist"));
    }
    for (const QString& name : names) {
        const NumberedName parts = ReadName(name);
        const QString path = folder.filePath(name);
        if (paths_.insert(path).second) {
            files_.push_back({path, parts.hasNumber, parts.number});
        }
    }
    return !names.isEmpty() ||
           Refuse(fault, given.isDir() ? QStringLiteral("there are no pictures in this folder")
                                       : QStringLiteral("there are no such files"));
}

void PictureFiles::Sort() {
    std::stable_sort(files_.begin(), files_.end(), [](const PictureFile& a, const PictureFile& b) {
        return a.hasNumber == b.hasNumber ? a.number < b.number : b.hasNumber;
    });
}

QString PictureFiles::Stem() const {
    if (files_.empty()) {
        return QString();
    }
    const QString stem = ReadName(files_.front().path).stem;
    const bool isCommon = std::all_of(files_.begin(), files_.end(), [&stem](const PictureFile& file) {
        return ReadName(file.path).stem == stem;
    });
    return isCommon && !stem.isEmpty() ? stem : QFileInfo(files_.front().path).dir().dirName();
}

} // namespace vellix
