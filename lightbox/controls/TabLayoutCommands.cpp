// tabLayout, shelfTabLayout and shelfLayout.

#include "controls/BoxLayoutControl.h"
#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"

#include <QTabBar>
#include <QTabWidget>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

class TabLayoutControl : public Control {
public:
    explicit TabLayoutControl(const ControlCreation& creation)
        : Control(creation, new QTabWidget) {
        ControlRegistry& registry = creation.registry;
        QTabWidget* const tabs = As<QTabWidget>();
        // Only the user's clicks send tabBarClicked.
        QObject::connect(tabs, &QTabWidget::tabBarClicked, tabs, [this, tabs, &registry](int index) {
            registry.Run(*this, "-preSelectCommand");
            tabs->setCurrentIndex(index);
            registry.Run(*this, "-selectCommand");
            if (tabs->currentIndex() != last_) {
                registry.Run(*this, "-changeCommand");
            }
            last_ = tabs->currentIndex();
        });
        QObject::connect(tabs, &QTabWidget::tabBarDoubleClicked, tabs,
                         [this, &registry] { registry.Run(*this, "-doubleClickCommand"); });
    }

    void AddChild(Control& child) override { As<QTabWidget>()->addTab(child.Widget(), ToQt(child.Name())); }
    bool StretchesWidth(const Control&) const override { return true; }
    bool StretchesHeight(const Control&) const override { return true; }
    bool TakesChildren() const override { return true; }

    /// The index of a child's tab. Throws mel::Error when there is none.
    int IndexOf(const std::string& name) const {
        for (const Control* const child : Children()) {
            const bool isIt = child->Name() == name || child->Path() == name;
            const int index = isIt ? As<QTabWidget>()->indexOf(child->Widget()) : -1;
            if (index >= 0) {
                return index;
            }
        }
        throw mel::Error("\"" + name + "\" is not a tab of \"" + Path() + "\".");
    }

private:
    int last_ = 0;
};

TabLayoutControl& Tabs(Control& control) {
    return dynamic_cast<TabLayoutControl&>(control);
}

ControlFlag LabelFlag(bool byIndex) {
    const char* const flag = byIndex ? "-tabLabelIndex" : "-tabLabel";
    ControlFlag row =
        MultiFlag(byIndex ? "-tli" : "-tl", flag, {byIndex ? INT : TEXT, TEXT},
                  [flag, byIndex](Control& control, const CommandCall& call, unsigned use) {
                      const int index = byIndex ? call.Int(flag, 0, use) - 1
                                                : Tabs(control).IndexOf(call.String(flag, 0, use));
                      control.As<QTabWidget>()->setTabText(index, ToQt(call.String(flag, 1, use)));
                  });
    row.get = [](Control& control) {
        Value::StringArray labels;
        const auto& tabs = *control.As<QTabWidget>();
        for (int i = 0; i < tabs.count(); ++i) {
            labels.push_back(tabs.tabText(i).toStdString());
        }
        return labels;
    };
    return row;
}

ControlFlags TabFlags() {
    return {
        LabelFlag(false),
        LabelFlag(true),
        ValueFlag<TabLayoutControl, std::string>(
            "-st", "-selectTab",
            [](const TabLayoutControl& tabs, const std::string& name) {
                tabs.As<QTabWidget>()->setCurrentIndex(tabs.IndexOf(name));
            },
            [](const TabLayoutControl& tabs) {
                const QWidget* const page = tabs.As<QTabWidget>()->currentWidget();
                return page ? page->objectName().toStdString() : std::string();
            }),
        ValueFlag<QTabWidget, int>(
            "-sti", "-selectTabIndex", [](QTabWidget& tabs, int number) { tabs.setCurrentIndex(number - 1); },
            [](const QTabWidget& tabs) { return tabs.currentIndex() + 1; }),
        ValueFlag<QTabWidget, bool>(
            "-tv", "-tabsVisible", [](const QTabWidget& tabs, bool on) { tabs.tabBar()->setVisible(on); },
            [](const QTabWidget& tabs) { return !tabs.tabBar()->isHidden(); }),
        ScriptFlag("-cc", "-changeCommand"),
        ScriptFlag("-sc", "-selectCommand"),
        ScriptFlag("-psc", "-preSelectCommand"),
        ScriptFlag("-dcc", "-doubleClickCommand"),
        NoteFlag("-imw", "-innerMarginWidth", INT),
        NoteFlag("-imh", "-innerMarginHeight", INT),
        NoteFlag("-scr", "-scrollable", ON),
        NoteFlag("-cr", "-childResizable", ON),
        NoteFlag("-bv", "-borderVisible", ON),
    };
}

std::unique_ptr<Control> CreateShelf(const ControlCreation& creation) {
    auto shelf = std::make_unique<BoxLayoutControl>(creation, Qt::Horizontal);
    shelf->Box().setContentsMargins(2, 2, 2, 2);
    shelf->Box().setSpacing(2);
    return shelf;
}

} // namespace

void RegisterTabLayoutCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    for (const char* const name : {"tabLayout", "shelfTabLayout"}) {
        table.Add({name, Family::Layout, TabFlags() + LayoutFlags(), Make<TabLayoutControl>});
    }
    const ControlFlags shelfFlags = {NoteFlag("-cw", "-cellWidth", INT), NoteFlag("-ch", "-cellHeight", INT),
                                     NoteFlag("-sp", "-spacing", INT), NoteFlag("-st", "-style", TEXT)};
    table.Add({"shelfLayout", Family::Layout, shelfFlags + LayoutFlags(), CreateShelf});
}

} // namespace lightbox
