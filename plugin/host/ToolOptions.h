#pragma once

#include <QString>

namespace vellix {

/// The options of a drawing tool. Tools without hardness, pressure or font ignore those.
struct ToolOptions {
    int size;     ///< image pixels; points for text
    int opacity;  ///< percent
    int hardness; ///< percent
    bool tabletEnabled;
    QString fontFamily;
};

} // namespace vellix
