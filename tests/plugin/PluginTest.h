#pragma once

#include "app/PluginManager.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/Value.h"
#include "scene/Host.h"
#include "scene/IdleQueue.h"
#include "scene/Output.h"

#include <QString>

#include <gmock/gmock.h>
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
        m_previousSink =
            Host().output().SetSink([this](lightbox::Output::Kind kind, const std::string& text) {
                if (kind == lightbox::Output::Kind::Error || kind == lightbox::Output::Kind::Warning) {
                    m_messages.push_back(text.rfind(PREFIX, 0) == 0 ? text.substr(PREFIX.size()) : text);
                }
            });
        Run("file -force -new");
        Messages();
    }
    ~PluginTest() override { Host().output().SetSink(m_previousSink); }

    static lightbox::Host& Host() { return lightbox::Host::Get(); }
    static lightbox::PluginManager& Plugins() {
        return static_cast<lightbox::PluginManager&>(Host().plugins());
    }

    /// Executes MEL as if typed. Returns false after an error, which is kept with the messages.
    bool Run(const std::string& mel) {
        try {
            m_result = Host().interpreter().Execute(mel);
            return true;
        } catch (const lightbox::mel::Error& error) {
            m_messages.push_back(error.what());
            return false;
        }
    }
    /// Executes the line and returns its result as text; "<failed>" after an error.
    std::string Ask(const std::string& mel) { return Run(mel) ? m_result.Shown() : "<failed>"; }

    /// Errors and warnings since the last call, in order, without the plug-in's prefix.
    std::vector<std::string> Messages() { return std::exchange(m_messages, {}); }

private:
    inline static const std::string PREFIX = "[Vellix2] ";

    std::vector<std::string> m_messages;
    lightbox::Output::Sink m_previousSink;
    lightbox::mel::Value m_result;
};

} // namespace vellix
