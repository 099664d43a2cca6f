#pragma once

#include <QString>

namespace vellix {

/// What a drawing tool draws with. Tools that have no hardness, pressure or font ignore theirs.
struct ToolOptions {
    int size;     ///< image pixels, of text points
    int opacity;  ///< percent
    int hardness; ///< percent
    bool tabletEnabled;
    QString fontFamily;
};

} // namespace vellix
