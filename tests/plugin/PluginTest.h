#pragma once

#include "app/PluginManager.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/Value.h"
#include "scene/Host.h"
#include "scene/IdleQueue.h"
#include "scene/Output.h"

#include <QString>

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vellix {

/// The camera that a new scene looks through.
const QString PERSP = QStringLiteral("persp");

/// A test in the running host. Starts with an empty scene, and keeps the host's errors and warnings.
class PluginTest : public ::testing::Test {
protected:
    PluginTest() {
        previousSink_ = Host().output().SetSink([this](lightbox::Output::Kind kind, const std::string& text) {
            if (kind == lightbox::Output::Kind::Error || kind == lightbox::Output::Kind::Warning) {
                messages_.push_back(text.rfind(PREFIX, 0) == 0 ? text.substr(PREFIX.size()) : text);
            }
        });
        Run("file -force -new");
        Messages();
    }
    ~PluginTest() override { Host().output().SetSink(previousSink_); }

    static lightbox::Host& Host() { return lightbox::Host::Get(); }
    static lightbox::PluginManager& Plugins() {
        return static_cast<lightbox::PluginManager&>(Host().plugins());
    }

    /// Executes MEL as if typed. Returns false after an error, which is kept with the messages.
    bool Run(const std::string& mel) {
        try {
            result_ = Host().interpreter().Execute(mel);
            return true;
        } catch (const lightbox::mel::Error& error) {
            messages_.push_back(error.what());
            return false;
        }
    }
    /// Executes the line and returns its result as text; "<failed>" after an error.
    std::string Ask(const std::string& mel) { return Run(mel) ? result_.Shown() : "<failed>"; }

    /// Errors and warnings since the last call, in order, without the plug-in's prefix.
    std::vector<std::string> Messages() { return std::exchange(messages_, {}); }

private:
    inline static const std::string PREFIX = "[Vellix2] ";

    std::vector<std::string> messages_;
    lightbox::Output::Sink previousSink_;
    lightbox::mel::Value result_;
};

} // namespace vellix
