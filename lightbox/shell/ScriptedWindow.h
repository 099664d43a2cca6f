#pragma once

#include <QObject>

#include <memory>

namespace lightbox {

class CommandLineBar;
class ControlRegistry;
class Host;
class MainWindow;
class MessageLog;
class ScriptEditor;

/// The part of the main window that uses MEL: controls, menus and shelf, command line and help line, script
/// editor.
class ScriptedWindow : public QObject {
    Q_OBJECT

public:
    /// Registers the window commands with the interpreter and adds the parts to the window.
    ScriptedWindow(Host& host, MainWindow& window);
    ~ScriptedWindow() override;

    ControlRegistry& Controls() const { return *controls_; }
    MessageLog& Log() const { return *log_; }
    CommandLineBar& CommandLine() const { return *commandLine_; }
    ScriptEditor& Editor() const { return *editor_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AdoptParts();
    void RegisterCommands();
    void BuildMenus();

    Host& host_;
    MainWindow& window_;
    std::unique_ptr<MessageLog> log_;
    std::unique_ptr<ControlRegistry> controls_;
    CommandLineBar* commandLine_;
    ScriptEditor* editor_;
};

} // namespace lightbox
