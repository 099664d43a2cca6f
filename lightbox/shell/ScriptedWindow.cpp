#include "shell/ScriptedWindow.h"

#include "controls/ControlRegistry.h"
#include "controls/WindowCommandTable.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/SyntaxBuilder.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/UserInterface.h"
#include "shell/CommandLineBar.h"
#include "shell/MainWindow.h"
#include "shell/MessageLog.h"
#include "shell/Registration.h"
#include "shell/ScriptEditor.h"
#include "shell/UnsavedChanges.h"
#include "viewport/PanelLayout.h"
#include "viewport/ViewportPanel.h"
#include "viewport/ViewportPanels.h"

#include <QAction>
#include <QFile>
#include <QMenu>
#include <QProgressBar>
#include <QStatusTipEvent>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;
using Place = MainWindow::Place;

/// The place of the window that a script names.
Place PlaceNamed(const CommandCall& call) {
    const std::string name = call.Object(0).AsString();
    const std::pair<const char*, Place> rows[] = {{"Shelf", Place::Shelf},
                                                  {"Time Slider", Place::Time},
                                                  {"Range Slider", Place::Time},
                                                  {"Command Line", Place::Command},
                                                  {"Help Line", Place::Command}};
    for (const auto& [label, place] : rows) {
        if (name == label) {
            return place;
        }
    }
    call.Fail("There is no part of the window named \"" + name + "\".");
}

} // namespace

ScriptedWindow::ScriptedWindow(Host& host, MainWindow& window)
    : host_(host)
    , window_(window)
    , log_(std::make_unique<MessageLog>(host.output(), host.interpreter()))
    , controls_(std::make_unique<ControlRegistry>(host, window))
    , commandLine_(new CommandLineBar(*log_))
    , editor_(new ScriptEditor(host.output(), host.interpreter(), *log_, &window)) {
    RegisterWindowCommands(host.interpreter().Commands(), controls_.get(), &window.Panels());
    RegisterCommands();
    AdoptParts();
    window.Put(Place::Command, commandLine_);
    connect(&window, &MainWindow::HelpShown, commandLine_, &CommandLineBar::ShowHelp);
    window.installEventFilter(this);
    BuildMenus();
}

ScriptedWindow::~ScriptedWindow() {
    window_.removeEventFilter(this);
    // These widgets listen to the log, so delete them first.
    delete commandLine_;
    delete editor_;
}

void ScriptedWindow::AdoptParts() {
    mel::Interpreter& interpreter = host_.interpreter();
    interpreter.SetGlobal("gMainWindow", "MayaWindow");
    controls_->Adopt("paneLayout", "viewPanes", window_.Layout());
    interpreter.SetGlobal("gMainPane", "MayaWindow|viewPanes");
    for (ViewportPanel* const panel : window_.Panels().All()) {
        controls_->Adopt("modelPanel", panel->Name(), *panel, true);
    }
}

void ScriptedWindow::RegisterCommands() {
    WindowCommandTable table(host_.interpreter().Commands(), controls_.get());
    table.Add("ScriptEditor", SyntaxBuilder(), [this](CommandCall&, ControlRegistry&) {
        editor_->show();
        editor_->raise();
        editor_->activateWindow();
        editor_->setFocus();
        return Value();
    });
    table.Add("saveChanges", SyntaxBuilder().Objects(1, 1),
              [this](CommandCall& call, ControlRegistry& registry) {
                  const bool mayGoOn = UnsavedChanges::Settle(host_.files(), host_.output(), &window_);
                  if (mayGoOn) {
                      registry.RunScript(call.Object(0).AsString());
                  }
                  return Value(mayGoOn);
              });
    table.Add("SaveScene", SyntaxBuilder(), [this](CommandCall&, ControlRegistry&) {
        return Value(UnsavedChanges::Save(host_.files(), host_.output(), &window_));
    });
    table.Add("SaveSceneAs", SyntaxBuilder(), [this](CommandCall&, ControlRegistry&) {
        return Value(UnsavedChanges::SaveAs(host_.files(), host_.output(), &window_));
    });
    table.Add("isUIComponentVisible", SyntaxBuilder().Objects(1, 1),
              [this](CommandCall& call, ControlRegistry&) {
                  return Value(window_.IsPlaceVisible(PlaceNamed(call)));
              });
    table.Add("toggleUIComponentVisibility", SyntaxBuilder().Objects(1, 1),
              [this](CommandCall& call, ControlRegistry&) {
                  const Place place = PlaceNamed(call);
                  window_.SetPlaceVisible(place, !window_.IsPlaceVisible(place));
                  return Value();
              });
}

void ScriptedWindow::BuildMenus() {
    try {
        for (const char* name : {"mainWindow.mel", "preferences.mel"}) {
            QFile script(QStringLiteral(":/lightbox/scripts/") + name);
            script.open(QIODevice::ReadOnly);
            host_.interpreter().Execute(script.readAll().toStdString(), name);
        }
        host_.interpreter().Execute("lightboxBuildMainWindow");
    } catch (const mel::Error& error) {
        host_.interpreter().Report(error);
    }
    if (QWidget* const shelf = controls_->FindWidget("lightboxShelf")) {
        window_.Put(Place::Shelf, shelf);
    }
    if (QWidget* const progress = controls_->FindWidget("mainProgressBar")) {
        commandLine_->AddToHelpLine(progress);
    }
    // Enable items with a shortcut when the menu closes: the shortcut may become usable before the menu opens
    // again.
    if (const Control* const edit = controls_->Find("mainEditMenu")) {
        QMenu* const menu = edit->Menu();
        connect(menu, &QMenu::aboutToHide, menu, [menu] {
            for (QAction* const action : menu->actions()) {
                action->setEnabled(action->isEnabled() || !action->shortcut().isEmpty());
            }
        });
    }
    // Animators expect several shortcuts for undo and redo.
    if (const Control* const undo = controls_->Find("lightboxUndoItem")) {
        undo->Action()->setShortcuts({QKeySequence("Ctrl+Z"), QKeySequence("Z")});
    }
    if (const Control* const redo = controls_->Find("lightboxRedoItem")) {
        redo->Action()->setShortcuts(
            {QKeySequence("Ctrl+Y"), QKeySequence("Shift+Z"), QKeySequence("Ctrl+Shift+Z")});
    }
}

bool ScriptedWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::StatusTip) {
        commandLine_->ShowHelp(static_cast<QStatusTipEvent*>(event)->tip());
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lightbox
