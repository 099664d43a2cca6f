// textScrollList: a list of texts to choose from.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <QKeyEvent>
#include <QListWidget>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::Value;

class ListWidget : public QListWidget {
public:
    std::function<void()> deletePressed;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) {
            deletePressed();
            return;
        }
        QListWidget::keyPressEvent(event);
    }
};

QListWidget& ListOf(Control& control) {
    return *control.As<QListWidget>();
}

/// A multi-use flag with one string or integer per use.
template <class Each>
ControlFlag Repeated(const char* shortName, const char* longName, MSyntax::MArgType type, Each each,
                     ControlFlag::Get get = nullptr) {
    ControlFlag row = MultiFlag(shortName, longName, {type},
                                [longName, each](Control& control, const CommandCall& call, unsigned use) {
                                    each(ListOf(control), call.Argument(longName, 0, use));
                                });
    row.get = std::move(get);
    return row;
}

QList<QListWidgetItem*> Matching(QListWidget& list, const Value& value) {
    return list.findItems(ToQt(value.AsString()), Qt::MatchExactly | Qt::MatchCaseSensitive);
}

Value Texts(const QList<QListWidgetItem*>& items) {
    Value::StringArray texts;
    for (const QListWidgetItem* const item : items) {
        texts.push_back(item->text().toStdString());
    }
    return texts;
}

Value AllTexts(Control& control) {
    QList<QListWidgetItem*> items;
    for (int i = 0; i < ListOf(control).count(); ++i) {
        items.append(ListOf(control).item(i));
    }
    return Texts(items);
}

/// The selected items from top to bottom.
QList<QListWidgetItem*> Selected(QListWidget& list) {
    QList<QListWidgetItem*> items = list.selectedItems();
    std::sort(items.begin(), items.end(),
              [&list](const auto* first, const auto* second) { return list.row(first) < list.row(second); });
    return items;
}

Value SelectedIndexes(Control& control) {
    Value::IntArray rows;
    for (const QListWidgetItem* const item : Selected(ListOf(control))) {
        rows.push_back(ListOf(control).row(item) + 1);
    }
    return rows;
}

ControlFlags ContentFlags() {
    return {
        ActionFlag<QListWidget>("-ra", "-removeAll", &QListWidget::clear),
        Repeated("-ri", "-removeItem", TEXT,
                 [](QListWidget& list, const Value& value) { qDeleteAll(Matching(list, value)); }),
        Repeated("-rii", "-removeIndexedItem", INT,
                 [](QListWidget& list, const Value& value) { delete list.takeItem(value.AsInt() - 1); }),
        Repeated("-a", "-append", TEXT,
                 [](QListWidget& list, const Value& value) { list.addItem(ToQt(value.AsString())); }),
        MultiFlag("-ap", "-appendPosition", {INT, TEXT},
                  [](Control& control, const CommandCall& call, unsigned use) {
                      const int row = call.Int("-appendPosition", 0, use);
                      QListWidget& list = ListOf(control);
                      list.insertItem(row > 0 ? row - 1 : list.count(),
                                      ToQt(call.String("-appendPosition", 1, use)));
                  }),
        QueryFlag("-ai", "-allItems", AllTexts),
        QueryFlag("-ni", "-numberOfItems", [](Control& control) { return Value(ListOf(control).count()); }),
    };
}

/// A flag that selects or deselects the items with a text.
ControlFlag SelectItem(const char* shortName, const char* longName, bool on, ControlFlag::Get get = nullptr) {
    return Repeated(
        shortName, longName, TEXT,
        [on](QListWidget& list, const Value& value) {
            for (QListWidgetItem* const item : Matching(list, value)) {
                item->setSelected(on);
            }
        },
        std::move(get));
}

ControlFlag SelectIndexed(const char* shortName, const char* longName, bool on,
                          ControlFlag::Get get = nullptr) {
    return Repeated(
        shortName, longName, INT,
        [on](const QListWidget& list, const Value& value) {
            if (QListWidgetItem* const item = list.item(value.AsInt() - 1)) {
                item->setSelected(on);
            }
        },
        std::move(get));
}

ControlFlags SelectionFlags() {
    return {
        ValueFlag<QListWidget, bool>(
            "-ams", "-allowMultiSelection",
            [](QListWidget& list, bool on) {
                list.setSelectionMode(on ? QAbstractItemView::ExtendedSelection
                                         : QAbstractItemView::SingleSelection);
            },
            [](const QListWidget& list) {
                return list.selectionMode() == QAbstractItemView::ExtendedSelection;
            }),
        ActionFlag<QListWidget>("-da", "-deselectAll", &QListWidget::clearSelection),
        SelectItem("-di", "-deselectItem", false),
        SelectIndexed("-dii", "-deselectIndexedItem", false),
        SelectItem("-si", "-selectItem", true,
                   [](Control& control) { return Texts(Selected(ListOf(control))); }),
        SelectIndexed("-sii", "-selectIndexedItem", true, SelectedIndexes),
        QueryFlag(
            "-nsi", "-numberOfSelectedItems",
            [](Control& control) { return Value(static_cast<int>(ListOf(control).selectedItems().size())); }),
        Repeated("-shi", "-showIndexedItem", INT,
                 [](QListWidget& list, const Value& value) {
                     list.scrollToItem(list.item(value.AsInt() - 1), QAbstractItemView::PositionAtTop);
                 }),
        ScriptFlag("-sc", "-selectCommand"),
        ScriptFlag("-dcc", "-doubleClickCommand"),
        ScriptFlag("-dkc", "-deleteKeyCommand"),
    };
}

ControlFlag RowsFlag() {
    return ValueFlag<Control, int>(
        "-nr", "-numberOfRows",
        [](Control& control, int value) {
            const QListWidget& list = ListOf(control);
            const int rows = std::clamp(value, 1, 1000);
            constexpr int padding = 4;
            const int height = list.fontMetrics().height() + padding;
            control.notes["-numberOfRows"] = std::to_string(rows);
            control.SetHeight(rows * height + 2 * list.frameWidth());
        },
        [](Control& control) { return Value(control.notes["-numberOfRows"]).AsInt(); });
}

std::unique_ptr<Control> CreateList(const ControlCreation& creation) {
    auto* const list = new ListWidget;
    auto control = std::make_unique<Control>(creation, list);
    ControlRegistry& registry = creation.registry;
    Control* const made = control.get();
    list->deletePressed = [&registry, made] { registry.Run(*made, "-deleteKeyCommand"); };
    // Only the user's selection runs the script; then the list has the focus.
    QObject::connect(list, &QListWidget::itemSelectionChanged, list, [&registry, made, list] {
        if (list->hasFocus()) {
            registry.Run(*made, "-selectCommand");
        }
    });
    QObject::connect(list, &QListWidget::itemDoubleClicked, list,
                     [&registry, made] { registry.Run(*made, "-doubleClickCommand"); });
    return control;
}

} // namespace

void RegisterTextScrollListCommand(WindowCommandTable& table) {
    table.Add({"textScrollList", ControlType::Family::Control,
               ContentFlags() + SelectionFlags() + ControlFlags{RowsFlag(), NoteFlag("-fn", "-font", TEXT)} +
                   CommonFlags(),
               CreateList});
}

} // namespace lightbox
