// paneLayout: panes with movable borders between them.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"

#include <QBoxLayout>
#include <QSplitter>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

/// A configuration: the direction of the outer splitter, and the number of panes in each of its parts.
struct Configuration {
    const char* name;
    Qt::Orientation orientation;
    std::vector<int> parts;
};

const std::vector<Configuration>& Configurations() {
    static const std::vector<Configuration> all = {
        {"single", Qt::Horizontal, {1}},
        {"horizontal2", Qt::Vertical, {1, 1}},
        {"vertical2", Qt::Horizontal, {1, 1}},
        {"horizontal3", Qt::Vertical, {1, 1, 1}},
        {"vertical3", Qt::Horizontal, {1, 1, 1}},
        {"top3", Qt::Vertical, {2, 1}},
        {"bottom3", Qt::Vertical, {1, 2}},
        {"left3", Qt::Horizontal, {2, 1}},
        {"right3", Qt::Horizontal, {1, 2}},
        {"horizontal4", Qt::Vertical, {1, 1, 1, 1}},
        {"vertical4", Qt::Horizontal, {1, 1, 1, 1}},
        {"top4", Qt::Vertical, {3, 1}},
        {"bottom4", Qt::Vertical, {1, 3}},
        {"left4", Qt::Horizontal, {3, 1}},
        {"right4", Qt::Horizontal, {1, 3}},
        {"quad", Qt::Vertical, {2, 2}},
    };
    return all;
}

class PaneLayoutControl : public Control {
public:
    explicit PaneLayoutControl(const ControlCreation& creation)
        : Control(creation.type, creation.name, creation.parent, new QWidget) {
        auto* const box = new QVBoxLayout(Widget());
        box->setContentsMargins(0, 0, 0, 0);
        Arrange();
    }

    void AddChild(Control& child) override {
        child.Widget()->setParent(Widget());
        Arrange();
    }
    bool StretchesWidth(const Control&) const override { return true; }
    bool StretchesHeight(const Control&) const override { return true; }
    bool TakesChildren() const override { return true; }

    const char* ConfigurationName() const { return configuration_->name; }
    bool SetConfiguration(const std::string& name) {
        const auto& all = Configurations();
        const auto found = std::find_if(all.begin(), all.end(),
                                        [&](const Configuration& each) { return name == each.name; });
        if (found == all.end()) {
            return false;
        }
        configuration_ = &*found;
        Arrange();
        return true;
    }
    int PaneCount() const {
        int count = 0;
        for (const int part : configuration_->parts) {
            count += part;
        }
        return count;
    }
    std::vector<Control*> Panes() const {
        std::vector<Control*> panes;
        for (Control* const child : Children()) {
            if (child->Widget() && !child->Menu()) {
                panes.push_back(child);
            }
        }
        return panes;
    }
    /// Sets the size of a pane, counted from 1, in percent of the layout's width and height.
    void SetPaneSize(int pane, int width, int height) {
        const std::vector<Control*> panes = Panes();
        if (pane < 1 || static_cast<std::size_t>(pane) > panes.size()) {
            return;
        }
        for (QWidget* widget = panes[static_cast<std::size_t>(pane - 1)]->Widget(); widget != Widget();
             widget = widget->parentWidget()) {
            if (auto* const splitter = qobject_cast<QSplitter*>(widget->parentWidget())) {
                const int percent = splitter->orientation() == Qt::Horizontal ? width : height;
                SetShare(*splitter, splitter->indexOf(widget), std::clamp(percent, 0, 100));
            }
        }
    }

private:
    static void SetShare(QSplitter& splitter, int index, int percent) {
        constexpr int whole = 10000;
        const int others = std::max(1, splitter.count() - 1);
        QList<int> sizes;
        for (int i = 0; i < splitter.count(); ++i) {
            sizes.append(i == index ? whole * percent / 100 : whole * (100 - percent) / 100 / others);
        }
        splitter.setSizes(sizes);
    }

