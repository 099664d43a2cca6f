#include "controls/Control.h"

#include "controls/ControlType.h"
#include "mel/Error.h"

#include <QAction>
#include <QMenu>
#include <QWidget>

namespace lightbox {

Control::Control(const ControlType& type, std::string name, Control* parent, QObject* object)
    : type_(&type)
    , name_(std::move(name))
    , parent_(parent)
    , object_(object) {}

Control::Control(const ControlCreation& creation, QObject* object)
    : Control(creation.type, creation.name, creation.parent, object) {}

Control::~Control() = default;

std::string Control::Path() const {
    return parent_ ? parent_->Path() + "|" + name_ : name_;
}

Control* Control::Window() {
    Control* control = this;
    while (control && control->Type().family != ControlType::Family::Window) {
        control = control->parent_;
    }
    return control;
}

bool Control::IsBelow(const Control& ancestor) const {
    for (const Control* control = parent_; control; control = control->parent_) {
        if (control == &ancestor) {
            return true;
        }
    }
    return false;
}

QWidget* Control::Widget() const {
    return As<QWidget>();
}

QMenu* Control::Menu() const {
    return As<QMenu>();
}

QAction* Control::Action() const {
    QMenu* const menu = Menu();
    return menu ? menu->menuAction() : As<QAction>();
}

QWidget* Control::ItemHost() const {
    return Menu();
}

void Control::AddChild(Control&) {
    throw mel::Error("\"" + Path() + "\" cannot hold controls.");
}

void Control::SetWidth(int width) {
    requestedWidth_ = width;
    ApplySize();
}

void Control::SetHeight(int height) {
    requestedHeight_ = height;
    ApplySize();
}

void Control::ApplySize() {
    QWidget* const widget = Widget();
    if (!widget || widget->isWindow()) {
        return;
    }
    if (parent_ && parent_->StretchesWidth(*this)) {
        widget->setMaximumWidth(QWIDGETSIZE_MAX);
    } else if (requestedWidth_ > 0) {
        widget->setFixedWidth(requestedWidth_);
    }
    if (parent_ && parent_->StretchesHeight(*this)) {
        widget->setMaximumHeight(QWIDGETSIZE_MAX);
    } else if (requestedHeight_ > 0) {
        widget->setFixedHeight(requestedHeight_);
    }
}

} // namespace lightbox
