#pragma once

#include <functional>

class QMenu;
class QString;

namespace vellix {

/// The submenu of a layer manager's menu that lists the cameras of the scene.
class CameraMenu {
public:
    /// Every camera but `except`; without any the submenu cannot be opened.
    static void Add(QMenu& menu, const QString& title, const QString& except,
                    const std::function<void(const QString& camera)>& choose);
};

} // namespace vellix
