#pragma once

#include "app/PluginManager.h"
#include "host/Settings.h"
#include "host/entry/PluginMain.h"
#include "lightbox/window/WindowFixture.h"
#include "paint/ToolType.h"
#include "plugin/host/ExecutedLines.h"

#include <QAbstractButton>
#include <QSettings>
#include <QTest>
#include <QTimer>

#include <string>
#include <vector>

namespace vellix {

/// A panel or dialog: the flag that opens it, its title, and whether it closes after use.
struct WindowRow {
    const char* flag;
    const char* title;
    bool isDialog;
};

const WindowRow WINDOWS[] = {{"-toolbox", "Toolbox", false},
                             {"-toolOptions", "Tool Options", false},
                             {"-colorPalette", "Color Palette", false},
                             {"-layerManager", "Layer Manager", false},
                             {"-retimingTool", "Retiming Tool", false},
                             {"-newLayer", "New Layer", true},
                             {"-layerProperties", "Layer Properties", true},
                             {"-ghostingSettings", "Ghosting Settings", true},
                             {"-preferences", "Preferences", true},
                             {"-about", "About Vellix 2", true}};

/// The plug-in in the host's window, with its panels. Keeps the lines that the plug-in executes.
class DialogFixture : public WindowFixture {
protected:
    DialogFixture() {
        // Qt stores the custom colours of the chooser in the user's configuration. Tests use their own.
        static const QTemporaryDir configuration;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, configuration.path());
        Settings::activeTool = ToolType::Brush;
        Settings::activeColor = Settings::DEFAULT_DRAW_COLOR;
        Settings::brushSize = Settings::pencilSize = Settings::lineSize = 6;
        Settings::textSize = 20;
        Settings::brushOpacity = Settings::pencilOpacity = Settings::lineOpacity = 100;
        Settings::brushHardness = 100;
        Settings::brushTabletEnabled = true;
        Settings::ghostPrev = Settings::ghostNext = Settings::ghostColorOverride = false;
        Settings::ghostPrevCount = Settings::ghostNextCount = Settings::DEFAULT_GHOSTED_FRAME_COUNT;
        Settings::ghostColorOverridePrev = QColor(0, 128, 0);
        Settings::ghostColorOverrideNext = QColor(128, 0, 0);
        Load();
    }
    ~DialogFixture() override { Stop(); }

    void Load() {
        host_->plugins().LoadBuiltin("vellix2", initializePlugin, uninitializePlugin);
        Show();
    }
    /// A window of the host by its title; null when none is shown.
    static QWidget* FindWindow(const QString& title) {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && window->windowTitle() == title) {
                return window;
            }
        }
        return nullptr;
    }
    /// Opens a panel or dialog with its flag of `qmVellixUtil`.
    QWidget* Open(const char* flag, const char* title) {
        Run(std::string("qmVellixUtil ") + flag);
        Settle();
        QWidget* window = FindWindow(QString::fromLatin1(title));
        EXPECT_NE(window, nullptr) << title;
        if (window) {
            static_cast<void>(QTest::qWaitForWindowExposed(window));
        }
        return window;
    }
    /// The button with this text, or with a tooltip that begins with it.
    static QAbstractButton* FindButton(QWidget* window, const QString& text) {
        for (auto* button : window->findChildren<QAbstractButton*>()) {
            if (button->text() == text || button->toolTip().startsWith(text)) {
                return button;
            }
        }
        ADD_FAILURE() << "no button " << text.toStdString();
        return nullptr;
    }
    static void Click(QWidget* window, const char* text) {
        QAbstractButton* const button = FindButton(window, QString::fromLatin1(text));
        // Near the left edge, because a check box may be much wider than its drawn part.
        const int left = qMin(button->width() / 2, 8);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(left, button->height() / 2));
        Settle(10);
    }
    static void Click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    /// The widget with a tooltip that begins with this text.
    template <typename Widget>
    static Widget* Find(QWidget* window, const char* toolTip) {
        for (auto* widget : window->findChildren<Widget*>()) {
            if (widget->toolTip().startsWith(QLatin1String(toolTip))) {
                return widget;
            }
        }
        ADD_FAILURE() << "nothing with the tooltip " << toolTip;
        return nullptr;
    }
    std::string Ask(const std::string& mel) { return Run(mel).Shown(); }
    /// The lines that the plug-in executed since the last call, without those that only take a tool or update
    /// menus and controls.
    std::vector<std::string> Lines() {
        std::vector<std::string> lines;
        for (const std::string& line : executed_.Take()) {
            const std::string command = line.substr(0, line.find_first_of(" ("));
            if (command == "evalDeferred" || (command.rfind("qmVellix", 0) == 0 && line != "qmVellixNode")) {
                lines.push_back(line);
            }
        }
        return lines;
    }

private:
    ExecutedLines executed_{ExecutedLines::Mode::KeepAndExecute};
};

} // namespace vellix
