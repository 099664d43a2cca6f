#pragma once

#include <functional>

class QMenu;
class QString;

namespace vellix {

/// Adds a submenu with the cameras of the scene to a menu of the layer manager.
class CameraMenu {
public:
    /// Lists every camera but `except` and passes the chosen one to `choose`, by its name at that time.
    /// Disables the submenu if it is empty.
    static void Add(QMenu& menu, const QString& title, const QString& except,
                    const std::function<void(const QString& camera)>& choose);
};

} // namespace vellix
