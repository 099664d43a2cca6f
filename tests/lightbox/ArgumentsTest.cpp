#include "MelFixture.h"
#include "mel/ArgumentTokens.h"
#include "openmaya/ApiBridge.h"
#include "openmaya/PluginCommand.h"
#include "scene/UndoQueue.h"

#include <maya/MAngle.h>
#include <maya/MArgDatabase.h>
#include <maya/MArgList.h>
#include <maya/MCommandResult.h>
#include <maya/MDistance.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MPxCommand.h>
#include <maya/MSelectionList.h>
#include <maya/MStringArray.h>
#include <maya/MSyntax.h>
#include <maya/MTime.h>

#include <sstream>

using lightbox::mel::ArgumentTokens;
using lightbox::mel::Value;

namespace {

class ArgumentsTest : public MelFixture {};

TEST_F(ArgumentsTest, AListConvertsWhatReadsAsTheType) {
    const MArgList list = ArgumentTokens::Wrap(ArgumentTokens(
        std::vector<Value>{1, 2.5, "3", "4.75", "on", "persp", "2sec", "", "0", "12ab", "-x"}));
    const struct {
        unsigned int index;
        const char* asBool;
        const char* asInt;
        const char* asDouble;
        const char* asTime;
        const char* asString;
    } rows[] = {
        {0, "1", "1", "1", "1", "1"},     {1, "1", "2", "2.5", "2.5", "2.5"},
        {2, "1", "3", "3", "3", "3"},     {3, "1", "4", "4.75", "4.75", "4.75"},
        {4, "1", "-", "-", "-", "on"},    {5, "-", "-", "-", "-", "persp"},
        {6, "-", "-", "-", "48", "2sec"}, {7, "-", "-", "-", "-", ""},
        {8, "0", "0", "0", "0", "0"},     {9, "-", "-", "-", "-", "12ab"},
        {11, "-", "-", "-", "-", "-"},
    };
    const auto text = [](const MStatus& status, const auto& value) {
        std::ostringstream stream;
        stream << value;
        return status ? stream.str() : "-";
    };
    for (const auto& row : rows) {
        MStatus status;
        const bool flag = list.asBool(row.index, &status);
        EXPECT_EQ(text(status, flag), row.asBool) << row.index;
        const int number = list.asInt(row.index, &status);
        EXPECT_EQ(text(status, number), row.asInt) << row.index;
        const double real = list.asDouble(row.index, &status);
        EXPECT_EQ(text(status, real), row.asDouble) << row.index;
        const MTime time = list.asTime(row.index, &status);
        EXPECT_EQ(text(status, time.as(MTime::kFilm)), row.asTime) << row.index;
        const MString string = list.asString(row.index, &status);
        EXPECT_EQ(text(status, string), row.asString) << row.index;
        // The index moves on whether or not the argument could be read, which leaves the place it goes to
        // alone.
        unsigned int index = row.index;
        int taken = -7;
        const bool isInt = list.get(index, taken) == MS::kSuccess;
        EXPECT_EQ(index, row.index + 1);
        EXPECT_EQ(taken, isInt ? number : -7);
    }
    EXPECT_EQ(list.length(), 11u);
    EXPECT_EQ(list.flagIndex("x", "long"), 10u);
    EXPECT_EQ(list.flagIndex("-y"), static_cast<unsigned int>(MArgList::kInvalidArgIndex));
    unsigned int index = 0;
    MStatus status;
    EXPECT_EQ(list.asStringArray(index, &status).length(), 10u);
    EXPECT_EQ(index, 10u);
}

TEST_F(ArgumentsTest, ASyntaxRefusesFlagsThatClash) {
    MSyntax syntax;
    EXPECT_TRUE(syntax.addFlag("-n", "-name", MSyntax::kString));
    EXPECT_TRUE(syntax.addFlag("-en", "editName", MSyntax::kString, MSyntax::kUnsigned));
    EXPECT_FALSE(syntax.addFlag("-n", "-other"));
    EXPECT_FALSE(syntax.addFlag("-o", "name"));
    EXPECT_FALSE(syntax.addFlag("-long", "-longer"));
    EXPECT_FALSE(syntax.addFlag("-1", "-one"));
    EXPECT_FALSE(syntax.makeFlagMultiUse("-none"));
    // A copy goes its own way.
    MSyntax copy = syntax;
    EXPECT_TRUE(copy.addFlag("-o", "-other"));
    EXPECT_TRUE(syntax.addFlag("-o", "-other"));
}

/// A command that answers what it was given, and can be undone when it was given a name.
class ProbeCommand : public MPxCommand {
public:
    ProbeCommand() { ++alive; }
    ~ProbeCommand() override { --alive; }

