#include "controls/BoxLayoutControl.h"

#include <QWidget>

namespace lightbox {

BoxLayoutControl::BoxLayoutControl(const ControlCreation& creation, Qt::Orientation orientation)
    : Control(creation, new QWidget)
    , box_(new QBoxLayout(orientation == Qt::Vertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight,
                          Widget())) {
    box_->setContentsMargins(0, 0, 0, 0);
    box_->setSpacing(0);
    // The remaining space stays empty at the end.
    box_->addStretch(0);
}

void BoxLayoutControl::AddChild(Control& child) {
    box_->insertWidget(box_->count() - 1, child.Widget(), stretchesHeight_ ? 1 : 0);
    Align(child);
}

void BoxLayoutControl::SetStretches(bool width, bool height) {
    stretchesWidth_ = width;
    stretchesHeight_ = height;
    for (Control* const child : Children()) {
        Align(*child);
    }
}

void BoxLayoutControl::SetAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    SetStretches(stretchesWidth_, stretchesHeight_);
}

void BoxLayoutControl::Align(Control& child) {
    if (QWidget* const widget = child.Widget()) {
        box_->setAlignment(widget, stretchesWidth_ ? Qt::Alignment() : alignment_);
        child.ApplySize();
    }
}

} // namespace lightbox
