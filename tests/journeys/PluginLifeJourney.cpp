#include "journeys/Lightbox.h"

#include <gtest/gtest.h>

namespace {

/// Two layers of persp and one of front; state() says which layers there are and which are active.
const char* const LAYERS = R"(
proc string state()
{
    string $text = `qmVellixNode -q -camera` + ":";
    string $camera;
    for ($camera in {"persp", "front"})
    {
        $text += " " + $camera + " " + `qmVellixLayer -q -act $camera`;
        int $count = `qmVellixLayer -cnt $camera`;
        int $i;
        for ($i = 0; $i < $count; ++$i)
            $text += " " + `qmVellixLayer -qn $i $camera`;
    }
    return $text + "\n";
}
qmVellixNode -l -f -c persp -ln "Rough";
qmVellixLayer -add -n "Ink" -ls 0 persp;
qmVellixLayer -add -n "Front" -ls 0 front;
qmVellixLayer -e -act 1 persp;
)";

TEST(PluginLifeJourney, WhatTheMenuDeletesIsUndone) {
    const Lightbox lightbox;
    const auto result = lightbox.RunScript(QByteArray(LAYERS) + R"(
        print `state`;
        qmVxDeleteActiveLayer;
        print `state`;
        undo;
        print `state`;
        qmVxDeleteActiveCameraLayers;
        print `state`;
        undo;
        print `state`;
        qmVxDeleteAllNodes;
        print (`qmVellixNode -exists` + "\n");
        undo;
        print `state`;
    )");
    const QByteArray whole = "persp: persp 1 Rough Ink front 0 Front\n";
    EXPECT_EQ(result.output, whole + "persp: persp 0 Rough front 0 Front\n" + whole +
                                 "persp: persp -1 front 0 Front\n" + whole + "0\n" + whole);
}

TEST(PluginLifeJourney, AReferencedDrawingIsNotTheScenesOwn) {
    const Lightbox lightbox;
    lightbox.RunScript(QByteArray(LAYERS) + R"(file -rename "shot.ma"; file -save -type "mayaAscii";)");
    const auto result = lightbox.RunScript(R"(
        file -reference -namespace "ref" "shot.ma";
        print (`qmVellixNode -exists` + "" + size(`ls -type qmVellix`) + "\n");
        qmVellixNode -l -c persp -ln "Own";
        print (`qmVellixNode -exists` + "" + size(`ls -type qmVellix`) + `qmVellixLayer -qn 0 persp` + "\n");
        file -rename "both.lbx"; file -save -type "lightboxBinary"; file -f -open "both.lbx";
        print (`qmVellixNode -exists` + "" + size(`ls -type qmVellix`) + `qmVellixLayer -qn 0 persp` + "\n");
    )");
    EXPECT_EQ(result.output, "01\n12Own\n12Own\n") << result.errors.toStdString();
}

TEST(PluginLifeJourney, LoadsAndUnloadsFiftyTimes) {
    const Lightbox lightbox;
    const auto result = lightbox.RunScript(R"(
        int $round;
        for ($round = 0; $round < 50; ++$round)
        {
            unloadPlugin "vellix2";
            if (`exists qmVellixNode`)
                error "still there";
            loadPlugin "vellix2";
            qmVellixNode -l -f -c persp;
            delete vellix;
        }
        print `qmVellixNode -exists`;
    )");
    EXPECT_EQ(result.output, "0") << result.errors.toStdString();
}

TEST(PluginLifeJourney, ADrawingOutlivesItsPlugin) {
    const Lightbox lightbox;
    const auto result = lightbox.RunScript(QByteArray(LAYERS) + R"(
        file -rename "before.ma"; file -save -type "mayaAscii";
        print (catch(`unloadPlugin "vellix2"`) + "\n");
        print `state`;
        unloadPlugin -force "vellix2";
        file -rename "without.ma"; file -save -type "mayaAscii";
        loadPlugin "vellix2";
        file -f -open "without.ma";
        file -rename "after.ma"; file -save -type "mayaAscii";
        print `state`;
    )");
    const QByteArray state = "persp: persp 1 Rough Ink front 0 Front\n";
    EXPECT_TRUE(result.output.startsWith("1\n" + state)) << result.output.toStdString();
    EXPECT_TRUE(lightbox.ReadDrawing("after.ma") == lightbox.ReadDrawing("before.ma"));
}

TEST(PluginLifeJourney, NamesOfEveryKindSurviveBothFormats) {
    const Lightbox lightbox;
    const QList<QByteArray> names = {R"(say \"hi\")",
                                     R"(back\\slash\\n)",
                                     R"(two\nlines\r\n)",
                                     R"({};$x`ls`; // |)",
                                     "\xE7\xAD\x86 \xF0\x9F\x96\x8C",
                                     R"(a\tb)"};
    QByteArray script = "qmVellixNode;\n";
    for (const QByteArray& name : names) {
        script += "qmVellixLayer -add -n \"" + name + "\" -ls 0 persp;\n";
    }
    script += R"(
        proc show() { int $i; for ($i = 0; $i < 6; ++$i) print ("<" + `qmVellixLayer -qn $i persp` + ">"); print "#"; }
        show;
        file -rename "names.ma"; file -save -type "mayaAscii"; file -f -open "names.ma"; show;
        file -rename "names.lbx"; file -save -type "lightboxBinary"; file -f -open "names.lbx"; show;
    )";
    const QList<QByteArray> shown = lightbox.RunScript(script).output.split('#');
    ASSERT_EQ(shown.size(), 4);
    EXPECT_TRUE(shown[0].startsWith("<say \"hi\"><back\\slash\\n><two\nlines\r\n>"))
        << shown[0].toStdString();
    EXPECT_EQ(shown[1], shown[0]);
    EXPECT_EQ(shown[2], shown[0]);
}

TEST(PluginLifeJourney, ADamagedDrawingIsSaidAndTheRestOpens) {
    const Lightbox lightbox;
    lightbox.RunScript(QByteArray(LAYERS) +
                       R"(setAttr persp.tx 12; file -rename "shot.ma"; file -save -type "mayaAscii";)");
    const QByteArray drawing = lightbox.ReadDrawing("shot.ma");
    QByteArray damaged = drawing;
    damaged.replace("\"Ink\"", "");
    ASSERT_FALSE(damaged == drawing);
    lightbox.Write("shot.ma", lightbox.Read("shot.ma").replace(drawing, damaged));
    const auto result = lightbox.RunScript(R"(
        catch(`file -f -open "shot.ma"`);
        print (`getAttr persp.tx` + " " + `qmVellixLayer -qn 0 persp` + " " + `objExists vellixShape`);
    )");
    EXPECT_EQ(result.output, "12 Rough 1");
    EXPECT_TRUE(result.errors.contains("Error")) << result.errors.toStdString();
}

} // namespace