    MStatus doIt(const MArgList& args) override {
        MStatus status;
        const MArgDatabase database(syntax(), args, &status);
        if (!status) {
            return status;
        }
        if (database.isFlagSet("-fail")) {
            return MS::kFailure;
        }
        if (database.isFlagSet("kill")) {
            for (unsigned int use = 0; use < database.numberOfFlagUses("-k"); ++use) {
                MArgList list;
                database.getFlagArgumentList("-k", use, list);
                appendToResult(list.asInt(0));
            }
            return MS::kSuccess;
        }
        if (database.isFlagSet("-nested")) {
            MGlobal::executeCommand("probe -k 1");
        }
        MStringArray objects;
        database.getObjects(objects);
        std::ostringstream text;
        text << (database.isQuery() ? "q" : "") << (database.isEdit() ? "e" : "");
        unsigned int number = 99;
        MString name;
        named_ = database.getFlagArgument("-name", 0, name) == MS::kSuccess;
        database.getFlagArgument("num", 0, number);
        text << name << number << objects;
        setResult(text.str().c_str());
        return MS::kSuccess;
    }
    MStatus undoIt() override {
        --done;
        return MS::kSuccess;
    }
    MStatus redoIt() override {
        ++done;
        return MS::kSuccess;
    }
    bool isUndoable() const override { return named_; }

    static void* Create() { return new ProbeCommand; }
    static MSyntax Syntax() {
        MSyntax syntax;
        syntax.addFlag("-n", "-name", MSyntax::kString);
        syntax.addFlag("-nu", "num", MSyntax::kUnsigned);
        syntax.addFlag("-k", "-kill", MSyntax::kLong);
        syntax.makeFlagMultiUse("-k");
        syntax.addFlag("-f", "-fail");
        syntax.addFlag("-ne", "-nested");
        syntax.setObjectType(MSyntax::kStringObjects, 0, 2);
        syntax.enableQuery();
        syntax.enableEdit();
        return syntax;
    }

