#pragma once

#include <QString>

namespace vellix {

/// The text with what XML 1.0 cannot hold, even escaped (control characters, halves of surrogate pairs), as
/// U+FFFD.
QString ToXmlText(const QString& text);

} // namespace vellix
