#pragma once

#include "MelFixture.h"
#include "NotesPlugin.h"
#include "app/PluginManager.h"
#include "formats/AsciiWriter.h"
#include "formats/FileOperation.h"
#include "formats/SceneContent.h"
#include "formats/SceneFiles.h"
#include "text/Quoted.h"

#include <QFile>
#include <QTemporaryDir>

#include <sstream>
#include <string>

/// A host with a folder for scene files. The notes plug-in is loaded.
class SceneFileFixture : public MelFixture {
protected:
    SceneFileFixture() { LoadNotes(); }

    void LoadNotes() { host_.plugins().LoadBuiltin("notes", notes::Initialize, notes::Uninitialize); }

    std::string Path(const std::string& name) const { return folder_.path().toStdString() + "/" + name; }
    /// The path as a MEL string literal.
    std::string Quoted(const std::string& name) const { return lightbox::Quoted(Path(name)); }

    void Write(const std::string& name, const std::string& bytes) const {
        QFile file(QString::fromStdString(Path(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    std::string Read(const std::string& name) const {
        QFile file(QString::fromStdString(Path(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll().toStdString();
    }
    void Save(const std::string& name) {
        EXPECT_EQ(ErrorOf("file -rename " + Quoted(name) + "; file -save;"), "none");
    }
    std::string ErrorOfOpening(const std::string& name) { return ErrorOf("file -f -open " + Quoted(name)); }

    /// A Maya ASCII text without the lines that differ from one save to the next.
    static std::string WithoutStamps(const std::string& text) {
        std::istringstream lines(text);
        std::string kept;
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("//Name: ", 0) != 0 && line.rfind("//Last modified: ", 0) != 0 &&
                line.rfind("// End of ", 0) != 0) {
                kept += line + '\n';
            }
        }
        return kept;
    }
    std::string ReadScene(const std::string& name) const { return WithoutStamps(Read(name)); }
    /// The text of the scene as Maya ASCII, without a file: each one would be brought to the disk.
    std::string SceneText() {
        std::ostringstream text;
        const lightbox::FileOperationScope scope(host_, lightbox::FileOperation::Export);
        lightbox::SceneContent content = lightbox::SceneContent::Whole(host_);
        content.NameReferencesFrom(folder_.path().toStdString());
        lightbox::AsciiWriter(host_.files(), host_.time(), text).Write(content, "text_of_the_scene.ma");
        return WithoutStamps(text.str());
    }

    /// Makes a scene with an example of everything that can be stored.
    void BuildScene() {
        Run(R"(
            currentUnit -t ntsc; playbackOptions -min 2 -max 48 -ast 1 -aet 96; currentTime 12.5;
            fileInfo "shot" "010 \"final\"";
            createNode transform -n "upper"; createNode transform -n "same" -p upper;
            createNode transform -n "same"; createNode locator -n "mark" -p "|same";
            setAttr "|same.t" 1 -2.25 1e-7; setAttr "|same.v" no; setAttr -l on -k off "upper|same.sx" 3;
            setAttr -cb on "upper.ro"; setAttr "upper.ro" 2;
            addAttr -ln "note" -dt "string" upper;
            setAttr "upper.note" -type "string" "a \"b\"\\\n\tc é 鉛筆";
            addAttr -ln "mode" -at "enum" -en "off:slow=5:fast" -k true -dv 5 upper; setAttr "upper.mode" 6;
            addAttr -ln "amount" -sn "amt" -at "double" -min 0 -max 10 -dv 1 -nn "How much" upper;
            addAttr -ln "tint" -uac -at "float3" upper;
            addAttr -ln "tintR" -at "float" -p tint upper; addAttr -ln "tintG" -at "float" -p tint upper;
            addAttr -ln "tintB" -at "float" -p tint upper; setAttr "upper.tint" 0.25 0.5 1;
            addAttr -ln "weights" -at "double" -m upper; setAttr -s 4 "upper.weights[2:4]" 1 2 3;
            setAttr "upper.weights[9]" 0;
            addAttr -ln "names" -dt "stringArray" upper; setAttr "upper.names" -type "stringArray" 2 "-k" "";
            addAttr -ln "curve" -dt "doubleArray" upper; setAttr "upper.curve" -type "doubleArray" 3 0.1 2 -3;
            addAttr -ln "rest" -at "matrix" upper;
            setAttr "upper.rest" -type "matrix" 1 0 0 0 0 2 0 0 0 0 1 0 5 6 7 1;
            createNode animCurveTU -n "keys"; setAttr -s 2 "keys.ktv[0:1]" 1 0 10 5; connectAttr keys.o upper.sy;
            connectAttr ":time1.o" "keys.i";
            createNode notebook -n "book"; setAttr "book.pg" -type "notes" 2 "first" "-second";
            setAttr "book.lpx" 4; namespace -add "props"; createNode transform -n "props:cup";
            lockNode -l on "props:cup"; setAttr "persp.t" 1 2 3; select -r upper;
        )");
    }

    QTemporaryDir folder_;
};