    /// Builds new splitters and distributes the panes to them. Panes beyond the configuration are hidden.
    void Arrange() {
        QBoxLayout* const box = static_cast<QBoxLayout*>(Widget()->layout());
        QSplitter* const before = outer_;
        outer_ = new QSplitter(configuration_->orientation);
        outer_->setHandleWidth(4);
        const std::vector<Control*> panes = Panes();
        std::size_t next = 0;
        for (const int count : configuration_->parts) {
            QSplitter* const part =
                count == 1 ? outer_
                           : new QSplitter(configuration_->orientation == Qt::Vertical ? Qt::Horizontal
                                                                                       : Qt::Vertical);
            for (int i = 0; i < count && next < panes.size(); ++i) {
                QWidget* const pane = panes[next++]->Widget();
                const bool wasHidden =
                    pane->testAttribute(Qt::WA_WState_ExplicitShowHide) && pane->isHidden();
                part->addWidget(pane);
                pane->setVisible(!wasHidden || hidden_);
            }
            if (part != outer_) {
                outer_->addWidget(part);
            }
        }
        hidden_ = next < panes.size();
        for (; next < panes.size(); ++next) {
            QWidget* const pane = panes[next]->Widget();
            pane->setParent(Widget());
            pane->hide();
        }
        box->addWidget(outer_);
        delete before;
    }

    const Configuration* configuration_ = &Configurations().front();
    QSplitter* outer_ = nullptr;
    bool hidden_ = false;
};

PaneLayoutControl& Pane(Control& control) {
    return dynamic_cast<PaneLayoutControl&>(control);
}

ControlType PaneType() {
    ControlType type;
    type.name = "paneLayout";
    type.family = ControlType::Family::Layout;
    ControlFlag size{"-ps",
                     "-paneSize",
                     {INT, INT, INT},
                     [](Control& control, const CommandCall& call) {
                         for (unsigned use = 0; use < call.UseCount("-paneSize"); ++use) {
                             Pane(control).SetPaneSize(call.Int("-paneSize", 0, use),
                                                       call.Int("-paneSize", 1, use),
                                                       call.Int("-paneSize", 2, use));
                         }
                     },
                     nullptr};
    size.isMultiUse = true;
    const auto pane = [](Control& control, std::size_t index) {
        const std::vector<Control*> panes = Pane(control).Panes();
        return Value(index < panes.size() ? panes[index]->Name() : std::string());
    };
    type.flags =
        ControlFlags{
            {"-cn",
             "-configuration",
             {TEXT},
             [](Control& control, const CommandCall& call) {
                 if (!Pane(control).SetConfiguration(call.String("-configuration"))) {
                     call.Fail("Unknown pane configuration: " + call.String("-configuration"));
                 }
             },
             [](Control& control) { return Value(Pane(control).ConfigurationName()); }},
            size,
            QueryFlag("-nvp", "-numberOfVisiblePanes",
                      [](Control& control) { return Value(Pane(control).PaneCount()); }),
            QueryFlag("-p1", "-pane1", [pane](Control& control) { return pane(control, 0); }),
            QueryFlag("-p2", "-pane2", [pane](Control& control) { return pane(control, 1); }),
            QueryFlag("-p3", "-pane3", [pane](Control& control) { return pane(control, 2); }),
            QueryFlag("-p4", "-pane4", [pane](Control& control) { return pane(control, 3); }),
            NoteFlag("-st", "-separatorThickness", INT),
            NoteFlag("-aft", "-activeFrameThickness", INT),
            ScriptFlag("-smc", "-separatorMovedCommand"),
        } +
        LayoutFlags();
    type.create = [](const ControlCreation& creation) {
        return std::make_unique<PaneLayoutControl>(creation);
    };
    return type;
}

} // namespace

void RegisterPaneLayoutCommand(WindowCommandTable& table) {
    table.Add(PaneType());
}

} // namespace lightbox
