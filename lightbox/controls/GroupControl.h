#pragma once

#include "controls/Control.h"
#include "controls/ControlType.h"

class QHBoxLayout;
class QLabel;

namespace lightbox {

/// A row of widgets that is one control in MEL: a label, the parts, and an extra label after them. Columns
/// are counted from 1; the label, if there is one, is column 1.
class GroupControl : public Control {
public:
    /// `keepsLabelColumn`: the label's column counts even without a label.
    GroupControl(const ControlCreation& creation, bool keepsLabelColumn = false, bool isVertical = false);

    /// Appends a part as the next column.
    void AddPart(QWidget* part);
    /// Completes the row: appends the extra label when the call asked for one.
    void Finish();
    /// The n-th part, from 1; null when there is none.
    QWidget* Part(int number) const;
    template <class T>
    T* PartAs(int number) const {
        return qobject_cast<T*>(Part(number));
    }
    const std::vector<QWidget*>& Parts() const { return parts_; }
    QLabel* Label() const { return label_; }
    QLabel* ExtraLabel() const { return extraLabel_; }

    /// A width of 0 hides the column.
    void SetColumnWidth(int column, int width);
    void SetColumnAlignment(int column, Qt::Alignment alignment);
    /// Sets the column that takes the remaining width.
    void SetAdjustable(int column);

private:
    QWidget* Column(int column) const;

    QLabel* label_ = nullptr;
    QLabel* extraLabel_ = nullptr;
    bool wantsExtraLabel_ = false;
    std::vector<QWidget*> parts_;
    std::vector<QWidget*> columns_;
};

/// The flags of every group: labels and columns.
const ControlFlags& GroupFlags();

inline GroupControl& Group(Control& control) {
    return dynamic_cast<GroupControl&>(control);
}

} // namespace lightbox
