#pragma once

#include "scene/NonCopyable.h"

#include <QPointer>
#include <QString>

#include <map>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace lightbox {

class ControlRegistry;
struct ControlType;

/// What a window command of MEL makes: a window, a layout, a menu, an item, a field, a collection, a panel.
/// It stands for one Qt object, which it deletes when it goes; when Qt deletes the object first, the registry
/// forgets the control.
class Control : NonCopyable {
public:
    /// `object` is a widget, an action or null. A submenu's object is its QMenu.
    Control(const ControlType& type, std::string name, Control* parent, QObject* object);
    virtual ~Control();

    const ControlType& Type() const { return *type_; }
    const std::string& Name() const { return name_; }
    /// Names from the window down, joined by "|".
    std::string Path() const;
    Control* Parent() const { return parent_; }
    /// In the order they were made.
    const std::vector<Control*>& Children() const { return children_; }
    /// The window it stands in; null for one that stands in none.
    Control* Window();
    bool IsBelow(const Control& ancestor) const;

    QObject* Object() const { return object_; }
    /// Null when the control is no widget, or when Qt has deleted it.
    QWidget* Widget() const;
    /// The menu of a menu or submenu; null for anything else.
    QMenu* Menu() const;
    /// The action of a menu item, submenu or menu; null for anything else.
    QAction* Action() const;
    template <class T>
    T* As() const {
        return qobject_cast<T*>(object_.data());
    }

    /// The widget that holds its menu items as actions: its menu, or an option menu; null when it takes none.
    virtual QWidget* ItemHost() const;

    /// Places a new child's widget into this layout or window. The base class has no room for children and
    /// throws mel::Error.
    virtual void AddChild(Control& child);
    /// Called before a child goes.
    virtual void RemoveChild(Control&) {}
    /// Whether this layout gives the child its width or height, whatever the child asks for.
    virtual bool StretchesWidth(const Control&) const { return false; }
    virtual bool StretchesHeight(const Control&) const { return false; }
    /// Whether widgets can stand in it.
    virtual bool TakesChildren() const { return false; }

    /// The bar that its menus hang in; null when it has none.
    virtual QMenuBar* MenuBar() { return nullptr; }

    /// Asks for a size in pixels; 0 or less leaves it to the widget.
    void SetWidth(int width);
    void SetHeight(int height);
    int RequestedWidth() const { return requestedWidth_; }
    int RequestedHeight() const { return requestedHeight_; }
    /// Applies the requested size after the layout's wishes changed.
    void ApplySize();

    /// The scripts that were given to it, by the long name of their flag.
    std::map<std::string, std::string> scripts;
    /// Values that are kept for queries only, by the long name of their flag.
    std::map<std::string, std::string> notes;

private:
    friend class ControlRegistry;

    const ControlType* type_;
    std::string name_;
    Control* parent_;
    std::vector<Control*> children_;
    QPointer<QObject> object_;
    int requestedWidth_ = 0;
    int requestedHeight_ = 0;
};

inline QString ToQt(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace lightbox
