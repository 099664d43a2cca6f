#include "plugin/commands/CommandFixture.h"

#include "core/Frame.h"
#include "core/LayerState.h"
#include "scene/Output.h"

#include <QCryptographicHash>
#include <QFile>

namespace vellix {

using lightbox::Host;
using lightbox::Output;

void CommandFixture::SetUp() {
    Host::Get().output().SetSink([this](Output::Kind kind, const std::string& text) {
        if (kind == Output::Kind::Error) {
            messages_.append(QString::fromStdString(text));
        } else if (kind == Output::Kind::Warning) {
            warnings_.append(QString::fromStdString(text));
        }
    });
    Mel("file -f -new; playbackOptions -min 1 -max 4; currentTime 1; qmVellixNode;");
    Node().ClearClipboard(); // it outlives the scene
}

void CommandFixture::TearDown() {
    Host::Get().output().SetSink({});
}

lightbox::mel::Value CommandFixture::Mel(const QString& line) {
    messages_.clear();
    warnings_.clear();
    try {
        return Host::Get().interpreter().Execute(line.toStdString());
    } catch (const lightbox::mel::Error& error) {
        ADD_FAILURE() << line.toStdString() << "\n"
                      << error.Described() << "\n"
                      << messages_.join("\n").toStdString();
    }
    return {};
}

QStringList CommandFixture::Refused(const QString& line) {
    messages_.clear();
    warnings_.clear();
    try {
        Host::Get().interpreter().Execute(line.toStdString());
        ADD_FAILURE() << "not refused: " << line.toStdString();
    } catch (const lightbox::mel::Error&) {
        // What the interpreter adds about the failed line is not the plug-in's.
    }
    return Messages();
}

QStringList CommandFixture::Messages() const {
    return QStringList(messages_).filter("[Vellix2] ").replaceInStrings("[Vellix2] ", "");
}

QStringList CommandFixture::Warnings() const {
    return QStringList(warnings_).filter("[Vellix2] ").replaceInStrings("[Vellix2] ", "");
}

void CommandFixture::ExpectRefusal(const QString& line, const QString& message) {
    const QString before = Drawing();
    const QStringList messages = Refused(line);
    EXPECT_EQ(messages.join("\n").toStdString(), message.toStdString()) << line.toStdString();
    EXPECT_EQ(Drawing(), before) << line.toStdString();
}

BaseNode& CommandFixture::Node() {
    BaseNode* const node = BaseNode::GetMaster();
    if (!node) {
        throw std::runtime_error("the scene has no drawing node");
    }
    return *node;
}

QStringList CommandFixture::LayerNames(const QString& camera) {
    QStringList names;
    for (const Layer* layer : Node().GetLayers(camera)) {
        names.append(layer->GetName());
    }
    return names;
}

QString CommandFixture::Drawing() {
    const BaseNode* const node = BaseNode::GetMaster();
    if (!node) {
        return "no node";
    }
    const auto layers = node->GetLayerManager();
    QString text = "active camera " + layers->GetActiveCamera() + "\n";
    for (const QString& camera : layers->GetCameras()) {
        if (layers->LayerCount(camera) == 0) {
            text += camera + " has no layers\n";
        }
        for (const Layer* layer : layers->GetLayers(camera)) {
            text += QString("%1/%2 visible %3 opacity %4 state %5 active %6 shows %7:")
                        .arg(camera, layer->GetName())
                        .arg(layer->IsVisible())
                        .arg(layer->GetOpacity())
                        .arg(static_cast<int>(layer->GetState()))
                        .arg(layer->IsActive())
                        .arg(layer->GetCurrentFrameIndex());
            for (int i = 0; i < layer->FrameCount(); ++i) {
                const QByteArray png = layer->GetFrame(i)->GetPackedImage();
                text += QString(" %1=").arg(layer->GetFrame(i)->GetTimeValue()) +
                        QCryptographicHash::hash(png, QCryptographicHash::Md5).toHex().left(8);
            }
            text += "\n";
        }
    }
    return text;
}

void CommandFixture::ExpectUndoable(const QString& line) {
    const QString before = Drawing();
    Mel(line);
    const QString after = Drawing();
    EXPECT_NE(before, after) << line.toStdString();
    for (int round = 0; round < 2; ++round) {
        Mel("undo");
        EXPECT_EQ(Drawing().toStdString(), before.toStdString()) << "after undo of " << line.toStdString();
        Mel("redo");
        EXPECT_EQ(Drawing().toStdString(), after.toStdString()) << "after redo of " << line.toStdString();
    }
    Mel("undo");
}

void CommandFixture::ExpectUndoableChain(const QStringList& lines) {
    QStringList states(Drawing());
    for (const QString& line : lines) {
        Mel(line);
        states.append(Drawing());
    }
    const int count = lines.size();
    for (int round = 0; round < 2; ++round) {
        for (int i = count; i-- > 0;) {
            Mel("undo");
            EXPECT_EQ(Drawing().toStdString(), states[i].toStdString())
                << "undone: " << lines[i].toStdString();
        }
        for (int i = 0; i < count; ++i) {
            Mel("redo");
            EXPECT_EQ(Drawing().toStdString(), states[i + 1].toStdString())
                << "redone: " << lines[i].toStdString();
        }
    }
}

QString CommandFixture::WriteFile(const QString& name, const QByteArray& content) const {
    QFile file(folder_.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return file.fileName();
}

} // namespace vellix
