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
    const std::string flag = longName;
    return {shortName,
            flag,
            {TEXT},
            [flag, label](Control& control, const CommandCall& call) {
                if (QLabel* const found = (Group(control).*label)()) {
                    found->setText(ToQt(call.String(flag.c_str())));
                } else {
                    call.Fail("\"" + control.Path() + "\" was made without that label.");
                }
            },
            [label](Control& control) {
                QLabel* const found = (Group(control).*label)();
                return Value(found ? found->text().toStdString() : std::string());
            }};
}

/// Adds a flag for one column (number, value) and its variants with the count in the name (one value per
/// column).
template <class Change>
void AddColumnFlags(ControlFlags& flags, const std::string& shortName, const std::string& longName,
                    MSyntax::MArgType type, Change change) {
    ControlFlag single{shortName,
                       longName,
                       {INT, type},
                       [longName, change](Control& control, const CommandCall& call) {
                           const char* const flag = longName.c_str();
                           for (unsigned use = 0; use < call.UseCount(flag); ++use) {
                               change(Group(control), call.Int(flag, 0, use), call.Argument(flag, 1, use));
                           }
                       },
                       nullptr};
    single.isMultiUse = true;
    flags.push_back(std::move(single));
    for (int count = 1; count <= MAX_COLUMNS; ++count) {
        const std::string numbered = longName + std::to_string(count);
        flags.push_back({shortName.substr(0, 2) + std::to_string(count), numbered,
                         std::vector<MSyntax::MArgType>(static_cast<std::size_t>(count), type),
                         [numbered, count, change](Control& control, const CommandCall& call) {
                             for (int column = 1; column <= count; ++column) {
                                 change(Group(control), column,
                                        call.Argument(numbered.c_str(), static_cast<unsigned>(column - 1)));
                             }
                         },
                         nullptr});
    }
}

/// Adds the column attachment flags as notes. They have no effect, since parts fill their columns.
void AddAttachFlags(ControlFlags& flags) {
    for (const auto& [shortName, longName, type] :
         {std::tuple("-ct", "-columnAttach", TEXT), std::tuple("-co", "-columnOffset", INT)}) {
        ControlFlag single = CreateFlag(shortName, longName, {INT, TEXT, INT});
        single.set = [](Control&, const CommandCall&) {};
        single.isMultiUse = true;
        flags.push_back(single);
        for (int count = 1; count <= MAX_COLUMNS; ++count) {
            const std::string number = std::to_string(count);
            single.shortName = shortName + number;
            single.longName = longName + number;
            single.arguments.assign(static_cast<std::size_t>(count), type);
            single.isMultiUse = false;
            flags.push_back(single);
        }
    }
    ControlFlag rows = CreateFlag("-rat", "-rowAttach", {INT, TEXT, INT});
    rows.set = [](Control&, const CommandCall&) {};
    rows.isMultiUse = true;
    flags.push_back(rows);
}

} // namespace

GroupControl::GroupControl(const ControlCreation& creation, bool keepsLabelColumn, bool isVertical)
    : Control(creation.type, creation.name, creation.parent, new QWidget)
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

int GroupControl::ColumnWidth(int column) const {
    const QWidget* const widget = Column(column);
    return widget->isHidden() ? 0 : std::max(widget->width(), widget->minimumWidth());
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
        made.push_back({"-adj",
                        "-adjustableColumn",
                        {INT},
                        [](Control& control, const CommandCall& call) {
                            Group(control).SetAdjustable(call.Int("-adjustableColumn"));
                        },
                        nullptr});
        for (int column = 1; column <= MAX_COLUMNS; ++column) {
            made.push_back({"-ad" + std::to_string(column),
                            "-adjustableColumn" + std::to_string(column),
                            {INT},
                            [column](Control& control, const CommandCall& call) {
                                const std::string flag = "-adjustableColumn" + std::to_string(column);
                                Group(control).SetAdjustable(call.Int(flag.c_str()));
                            },
                            nullptr});
        }
        return made + CommonFlags();
    }();
    return flags;
}

} // namespace lightbox
