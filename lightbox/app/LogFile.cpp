#include "app/LogFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>

namespace lightbox {

LogFile::LogFile(const QString& folder)
    : folder_(folder)
    , file_(Path(0)) {
    QDir().mkpath(folder);
    // Append unbuffered: several programs may share the folder, and each line has to stay in one piece.
    file_.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

QString LogFile::Path(int age) const {
    return folder_ + (age == 0 ? QString("/lightbox.log") : QString("/lightbox.%1.log").arg(age));
}

void LogFile::Rotate() {
    file_.close();
    QFile::remove(Path(KEPT - 1));
    for (int age = KEPT - 1; age > 0; --age) {
        QFile::rename(Path(age - 1), Path(age));
    }
    file_.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void LogFile::Write(const QString& line) {
    if (!file_.isOpen()) {
        return;
    }
    if (file_.size() >= LIMIT) {
        Rotate();
    }
    const QString time = QDateTime::currentDateTime().toString("yyyy-MM-dd hh:mm:ss.zzz");
    file_.write(QString("%1 [%2] %3\n").arg(time).arg(QCoreApplication::applicationPid()).arg(line).toUtf8());
}

void LogFile::Write(Output::Kind kind, const std::string& text) {
    if (kind == Output::Kind::Print || kind == Output::Kind::Progress) {
        return;
    }
    Write(QString::fromStdString(Output::Worded(kind, text)).trimmed());
}

} // namespace lightbox