    static int alive;
    static int done;

private:
    bool named_ = false;
};

int ProbeCommand::alive = 0;
int ProbeCommand::done = 0;

TEST_F(ArgumentsTest, AParserReadsMeasuresWithTheirUnits) {
    MSyntax syntax;
    syntax.addFlag("-an", "-angle", MSyntax::kAngle);
    syntax.addFlag("-di", "-distance", MSyntax::kDistance);
    syntax.addArg(MSyntax::kTime);
    syntax.addArg(MSyntax::kAngle);
    syntax.addArg(MSyntax::kDistance);
    MStatus status;
    const MArgDatabase parser(syntax,
                              ArgumentTokens::Wrap(ArgumentTokens(
                                  std::vector<Value>{"-an", "1rad", "-di", "2in", "2sec", 90, "1m"})),
                              &status);
    ASSERT_TRUE(status) << status.errorString();
    EXPECT_DOUBLE_EQ(parser.flagArgumentMAngle("-angle", 0).asRadians(), 1.0);
    EXPECT_DOUBLE_EQ(parser.flagArgumentMDistance("-distance", 0).asCentimeters(), 5.08);
    EXPECT_DOUBLE_EQ(parser.commandArgumentMTime(0).as(MTime::kSeconds), 2.0);
    EXPECT_DOUBLE_EQ(parser.commandArgumentMAngle(1).asDegrees(), 90.0);
    EXPECT_DOUBLE_EQ(parser.commandArgumentMDistance(2).asMeters(), 1.0);
    MDistance length(7.0);
    EXPECT_FALSE(parser.getFlagArgument("-angle", 0, length)) << "a radian is no length";
    EXPECT_FALSE(parser.getCommandArgument(3, length));
    EXPECT_EQ(length.value(), 7.0);
}

TEST_F(ArgumentsTest, APluginCommandRunsThroughTheSameParser) {
    ASSERT_TRUE(
        lightbox::RegisterPluginCommand({"probe", ProbeCommand::Create, ProbeCommand::Syntax()}, "test"));
    EXPECT_FALSE(lightbox::RegisterPluginCommand({"probe", ProbeCommand::Create, std::nullopt}, "test"));
    EXPECT_EQ(Typed("probe a -num 3 b"), "string 3[a, b]");
    EXPECT_EQ(Typed("probe -q -num a"), "string q99[a]");
    EXPECT_EQ(Typed("probe -k 1 -k 2"), "int[] 1 2");
    EXPECT_EQ(Typed("probe -nested c"), "string 99[c]");
    EXPECT_EQ(ErrorOf("probe -zz"), "line 1.1: probe: Invalid flag '-zz'");
    messages_.clear();
    EXPECT_TRUE(MGlobal::executeCommand("probe -zz").error());
    EXPECT_EQ(Output(), "// Error: Invalid flag '-zz' //\n") << "the parser has said it";
    EXPECT_EQ(ErrorOf("probe -fail").rfind("line 1.1: probe: ", 0), 0u);
    EXPECT_EQ(ProbeCommand::alive, 0);

    EXPECT_EQ(Typed("probe -name x"), "string x99[]");
    EXPECT_EQ(ProbeCommand::alive, 1);
    EXPECT_TRUE(host_.undo().Undo());
    EXPECT_EQ(ProbeCommand::done, -1);
    EXPECT_TRUE(host_.undo().Redo());
    EXPECT_EQ(ProbeCommand::done, 0);
    host_.undo().Flush();
    EXPECT_EQ(ProbeCommand::alive, 0);
    EXPECT_TRUE(host_.interpreter().Commands().DeregisterPlugin("probe"));
    EXPECT_EQ(ErrorOf("probe"), "line 1.1: Cannot find procedure \"probe\".");
}

TEST_F(ArgumentsTest, AResultIsReadOnlyAsItsType) {
    int number = 7;
    MString text = "kept";
    EXPECT_TRUE(MGlobal::executeCommand("1 + 1", number));
    EXPECT_EQ(number, 2);
    EXPECT_FALSE(MGlobal::executeCommand("1.5", number));
    EXPECT_EQ(number, 2);
    EXPECT_FALSE(MGlobal::executeCommand("5", text));
    EXPECT_TRUE(text == "kept");
    EXPECT_TRUE(MGlobal::executeCommand("$tempVar = $gPlayBackSlider", text));
    EXPECT_TRUE(text == "");
    MIntArray array;
    EXPECT_TRUE(MGlobal::executeCommand("int $list[] = {1, 2};", array));
    EXPECT_EQ(array.length(), 2u);
    MCommandResult none;
    EXPECT_TRUE(MGlobal::executeCommand("if (0) ;", none));
    EXPECT_EQ(none.resultType(), MCommandResult::kInvalid);
    EXPECT_TRUE(MGlobal::executeCommand("<<1, 2, 3>>", none));
    EXPECT_EQ(none.resultType(), MCommandResult::kVector);
    EXPECT_TRUE(none.stringResult() == "<<1, 2, 3>>");
    EXPECT_FALSE(MGlobal::executeCommand("1 +", number));
}

} // namespace
