#pragma once

class QMenu;

namespace vellix {

/// Adds a submenu with the other drawings of the scene to a menu of the layer manager: importing a scene
/// leaves its drawing beside the one that is edited.
class DrawingMenu {
public:
    /// Lists the drawing nodes that have layers, but for the one that is edited; the chosen one gives its
    /// layers to this. Adds nothing if there is none.
    static void Add(QMenu& menu);
};

} // namespace vellix
