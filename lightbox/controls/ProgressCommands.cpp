// progressBar and progressWindow.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"
#include "mel/SyntaxBuilder.h"

#include <QApplication>
#include <QPointer>
#include <QProgressBar>
#include <QProgressDialog>

#include <algorithm>

namespace lightbox {

namespace {

using mel::CommandCall;
using mel::SyntaxBuilder;
using mel::Value;

ControlFlags BarFlags() {
    return {
        ValueFlag<QProgressBar, int>("-min", "-minValue", &QProgressBar::setMinimum, &QProgressBar::minimum),
        ValueFlag<QProgressBar, int>("-max", "-maxValue", &QProgressBar::setMaximum, &QProgressBar::maximum),
        // The main window's bar is visible from here to -endProgress.
        ActionFlag<QProgressBar>("-bp", "-beginProgress",
                                 [](QProgressBar& bar) {
                                     bar.setProperty("cancelled", false);
                                     bar.setValue(bar.minimum());
                                     bar.show();
                                     bar.repaint();
                                 }),
        ValueFlag<QProgressBar, int>(
            "-pr", "-progress",
            [](QProgressBar& bar, int value) {
                bar.setValue(std::clamp(value, bar.minimum(), bar.maximum()));
                bar.repaint();
            },
            &QProgressBar::value),
        {"-s",
         "-step",
         {INT},
         [](const Control& control, const CommandCall& call) {
             auto& bar = *control.As<QProgressBar>();
             bar.setValue(std::min(bar.maximum(), bar.value() + call.Int("-step")));
             bar.repaint();
         },
         nullptr},
        ActionFlag<Control>("-ep", "-endProgress",
                            [](Control& control) {
                                control.As<QProgressBar>()->reset();
                                if (control.notes["-isMainProgressBar"] == "1") {
                                    control.Widget()->hide();
                                }
                            }),
        QueryFlag("-ic", "-isCancelled",
                  [](const Control& control) { return control.Object()->property("cancelled").toBool(); }),
        ValueFlag<QProgressBar, QString>(
            "-st", "-status", [](QProgressBar& bar, const QString& text) { bar.setFormat(text + " %p%"); },
            [](const QProgressBar& bar) { return bar.format().remove(" %p%"); }),
        NoteFlag("-ii", "-isInterruptable", ON),
        NoteFlag("-imp", "-isMainProgressBar", ON),
    };
}

/// The progress window. There is at most one at a time.
class ProgressWindow {
public:
    Value Run(const CommandCall& call, ControlRegistry& registry) {
        if (call.IsQuery()) {
            return Query(call);
        }
        if (call.Has("-endProgress")) {
            delete dialog_;
            return Value();
        }
        if (call.IsCreate()) {
            if (dialog_) {
                return Value(false); // another one is being shown
            }
            Open(call, *registry.MainWindow().Widget());
        }
        if (!dialog_) {
            call.Fail("There is no progress window.");
        }
        Update(call);
        return Value(true);
    }

private:
    void Open(const CommandCall& call, QWidget& parent) {
        dialog_ = new QProgressDialog(&parent);
        dialog_->setWindowModality(Qt::ApplicationModal);
        dialog_->setAutoReset(false);
        dialog_->setAutoClose(false);
        dialog_->setMinimumDuration(0);
        dialog_->setWindowTitle("Progress");
        if (!call.Has("-isInterruptable") || !call.Bool("-isInterruptable")) {
            dialog_->setCancelButton(nullptr);
        }
    }

    Value Query(const CommandCall& call) const {
        if (!dialog_) {
            return Value(0);
        }
        if (call.Has("-isCancelled")) {
            QApplication::processEvents(); // receive a click on Cancel
            return Value(dialog_ && dialog_->wasCanceled());
        }
        if (call.Has("-status")) {
            return dialog_->labelText().toStdString();
        }
        if (call.Has("-title")) {
            return dialog_->windowTitle().toStdString();
        }
        return call.Has("-minValue")   ? dialog_->minimum()
               : call.Has("-maxValue") ? dialog_->maximum()
                                       : dialog_->value();
    }

    void Update(const CommandCall& call) {
        if (call.Has("-title")) {
            dialog_->setWindowTitle(ToQt(call.String("-title")));
        }
        if (call.Has("-status")) {
            dialog_->setLabelText(ToQt(call.String("-status")));
        }
        dialog_->setRange(call.IntOr("-minValue", dialog_->minimum()),
                          call.IntOr("-maxValue", dialog_->maximum()));
        int value = call.IntOr("-progress", std::max(dialog_->minimum(), dialog_->value()));
        value += call.IntOr("-step", 0);
        // setValue() processes events, which may close the dialog.
        dialog_->setValue(std::clamp(value, dialog_->minimum(), dialog_->maximum()));
    }

    QPointer<QProgressDialog> dialog_;
};

} // namespace

void RegisterProgressCommands(WindowCommandTable& table) {
    table.Add({"progressBar", ControlType::Family::Control, BarFlags() + CommonFlags(),
               [](const ControlCreation& creation) {
                   return std::make_unique<Control>(creation, new QProgressBar);
               }});
    table.Add("progressWindow",
              SyntaxBuilder()
                  .Flag("-t", "-title", TEXT)
                  .Flag("-st", "-status", TEXT)
                  .Flag("-pr", "-progress", INT)
                  .Flag("-s", "-step", INT)
                  .Flag("-min", "-minValue", INT)
                  .Flag("-max", "-maxValue", INT)
                  .Flag("-ii", "-isInterruptable", ON)
                  .Flag("-ic", "-isCancelled")
                  .Flag("-ep", "-endProgress")
                  .Query()
                  .Edit(),
              [window = std::make_shared<ProgressWindow>()](CommandCall& call, ControlRegistry& registry) {
                  return window->Run(call, registry);
              });
}

} // namespace lightbox
