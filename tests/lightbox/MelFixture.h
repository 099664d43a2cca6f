#pragma once

#include "HostFixture.h"
#include "mel/Error.h"
#include "mel/Interpreter.h"

#include <maya/MObject.h>
#include <maya/MSelectionList.h>

#include <string>

/// A host, with access to its interpreter.
class MelFixture : public HostFixture {
protected:
    lightbox::mel::Value Run(const std::string& text) { return host_.interpreter().Execute(text); }
    /// The result with its type: "int 3".
    std::string Typed(const std::string& text) {
        const lightbox::mel::Value value = Run(text);
        return std::string(lightbox::mel::TypeName(value.GetType())) +
               (value.IsNone() ? "" : " " + value.Shown());
    }
    /// Runs the text and returns its error with line and column; "none" if there is no error.
    std::string ErrorOf(const std::string& text) {
        try {
            Run(text);
        } catch (const lightbox::mel::Error& error) {
            return error.Described();
        }
        return "none";
    }
    /// The output of print and the messages since the last call.
    std::string Output() {
        std::string text;
        for (const std::string& message : messages_) {
            text += message;
        }
        messages_.clear();
        return text;
    }
    /// What the log has got since the last call.
    std::string Log() {
        std::string text;
        for (const std::string& line : log_) {
            text += line;
        }
        log_.clear();
        return text;
    }
    static MObject NodeOf(const char* name) {
        MSelectionList list;
        EXPECT_TRUE(list.add(name)) << name;
        MObject node;
        list.getDependNode(0, node);
        return node;
    }
};
