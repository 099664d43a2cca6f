#pragma once

#include "controls/Control.h"
#include "mel/Value.h"

#include <QObject>
#include <QRect>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QMainWindow;

namespace lightbox {

class Host;
class MenuSets;

/// Owns the MEL controls, finds them by name, and keeps the current parents of new ones. Names are unique
/// among siblings; generated names ("button3") are unique in the whole registry.
class ControlRegistry : public QObject {
    Q_OBJECT

public:
    /// The main window becomes the control "MayaWindow"; it outlives the registry.
    ControlRegistry(Host& host, QMainWindow& mainWindow);
    ~ControlRegistry() override;

    Host& host() const { return host_; }
    Control& MainWindow() const { return *mainWindow_; }
    MenuSets& menuSets() { return *menuSets_; }

    /// Finds a control by short name, full path or the end of a path ("layout|button1"). Of several it
    /// prefers the one in the current parent, else the oldest. Null when there is none.
    Control* Find(const std::string& name) const;
    /// Like Find(), but throws mel::Error when there is none.
    Control& Named(const std::string& name) const;
    /// The widget of a control, else the first widget with that object name in any window. Null when there is
    /// none.
    QWidget* FindWidget(const std::string& name) const;
    /// All controls, in the order of creation.
    std::vector<Control*> All() const;

    /// Takes ownership of a new control. Its name must be free among its siblings.
    Control& Add(std::unique_ptr<Control> control);
    /// Registers a widget that MEL did not make. objectTypeUI answers `typeName` for it. The widget keeps its
    /// owner.
    Control& Adopt(const std::string& typeName, const std::string& name, QWidget& widget,
                   bool isPanel = false);
    /// Deletes a control and everything below it. Widgets are deleted when the event loop runs next.
    void Delete(Control& control);

    /// The name for a new control: `wanted` with its invalid characters replaced, or a name generated from
    /// the type's when `wanted` is empty. Throws mel::Error when a sibling has the name.
    std::string NewName(const std::string& wanted, const std::string& typeName, const Control* parent) const;

    /// The parents of the next control and of the next menu item; the menu is null when there is none.
    Control* CurrentParent() const { return currentParent_; }
    void SetCurrentParent(Control* parent) { currentParent_ = parent; }
    Control* CurrentMenu() const { return currentMenu_; }
    void SetCurrentMenu(Control* menu) { currentMenu_ = menu; }
    /// The collections that the next radio items and radio buttons join; null for none.
    Control* currentItemCollection = nullptr;
    Control* currentButtonCollection = nullptr;

    /// The geometry of closed windows in screen pixels, by window name.
    std::map<std::string, QRect> windowPlaces;

    /// Runs the control's script for a flag like a typed line: it is one undo step, and its errors are shown.
    /// #1, #2 and so on in the script are replaced by the values. Does nothing when the control has no script
    /// for the flag.
    void Run(const Control& control, const std::string& flag, const std::vector<mel::Value>& values = {});
    void RunScript(const std::string& script, const std::vector<mel::Value>& values = {});

private:
    void Forget(Control& control);
    void Detach(Control& control);
    bool IsAdopted(const Control& control) const;
    bool IsTaken(const std::string& name, const Control* parent) const;

    Host& host_;
    /// In the order of creation.
    std::vector<std::unique_ptr<Control>> controls_;
    Control* mainWindow_ = nullptr;
    Control* currentParent_ = nullptr;
    Control* currentMenu_ = nullptr;
    mutable std::map<std::string, int> lastNumbers_;
    std::map<std::string, std::unique_ptr<ControlType>> adoptedTypes_;
    std::unique_ptr<MenuSets> menuSets_;
};

} // namespace lightbox
