#pragma once

#include "host/PluginMain.h"
#include "host/Settings.h"
#include "lightbox/window/WindowFixture.h"
#include "plugin/host/ExecutedLines.h"
#include "scene/PluginManager.h"
#include "scene/UndoQueue.h"

#include <QAbstractButton>
#include <QTest>

#include <gmock/gmock.h>

namespace vellix {

/// The plug-in in a window, as after a start with empty preferences.
class PanelFixture : public WindowFixture {
protected:
    PanelFixture() {
        Load();
        Show();
    }
    ~PanelFixture() override { Stop(); }

    void Load() { host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin); }

    /// The panel or dialog of that name that is shown; null for none.
    template <typename Window = QWidget>
    static Window* Find(const char* name) {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QLatin1String(name) && window->isVisible()) {
                return qobject_cast<Window*>(window);
            }
        }
        return nullptr;
    }
    template <typename Window>
    Window& Open(const char* name, const std::string& command) {
        Run(command);
        Settle();
        auto* const window = Find<Window>(name);
        if (window == nullptr) {
            throw std::runtime_error(std::string(name) + " does not open");
        }
        return *window;
    }
    /// The button with that tooltip or text.
    static QAbstractButton* Button(const QWidget& window, const char* text) {
        for (QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
            if (button->toolTip() == QLatin1String(text) || button->text() == QLatin1String(text)) {
                return button;
            }
        }
        ADD_FAILURE() << "no button " << text;
        return nullptr;
    }
    static void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

    std::string Ask(const std::string& mel) { return Run(mel).Shown(); }
};

} // namespace vellix
