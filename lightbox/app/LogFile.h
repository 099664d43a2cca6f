#pragma once

#include "scene/Output.h"

#include <QFile>
#include <QString>

namespace lightbox {

/// "lightbox.log" in the folder of the user's preferences: what the program was started with and every
/// result, info, warning and error since, each with its time, so that there is something to send in when a
/// run went wrong. What scripts print is not kept. A log that has grown to its limit becomes
/// "lightbox.1.log", the one before "lightbox.2.log", and the oldest goes. Where nothing can be written there
/// is no log.
class LogFile {
public:
    static constexpr qint64 LIMIT = 1024 * 1024; ///< bytes
    static constexpr int KEPT = 3;               ///< files, the current one included

    explicit LogFile(const QString& folder);

    /// False where nothing can be written.
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
