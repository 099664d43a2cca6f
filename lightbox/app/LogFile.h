#pragma once

#include "scene/Output.h"

#include <QFile>
#include <QString>

namespace lightbox {

/// "lightbox.log" in the folder of the user's preferences: the command line and every result, info, warning
/// and error, each with its time, for bug reports. Output of `print` is not logged. A log that reaches its
/// limit is renamed to "lightbox.1.log", the one before to "lightbox.2.log", and the oldest is deleted. In a
/// folder without write access there is no log.
class LogFile {
public:
    static constexpr qint64 LIMIT = 1024 * 1024; ///< bytes
    static constexpr int KEPT = 3;               ///< files, the current one included

    explicit LogFile(const QString& folder);

    /// False when the file cannot be written.
    bool IsOpen() const { return file_.isOpen(); }
    void Write(const QString& line);
    void Write(Output::Kind kind, const std::string& text);

private:
    QString Path(int age) const;
    void Rotate();

    QString folder_;
    QFile file_;
};

} // namespace lightbox
