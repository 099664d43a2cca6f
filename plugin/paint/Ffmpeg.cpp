#include "paint/Ffmpeg.h"

#include <QStandardPaths>

#include <cmath>

namespace vellix {
namespace ffmpeg {

QString Find() {
    const QString found = QStandardPaths::findExecutable("ffmpeg");
    // A host that was started from the desktop may lack the shell's search path.
    return !found.isEmpty() ? found
                            : QStandardPaths::findExecutable(
                                  "ffmpeg", {"/usr/local/bin", "/opt/homebrew/bin", "/opt/local/bin"});
}

QProcessEnvironment Environment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"LD_LIBRARY_PATH", "LD_PRELOAD", "DYLD_LIBRARY_PATH"}) {
        environment.remove(QString::fromLatin1(name));
    }
    return environment;
}

QString RateText(double rate) {
    const double tolerance = 0.002;
    if (std::abs(rate - std::round(rate)) < tolerance) {
        return QString::number(std::lround(rate));
    }
    const double whole = std::round(rate * 1.001);
    if (std::abs(rate * 1.001 - whole) < tolerance) {
        return QString("%1/1001").arg(std::lround(whole) * 1000);
    }
    return QString::number(rate, 'f', 6);
}

} // namespace ffmpeg
} // namespace vellix
