#include "shell/Hotkeys.h"

#include "scene/DagNode.h"
#include "scene/Scene.h"
#include "shell/MainWindow.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportPanels.h"
#include "viewport/ViewportWidget.h"

#include <QShortcut>

namespace lightbox {

namespace {

struct Hotkey {
    const char* key;
    /// MEL. %c stands for the active panel's camera, %p for the panel.
    const char* line;
};

constexpr Hotkey HOTKEYS[] = {
    {"A", "viewFit -all %c"},
    {"F", "viewFit %c"},
    {"4", "modelEditor -e -displayAppearance wireframe %p"},
    {"5", "modelEditor -e -displayAppearance smoothShaded %p"},
    {"Q", "setToolTo selectSuperContext"},
    {"S", "if (size(`ls -selection`) > 0) setKeyframe"},
};

std::string Filled(std::string line, ViewportPanel& panel) {
    const auto put = [&line](const char* sign, const std::string& name) {
        const std::size_t place = line.find(sign);
        if (place != std::string::npos) {
            line.replace(place, 2, name);
        }
    };
    put("%c", Scene::ShownName(*panel.View().Camera()->Parent()));
    put("%p", panel.View().PanelName());
    return line;
}

} // namespace

void AddHotkeys(MainWindow& window) {
    for (const Hotkey& hotkey : HOTKEYS) {
        auto* const shortcut = new QShortcut(QKeySequence(hotkey.key), &window);
        shortcut->setContext(Qt::ApplicationShortcut);
        shortcut->setAutoRepeat(false);
        QObject::connect(shortcut, &QShortcut::activated, &window, [&window, line = hotkey.line] {
            if (ViewportPanel* const panel = window.Panels().Active()) {
                panel->RunLine(Filled(line, *panel));
            }
        });
    }
}

} // namespace lightbox
