#pragma once

#include "controls/ControlRegistry.h"
#include "controls/ControlType.h"

#include <QAbstractButton>

namespace lightbox {

/// The script flags of check boxes, radio buttons and other toggles.
inline ControlFlags ToggleScripts() {
    return {ScriptFlag("-cc", "-changeCommand"), ScriptFlag("-onc", "-onCommand"),
            ScriptFlag("-ofc", "-offCommand")};
}

/// Runs the scripts of one button of a control. In a group of several buttons the names of the flags end with
/// `number`. A radio button that turns off because another one turns on runs its scripts, too.
inline void RunToggleScripts(ControlRegistry& registry, Control& control, bool isOn,
                             const std::string& number = std::string()) {
    // A script may delete the control, so check before each script that it still exists.
    const QPointer<QObject> alive = control.Object();
    for (const std::string& flag :
         {std::string(isOn ? "-onCommand" : "-offCommand") + number, "-changeCommand" + number}) {
        if (alive) {
            registry.Run(control, flag, {mel::Value(isOn)});
        }
    }
}

} // namespace lightbox
