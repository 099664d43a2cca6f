#pragma once

#include "controls/Control.h"
#include "controls/ControlType.h"

class QHBoxLayout;
class QLabel;

namespace lightbox {

/// A row of widgets that MEL knows as one control: a label, the parts, another label behind. Columns are
/// counted from 1; the label is one when there is a label.
class GroupControl : public Control {
public:
    /// `keepsLabelColumn`: the label's column counts even without a label.
    GroupControl(const ControlCreation& creation, bool keepsLabelColumn = false, bool isVertical = false);

    /// Appends a part as the next column.
    void AddPart(QWidget* part);
    /// Closes the row with the label behind the parts, when one is asked for.
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
    int ColumnWidth(int column) const;
    void SetColumnAlignment(int column, Qt::Alignment alignment);
    /// The column that takes the room that is left.
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
