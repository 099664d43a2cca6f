#pragma once

#include "app/LightboxHost.h"
#include "openmaya/PluginHandle.h"
#include "scene/Output.h"
#include "scene/Plugin.h"

#include <maya/MFnPlugin.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

/// A batch host with its own preferences. Keeps the host's messages instead of printing them.
class HostFixture : public ::testing::Test {
protected:
    HostFixture()
        : host_(lightbox::Host::Options{true, prefs_.path().toStdString()}) {
        host_.output().SetSink([this](lightbox::Output::Kind kind, const std::string& text) {
            messages_.push_back(lightbox::Output::Worded(kind, text));
        });
        host_.output().SetLog([this](lightbox::Output::Kind kind, const std::string& text) {
            log_.push_back(lightbox::Output::Worded(kind, text));
        });
    }

    QTemporaryDir prefs_;
    std::vector<std::string> messages_;
    std::vector<std::string> log_; ///< the messages, and what only the log gets
    lightbox::LightboxHost host_;
};
