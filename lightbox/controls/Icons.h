#pragma once

#include <QIcon>
#include <QString>

namespace lightbox {

/// The icons of buttons and menu items. Lightbox paints its own icons as vectors, so they are sharp at every
/// size and follow the palette.
class Icons {
public:
    /// An icon by the name that a script gives: a file, a file in the preferences' icons folder or in
    /// XBMLANGPATH, a resource, or a built-in icon ("draw", "transform", "scriptEditor", "cube", with or
    /// without ".png"). A null icon when there is none.
    static QIcon Named(const QString& name);
};

} // namespace lightbox
