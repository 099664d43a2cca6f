#pragma once

#include "controls/Control.h"
#include "controls/ControlType.h"

#include <QBoxLayout>

namespace lightbox {

/// A layout that puts its children in a row or a column.
class BoxLayoutControl : public Control {
public:
    BoxLayoutControl(const ControlCreation& creation, Qt::Orientation orientation);

    void AddChild(Control& child) override;
    bool StretchesWidth(const Control&) const override { return stretchesWidth_; }
    bool StretchesHeight(const Control&) const override { return stretchesHeight_; }
    bool TakesChildren() const override { return true; }

    QBoxLayout& Box() const { return *box_; }
    /// Whether children fill the layout across its direction, and along it.
    void SetStretches(bool width, bool height);
    /// Aligns children that do not fill the layout.
    void SetAlignment(Qt::Alignment alignment);

private:
    void Align(Control& child);

    QBoxLayout* box_;
    Qt::Alignment alignment_ = Qt::AlignLeft;
    bool stretchesWidth_ = false;
    bool stretchesHeight_ = false;
};

} // namespace lightbox
