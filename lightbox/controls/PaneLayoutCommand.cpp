// paneLayout: panes with movable borders between them.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"

#include <QBoxLayout>
#include <QSplitter>

#include <algorithm>
#include <numeric>

namespace lightbox {

namespace {

using mel::CommandCall;

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
        : Control(creation, new QWidget) {
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
    /// Throws mel::Error when there is no configuration of that name.
    void SetConfiguration(const std::string& name) {
        const auto& all = Configurations();
        const auto found = std::find_if(all.begin(), all.end(),
                                        [&](const Configuration& each) { return name == each.name; });
        if (found == all.end()) {
            throw mel::Error("Unknown pane configuration: " + name);
        }
        configuration_ = &*found;
        Arrange();
    }
    int PaneCount() const {
        return std::accumulate(configuration_->parts.begin(), configuration_->parts.end(), 0);
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

ControlFlag PaneSizeFlag() {
    return MultiFlag(
        "-ps", "-paneSize", {INT, INT, INT}, [](Control& control, const CommandCall& call, unsigned use) {
            dynamic_cast<PaneLayoutControl&>(control).SetPaneSize(
                call.Int("-paneSize", 0, use), call.Int("-paneSize", 1, use), call.Int("-paneSize", 2, use));
        });
}

/// A flag that asks for the name of a pane, counted from 0.
ControlFlag PaneFlag(const char* shortName, const char* longName, std::size_t index) {
    return QueryFlag(shortName, longName, [index](const Control& control) {
        const std::vector<Control*> panes = dynamic_cast<const PaneLayoutControl&>(control).Panes();
        return index < panes.size() ? panes[index]->Name() : std::string();
    });
}

ControlFlags PaneFlags() {
    return {
        ValueFlag<PaneLayoutControl, std::string>("-cn", "-configuration",
                                                  &PaneLayoutControl::SetConfiguration,
                                                  &PaneLayoutControl::ConfigurationName),
        PaneSizeFlag(),
        QueryFlag("-nvp", "-numberOfVisiblePanes",
                  [](const Control& control) {
                      return dynamic_cast<const PaneLayoutControl&>(control).PaneCount();
                  }),
        PaneFlag("-p1", "-pane1", 0),
        PaneFlag("-p2", "-pane2", 1),
        PaneFlag("-p3", "-pane3", 2),
        PaneFlag("-p4", "-pane4", 3),
        NoteFlag("-st", "-separatorThickness", INT),
        NoteFlag("-aft", "-activeFrameThickness", INT),
        ScriptFlag("-smc", "-separatorMovedCommand"),
    };
}

} // namespace

void RegisterPaneLayoutCommand(WindowCommandTable& table) {
    table.Add(
        {"paneLayout", ControlType::Family::Layout, PaneFlags() + LayoutFlags(), Make<PaneLayoutControl>});
}

} // namespace lightbox
