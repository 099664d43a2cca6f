// lightboxWidget and lightboxGrab: the screen geometry of widgets, and images of them.

#include "controls/ControlRegistry.h"
#include "controls/WindowCommandTable.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/UserInterface.h"
#include "scene/WholeFile.h"
#include "shell/Registration.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;

QWidget& WidgetNamed(const CommandCall& call, const ControlRegistry& registry, const std::string& name) {
    QWidget* const widget = registry.FindWidget(name);
    if (!widget) {
        call.Fail("There is no widget \"" + name + "\".");
    }
    return *widget;
}

Value OnScreen(const QWidget& widget, const QRect& part) {
    const QPoint corner = widget.mapToGlobal(part.topLeft());
    return Value::IntArray{corner.x(), corner.y(), part.width(), part.height()};
}

/// The screen rectangle of a menu's title in a menu bar, or of an item's row in an open menu.
Value ItemOnScreen(const CommandCall& call, QAction& action) {
    for (const QWidget* const host : action.associatedWidgets()) {
        if (!host->isVisible()) {
            continue;
        }
        if (const auto* const menu = qobject_cast<const QMenu*>(host)) {
            return OnScreen(*host, menu->actionGeometry(&action));
        }
        if (const auto* const bar = qobject_cast<const QMenuBar*>(host)) {
            return OnScreen(*host, bar->actionGeometry(&action));
        }
    }
    call.Fail("\"" + call.Object(0).AsString() + "\" is not shown.");
}

Value Widget(CommandCall& call, ControlRegistry& registry) {
    if (!call.IsQuery() || !call.Has("-geometry")) {
        call.Fail("lightboxWidget only supports -query -geometry.");
    }
    const std::string& name = call.Object(0).AsString();
    const Control* const control = registry.Find(name);
    if (control && control->Action()) {
        return ItemOnScreen(call, *control->Action());
    }
    const QWidget& widget = WidgetNamed(call, registry, name);
    return OnScreen(widget, widget.rect());
}

bool IsPopup(const QWidget& window) {
    return window.windowType() == Qt::Popup;
}

/// Whether a window stays above another: a popup, or one of the other's dialogs or floating windows.
bool IsOver(const QWidget& window, const QWidget& below) {
    const QWidget* parent = window.parentWidget();
    while (parent && parent != &below) {
        parent = parent->parentWidget();
    }
    return &window != &below && window.isVisible() && !window.isMinimized() && (parent || IsPopup(window));
}

/// The windows that lie over a window, from the lowest to the topmost.
std::vector<QWidget*> WindowsOver(const QWidget& below) {
    std::vector<QWidget*> windows;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (IsOver(*window, below)) {
            windows.push_back(window);
        }
    }
    const auto height = [](const QWidget* window) {
        return (IsPopup(*window) ? 2 : 0) + (window->isActiveWindow() ? 1 : 0);
    };
    std::stable_sort(windows.begin(), windows.end(), [&](const QWidget* first, const QWidget* second) {
        return height(first) < height(second);
    });
    return windows;
}

/// An image of a window with the windows over it, or of any other widget alone.
QPixmap Grab(QWidget& widget) {
    QPixmap picture = widget.grab();
    if (!widget.isWindow() || IsPopup(widget)) {
        return picture;
    }
    QPainter painter(&picture);
    const QPoint corner = widget.mapToGlobal(QPoint(0, 0));
    for (QWidget* const window : WindowsOver(widget)) {
        painter.drawPixmap(window->mapToGlobal(QPoint(0, 0)) - corner, window->grab());
    }
    return picture;
}

/// Writes the format that the file's suffix names. Returns why that failed, or an empty string.
std::string WritePicture(const QPixmap& picture, const QString& file) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.save(&buffer, QFileInfo(file).suffix().toLatin1().constData())) {
        return "The suffix is that of no picture format that can be written";
    }
    return WholeFile::Write(file.toStdString(), bytes.toStdString());
}

Value GrabCommand(CommandCall& call, ControlRegistry& registry) {
    if (!call.Has("-file")) {
        call.Fail("The file to write is missing: -file.");
    }
    // Let Qt lay out widgets that were shown or hidden just before.
    QApplication::sendPostedEvents();
    if (UserInterface* const ui = registry.host().ui()) {
        ui->RefreshViews(true);
    }
    QApplication::sendPostedEvents();
    QWidget& widget = call.Has("-widget") ? WidgetNamed(call, registry, call.String("-widget"))
                                          : *registry.MainWindow().Widget();
    const QString file = ToQt(call.String("-file"));
    const std::string fault = WritePicture(Grab(widget), file);
    if (!fault.empty()) {
        call.Fail("The image \"" + call.String("-file") + "\" cannot be written: " + fault + ".");
    }
    return call.String("-file");
}

} // namespace

void RegisterGrabCommands(WindowCommandTable& table) {
    table.Add("lightboxWidget", SyntaxBuilder().Flag("-g", "-geometry").Query().Objects(1, 1), Widget);
    table.Add("lightboxGrab",
              SyntaxBuilder().Flag("-f", "-file", MSyntax::kString).Flag("-w", "-widget", MSyntax::kString),
              GrabCommand);
}

} // namespace lightbox
