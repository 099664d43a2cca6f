#pragma once

#include <QIcon>
#include <QString>

namespace lightbox {

/// The pictures of buttons and menu items. Lightbox's own are drawn, so that they are sharp at every size and
/// follow the palette.
class Icons {
public:
    /// A picture by the name that a script gives: a file, one in the preferences' icons folder or in
    /// XBMLANGPATH, a resource, or one of our own ("draw", "transform", "scriptEditor", "cube", with or
    /// without ".png"). Empty when there is none.
    static QIcon Named(const QString& name);
};

} // namespace lightbox
