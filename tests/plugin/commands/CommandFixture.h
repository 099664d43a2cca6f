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

/// A new scene with a drawing node, and what is said in MEL about it.
class CommandFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Runs a line that has to succeed, as if it was typed.
    lightbox::mel::Value Mel(const QString& line);
    /// Runs a line that has to fail; returns the plug-in's messages.
    QStringList Refused(const QString& line);
    /// The errors that the plug-in reported during the last line.
    QStringList Messages() const;
    /// Runs a line that has to fail with exactly this message.
    void ExpectRefusal(const QString& line, const QString& message);

    static BaseNode& Node();
    static QStringList LayerNames(const QString& camera);
    /// All of the drawing as text: cameras, layers with what they are, keys with a digest of their picture.
    static QString Drawing();
    /// A line that changes the drawing; undo has to leave it as it was, redo as the line did.
    /// It is undone when this returns.
    void ExpectUndoable(const QString& line);

    QString WriteFile(const QString& name, const QByteArray& content) const;

    QTemporaryDir folder_;

private:
    QStringList messages_;
};

} // namespace vellix
