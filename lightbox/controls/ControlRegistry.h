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

/// The controls of MEL by name, and where the next one goes. Names are unique among siblings; names that the
/// registry makes up ("button3") are unique altogether.
class ControlRegistry : public QObject {
    Q_OBJECT

public:
    /// The main window becomes the control "MayaWindow"; it outlives the registry.
    ControlRegistry(Host& host, QMainWindow& mainWindow);
    ~ControlRegistry() override;

    Host& host() const { return host_; }
    Control& MainWindow() const { return *mainWindow_; }
    MenuSets& menuSets() { return *menuSets_; }

    /// By short name, whole path or the end of one ("layout|button1"); of several, the one in the current
    /// parent, else the first. Null when there is none.
    Control* Find(const std::string& name) const;
    /// The same, or mel::Error.
    Control& Named(const std::string& name) const;
    /// The widget of a control, else the first widget of that object name in any window; null when there is
    /// none.
    QWidget* FindWidget(const std::string& name) const;
    /// All controls, in the order they were made.
    std::vector<Control*> All() const;

    /// Takes a new control over. Its name must be free among its siblings.
    Control& Add(std::unique_ptr<Control> control);
    /// Makes a widget known that was not made by MEL: `typeName` is what objectTypeUI answers. The widget
    /// keeps its owner.
    Control& Adopt(const std::string& typeName, const std::string& name, QWidget& widget,
                   bool isPanel = false);
    /// Deletes a control and all below it; a widget goes when the event loop runs next.
    void Delete(Control& control);

    /// The name for a new control: `wanted` with the characters that no name has replaced, or a new one made
    /// from the type's. mel::Error when a sibling has it.
    std::string NewName(const std::string& wanted, const std::string& typeName, const Control* parent) const;

    /// Where the next control and the next menu item go; null before the first window.
    Control* CurrentParent() const { return currentParent_; }
    void SetCurrentParent(Control* parent) { currentParent_ = parent; }
    Control* CurrentMenu() const { return currentMenu_; }
    void SetCurrentMenu(Control* menu) { currentMenu_ = menu; }
    /// The collections that the next radio items and radio buttons join; null for none.
    Control* currentItemCollection = nullptr;
    Control* currentButtonCollection = nullptr;

    /// Where windows were when they were closed, by name.
    std::map<std::string, QRect> windowPlaces;

    /// Runs a control's script of that flag as a typed line is run: one step to undo, its errors shown. #1,
    /// #2 and so on in it stand for the values. Does nothing when the control has no such script.
    void Run(const Control& control, const std::string& flag, const std::vector<mel::Value>& values = {});
    void RunScript(const std::string& script, const std::vector<mel::Value>& values = {});

private:
    void Forget(Control& control);
    void Detach(Control& control);
    bool IsAdopted(const Control& control) const;
    bool IsTaken(const std::string& name, const Control* parent) const;

    Host& host_;
    /// In the order they were made.
    std::vector<std::unique_ptr<Control>> controls_;
    Control* mainWindow_ = nullptr;
    Control* currentParent_ = nullptr;
    Control* currentMenu_ = nullptr;
    mutable std::map<std::string, int> lastNumbers_;
    std::map<std::string, std::unique_ptr<ControlType>> adoptedTypes_;
    std::unique_ptr<MenuSets> menuSets_;
};

} // namespace lightbox
