#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace vellix {

/// The program that reads and writes movies.
namespace ffmpeg {

/// Returns its path, or an empty string if it is not installed.
QString Find();
/// The environment to run it in: without the libraries that a host has put on the path for itself.
QProcessEnvironment Environment();
/// Formats a frame rate for it: "24", or "24000/1001" for broadcast rates.
QString RateText(double rate);

} // namespace ffmpeg
} // namespace vellix
