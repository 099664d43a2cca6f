#pragma once

#include "controls/ControlRegistry.h"
#include "controls/ControlType.h"

#include <QAbstractButton>

namespace lightbox {

/// The scripts of everything that is on or off.
inline ControlFlags ToggleScripts() {
    return {ScriptFlag("-cc", "-changeCommand"), ScriptFlag("-onc", "-onCommand"),
            ScriptFlag("-ofc", "-offCommand")};
}

/// Runs the scripts of one button of a control, whose flags end with `number` where there are several. A
/// radio button that goes off because another goes on runs its own.
inline void RunToggleScripts(ControlRegistry& registry, Control& control, bool isOn,
                             const std::string& number = std::string()) {
    // A script may delete the control: what comes after it has to be known to exist.
    const QPointer<QObject> alive = control.Object();
    for (const std::string& flag :
         {std::string(isOn ? "-onCommand" : "-offCommand") + number, "-changeCommand" + number}) {
        if (alive) {
            registry.Run(control, flag, {mel::Value(isOn)});
        }
    }
}

} // namespace lightbox
