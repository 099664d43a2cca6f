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
struct ControlCreation;
struct ControlType;

/// A control that a MEL window command made: a window, layout, menu, menu item, field, collection or panel.
/// It stands for one Qt object, which the registry deletes with it. When Qt deletes the object first, the
/// registry deletes the control.
class Control : NonCopyable {
public:
    /// `object` is a widget, an action or null. A submenu's object is its QMenu.
    Control(const ControlType& type, std::string name, Control* parent, QObject* object);
    Control(const ControlCreation& creation, QObject* object);
    virtual ~Control();

    const ControlType& Type() const { return *type_; }
    const std::string& Name() const { return name_; }
    /// The names from the window down to this control, joined by "|".
    std::string Path() const;
    Control* Parent() const { return parent_; }
    /// In the order of creation.
    const std::vector<Control*>& Children() const { return children_; }
    /// The window that contains the control; null when there is none.
    Control* Window();
    bool IsBelow(const Control& ancestor) const;

    QObject* Object() const { return object_; }
    /// Null when the object is not a widget, or when Qt has deleted it.
    QWidget* Widget() const;
    /// The menu of a menu or submenu; null for anything else.
    QMenu* Menu() const;
    /// The action of a menu item, submenu or menu; null for anything else.
    QAction* Action() const;
    template <class T>
    T* As() const {
        return qobject_cast<T*>(object_.data());
    }

    /// The widget that holds the menu items as actions: a menu or an option menu. Null when the control takes
    /// no items.
    virtual QWidget* ItemHost() const;

    /// Places a new child's widget into this layout or window. The base class takes no children and throws
    /// mel::Error.
    virtual void AddChild(Control& child);
    /// Called before a child is deleted.
    virtual void RemoveChild(Control&) {}
    /// Whether this layout sets the child's width or height and ignores the size that the child requests.
    virtual bool StretchesWidth(const Control&) const { return false; }
    virtual bool StretchesHeight(const Control&) const { return false; }
    /// Whether the control can contain widgets.
    virtual bool TakesChildren() const { return false; }

    /// The menu bar of the control; null when it has none.
    virtual QMenuBar* MenuBar() { return nullptr; }

    /// Requests a size in pixels; 0 or less leaves it to the widget.
    void SetWidth(int width);
    void SetHeight(int height);
    int RequestedWidth() const { return requestedWidth_; }
    int RequestedHeight() const { return requestedHeight_; }
    /// Applies the requested size again after the parent layout's stretching changed.
    void ApplySize();

    /// The control's scripts, by the long name of their flag.
    std::map<std::string, std::string> scripts;
    /// Values kept only for queries, by the long name of their flag.
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
