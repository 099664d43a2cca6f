#pragma once

#include "WindowFixture.h"
#include "controls/ControlRegistry.h"
#include "mel/Error.h"
#include "shell/ScriptedWindow.h"

#include <string>

/// A window, with access to the controls that scripts make.
class ControlsFixture : public WindowFixture {
protected:
    lightbox::ScriptedWindow& Scripted() {
        return dynamic_cast<lightbox::WindowInterface&>(*host_->ui()).Scripted();
    }
    lightbox::ControlRegistry& Controls() { return Scripted().Controls(); }
    template <class T>
    T& Widget(const std::string& name) {
        auto* const widget = qobject_cast<T*>(Controls().FindWidget(name));
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }
    std::string ErrorOf(const std::string& text) {
        try {
            Run(text);
        } catch (const lightbox::mel::Error& error) {
            return error.what();
        }
        return "none";
    }
    std::string Shown(const std::string& text) { return Run(text).Shown(); }
};
