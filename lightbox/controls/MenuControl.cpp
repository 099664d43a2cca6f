#include "controls/MenuControl.h"

#include "controls/ControlMenu.h"
#include "controls/ControlRegistry.h"

#include <algorithm>

namespace lightbox {

using mel::Value;

MenuControl::MenuControl(const ControlCreation& creation, ControlMenu* menu)
    : Control(creation, menu)
    , registry_(creation.registry) {
    menu->setTitle(MenuLabel(ToQt(creation.name)));
    // The menu is the receiver, since a torn-off menu belongs to no single window.
    QObject::connect(menu, &QMenu::aboutToShow, menu, [this] { AboutToShow(); });
}

void MenuControl::AboutToShow() {
    const bool isOnce = notes.count("-postMenuCommandOnce") != 0 && notes["-postMenuCommandOnce"] == "1";
    const auto script = scripts.find("-postMenuCommand");
    if (script == scripts.end() || script->second.empty()) {
        return;
    }
    const std::string text = script->second;
    const std::string path = Path();
    if (isOnce) {
        scripts.erase(script);
    }
    registry_.RunScript(text, {Value(path)});
}

std::vector<Control*> ItemsOf(const Control& menu) {
    std::vector<Control*> items;
    const QWidget* const host = menu.ItemHost();
    if (!host) {
        return items;
    }
    for (const QAction* const action : host->actions()) {
        const auto& all = menu.Children();
        const auto found = std::find_if(all.begin(), all.end(),
                                        [&](const Control* item) { return item->Action() == action; });
        if (found != all.end()) {
            items.push_back(*found);
        }
    }
    return items;
}

QString MenuLabel(const QString& text) {
    QString label = text;
    return label.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString PlainLabel(QString label) {
    return label.replace(QLatin1String("&&"), QLatin1String("&"));
}

const ControlFlags& MenuFlags() {
    const auto items = [](const Control& control) {
        Value::StringArray names;
        for (const Control* const item : ItemsOf(control)) {
            names.push_back(item->Name());
        }
        return names;
    };
    static const ControlFlags flags = {
        ValueFlag<QMenu, QString>(
            "-l", "-label", [](QMenu& menu, const QString& text) { menu.setTitle(MenuLabel(text)); },
            [](const QMenu& menu) { return PlainLabel(menu.title()); }),
        ValueFlag<QMenu, bool>("-to", "-tearOff", &QMenu::setTearOffEnabled, &QMenu::isTearOffEnabled),
        ScriptFlag("-pmc", "-postMenuCommand"),
        NoteFlag("-pmo", "-postMenuCommandOnce", MSyntax::kBoolean),
        NoteFlag("-aob", "-allowOptionBoxes", MSyntax::kBoolean),
        NoteFlag("-fi", "-familyImage", MSyntax::kString),
        QueryFlag("-ia", "-itemArray", items),
        CountFlag("-ni", "-numberOfItems", items),
    };
    return flags;
}

} // namespace lightbox
