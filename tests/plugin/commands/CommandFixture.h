#pragma once

#include "core/Layer.h"
#include "core/LayerManager.h"
#include "mel/Interpreter.h"
#include "node/BaseNode.h"
#include "scene/Host.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vellix {

/// A new scene with a drawing node, and helpers to run MEL lines.
class CommandFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Runs a line as if typed. The line must succeed.
    lightbox::mel::Value Mel(const QString& line);
    /// Runs a line that must fail. Returns the plug-in's messages.
    QStringList Refused(const QString& line);
    /// The errors that the plug-in reported during the last line.
    QStringList Messages() const;
    /// The warnings that the plug-in reported during the last line.
    QStringList Warnings() const;
    /// Runs a line that must fail with exactly this message.
    void ExpectRefusal(const QString& line, const QString& message);

    static BaseNode& Node();
    static QStringList LayerNames(const QString& camera);
    /// The whole drawing as text: cameras, layers with their properties, keys with a digest of their picture.
    static QString Drawing();
    /// Runs a line that changes the drawing. Checks that undo restores the drawing, and that redo changes it
    /// again. The line is undone when this returns.
    void ExpectUndoable(const QString& line);
    /// Runs lines that are one undo step each. Checks that undo, line by line back to the start, and redo to
    /// the end give each state again, twice.
    void ExpectUndoableChain(const QStringList& lines);

    QString WriteFile(const QString& name, const QByteArray& content) const;

    QTemporaryDir folder_;

private:
    QStringList messages_;
    QStringList warnings_;
};

} // namespace vellix
