#include "controls/GroupControl.h"

#include "controls/FlagTypes.h"
#include "mel/Error.h"

#include <QBoxLayout>
#include <QLabel>

#include <algorithm>
#include <tuple>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

/// Pixels; the label width of the host's own windows.
constexpr int LABEL_WIDTH = 140;
QBoxLayout& BoxOf(const Control& control) {
    return static_cast<QBoxLayout&>(*control.Widget()->layout());
}

Qt::Alignment AlignmentNamed(const std::string& text) {
    return text == "left" ? Qt::AlignLeft : text == "center" ? Qt::AlignHCenter : Qt::AlignRight;
}

ControlFlag LabelFlag(const char* shortName, const char* longName, QLabel* (GroupControl::*label)() const) {
    return ValueFlag<GroupControl, QString>(
        shortName, longName,
        [label](const GroupControl& group, const QString& text) {
            QLabel* const found = (group.*label)();
            if (!found) {
                throw mel::Error("\"" + group.Path() + "\" was made without that label.");
            }
            found->setText(text);
        },
        [label](const GroupControl& group) {
            const QLabel* const found = (group.*label)();
            return found ? found->text() : QString();
        });
}

/// Adds a flag for one column (number, value) and its variants with the count in the name (one value per
/// column).
template <class Change>
void AddColumnFlags(ControlFlags& flags, const char* shortName, const char* longName, MSyntax::MArgType type,
                    Change change) {
    flags.push_back(MultiFlag(shortName, longName, {INT, type},
                              [longName, change](Control& control, const CommandCall& call, unsigned use) {
                                  change(Group(control), call.Int(longName, 0, use),
                                         call.Argument(longName, 1, use));
                              }));
    for (int count = 1; count <= MAX_COLUMNS; ++count) {
        flags.push_back(SeveralFlag(std::string(shortName).substr(0, 2), longName, count, type,
                                    [change](Control& control, int column, const Value& value) {
                                        change(Group(control), column, value);
                                    }));
    }
}

/// Adds the column attachment flags. They have no effect, since parts fill their columns.
void AddAttachFlags(ControlFlags& flags) {
    const auto ignore = [](Control&, const CommandCall&, unsigned) {};
    for (const auto& [shortName, longName, type] :
         {std::tuple("-ct", "-columnAttach", TEXT), std::tuple("-co", "-columnOffset", INT)}) {
        flags.push_back(MultiFlag(shortName, longName, {INT, TEXT, INT}, ignore));
        for (int count = 1; count <= MAX_COLUMNS; ++count) {
            flags.push_back(
                SeveralFlag(shortName, longName, count, type, [](Control&, int, const Value&) {}));
        }
    }
    flags.push_back(MultiFlag("-rat", "-rowAttach", {INT, TEXT, INT}, ignore));
}

/// The flag for the column that takes the remaining width. `count` is at the end of its name.
ControlFlag AdjustableFlag(const std::string& count) {
    const std::string flag = "-adjustableColumn" + count;
    return {count.empty() ? "-adj" : "-ad" + count,
            flag,
            {INT},
            [flag](Control& control, const CommandCall& call) {
                Group(control).SetAdjustable(call.Int(flag.c_str()));
            },
            nullptr};
}

} // namespace

GroupControl::GroupControl(const ControlCreation& creation, bool keepsLabelColumn, bool isVertical)
    : Control(creation, new QWidget)
    , wantsExtraLabel_(creation.call.Has("-extraLabel")) {
    auto* const box =
        new QBoxLayout(isVertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, Widget());
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(4);
    if (creation.call.Has("-label") || keepsLabelColumn) {
        label_ = new QLabel;
        label_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label_->setFixedWidth(LABEL_WIDTH);
        label_->setVisible(creation.call.Has("-label"));
        box->addWidget(label_);
        columns_.push_back(label_);
    }
}

void GroupControl::AddPart(QWidget* part) {
    BoxOf(*this).addWidget(part);
    parts_.push_back(part);
    columns_.push_back(part);
}

void GroupControl::Finish() {
    if (wantsExtraLabel_) {
        extraLabel_ = new QLabel;
        BoxOf(*this).addWidget(extraLabel_);
        columns_.push_back(extraLabel_);
    }
    BoxOf(*this).addStretch(0);
}

QWidget* GroupControl::Part(int number) const {
    return number >= 1 && static_cast<std::size_t>(number) <= parts_.size()
               ? parts_[static_cast<std::size_t>(number - 1)]
               : nullptr;
}

QWidget* GroupControl::Column(int column) const {
    if (column < 1 || static_cast<std::size_t>(column) > columns_.size()) {
        throw mel::Error("\"" + Path() + "\" has no column " + std::to_string(column) + ".");
    }
    return columns_[static_cast<std::size_t>(column - 1)];
}

void GroupControl::SetColumnWidth(int column, int width) {
    QWidget* const widget = Column(column);
    widget->setVisible(width > 0);
    if (width > 0) {
        widget->setFixedWidth(width);
    }
}

void GroupControl::SetColumnAlignment(int column, Qt::Alignment alignment) {
    if (auto* const label = qobject_cast<QLabel*>(Column(column))) {
        label->setAlignment(alignment | Qt::AlignVCenter);
    }
}

void GroupControl::SetAdjustable(int column) {
    QBoxLayout& box = BoxOf(*this);
    QWidget* const widget = Column(column);
    for (QWidget* const other : columns_) {
        box.setStretchFactor(other, other == widget ? 1 : 0);
    }
    widget->setMinimumWidth(0);
    widget->setMaximumWidth(QWIDGETSIZE_MAX);
    widget->setSizePolicy(QSizePolicy::Expanding, widget->sizePolicy().verticalPolicy());
}

const ControlFlags& GroupFlags() {
    static const ControlFlags flags = [] {
        ControlFlags made = {LabelFlag("-l", "-label", &GroupControl::Label),
                             LabelFlag("-el", "-extraLabel", &GroupControl::ExtraLabel)};
        AddColumnFlags(made, "-cw", "-columnWidth", INT,
                       [](GroupControl& group, int column, const Value& value) {
                           group.SetColumnWidth(column, value.AsInt());
                       });
        AddColumnFlags(made, "-cl", "-columnAlign", TEXT,
                       [](GroupControl& group, int column, const Value& value) {
                           group.SetColumnAlignment(column, AlignmentNamed(value.AsString()));
                       });
        AddAttachFlags(made);
        made.push_back(AdjustableFlag(""));
        for (int column = 1; column <= MAX_COLUMNS; ++column) {
            made.push_back(AdjustableFlag(std::to_string(column)));
        }
        return made + CommonFlags();
    }();
    return flags;
}

} // namespace lightbox
