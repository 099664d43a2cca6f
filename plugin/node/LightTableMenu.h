#pragma once

class QMenu;

namespace vellix {

/// The items of the light table in the ghosting menus of the draw tool and the toolbox. The host's own menu
/// has the same ones.
class LightTableMenu {
public:
    /// Adds them behind a separator. They act on what is active when they are chosen.
    static void Add(QMenu& menu);
};

} // namespace vellix
