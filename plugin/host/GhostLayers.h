#pragma once

#include <QtGlobal>

namespace vellix {

/// Whose ghosts are shown, as a setting keeps it.
enum class GhostLayers : qint32 { Active, Marked, Visible };

} // namespace vellix
