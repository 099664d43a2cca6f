// A plug-in as others write them, which relies on what the headers that it names bring along. Its command
// reads its arguments by type: the first one names the type.

#include <maya/MArgList.h>
#include <maya/MFnPlugin.h>
#include <maya/MIOStream.h>
#include <maya/MPxCommand.h>
#include <maya/MStreamUtils.h>
#include <maya/MTypes.h>

#include <sstream>

#if MAYA_API_VERSION < 201800
#error "The version of the API is missing."
#endif

namespace {

class TypedArguments : public MPxCommand {
public:
    static void* Creator() { return new TypedArguments; }

    MStatus doIt(const MArgList& args) override {
        unsigned int index = 0;
        MString type;
        CHECK_MSTATUS_AND_RETURN_IT(args.get(index, type));
        std::ostringstream answer;
        const MStatus status = Read(type, args, index, answer);
        answer << " @" << index << (status ? "" : " failed");
        setResult(answer.str().c_str());
        return MS::kSuccess;
    }

private:
    template <class T>
    static MStatus Show(const MArgList& args, unsigned int& index, T value, ostream& answer) {
        MStatus status = args.get(index, value);
        answer << value;
        return status;
    }

    static MStatus Read(const MString& type, const MArgList& args, unsigned int& index, ostream& answer) {
        MStatus status;
        if (type == "bool") {
            return Show(args, index, false, answer);
        }
        if (type == "int") {
            return Show(args, index, -7, answer);
        }
        if (type == "unsigned") {
            return Show(args, index, 7u, answer);
        }
        if (type == "short") {
            return Show(args, index, static_cast<short>(-7), answer);
        }
        if (type == "float") {
            return Show(args, index, -7.0f, answer);
        }
        if (type == "double") {
            return Show(args, index, -7.0, answer);
        }
        if (type == "time") {
            return Show(args, index, MTime(-7.0, MTime::uiUnit()), answer);
        }
        if (type == "vector") {
            return Show(args, index, MVector(-7.0, 0.0), answer);
        }
        if (type == "point") {
            return Show(args, index, MPoint(-7.0, 0.0), answer);
        }
        if (type == "ints") {
            return Show(args, index, MIntArray(1, -7), answer);
        }
        if (type == "doubles") {
            return Show(args, index, MDoubleArray(1, -7.0), answer);
        }
        if (type == "strings") {
            return Show(args, index, MStringArray(1, "-7"), answer);
        }
        if (type == "vectors") {
            return Show(args, index, MVectorArray(1, MVector(-7.0, 0.0)), answer);
        }
        if (type == "points") {
            return Show(args, index, MPointArray(1, MPoint(-7.0, 0.0)), answer);
        }
        if (type == "matrix") {
            return Show(args, index, MMatrix(), answer);
        }
        if (type == "angle") {
            MAngle angle(-7.0, MAngle::kDegrees);
            status = args.get(index, angle);
            answer << angle.asDegrees();
            return status;
        }
        if (type == "distance") {
            MDistance distance(-7.0);
            status = args.get(index, distance);
            answer << distance.asCentimeters();
            return status;
        }
        if (type == "plane") {
            const MVector plane = args.asVector(index, 2, &status);
            answer << plane;
            return status;
        }
        if (type == "homogeneous") {
            const MPoint point = args.asPoint(index, 4, &status);
            answer << point;
            return status;
        }
        if (type == "built") {
            return Build(answer);
        }
        return MS::kNotFound;
    }

    /// A list that the plug-in builds itself, and values on a stream.
    static MStatus Build(ostream& answer) {
        MArgList list;
        list.addArg(MAngle(3.14159265358979323846));
        list.addArg(MDistance(1.0, MDistance::kMeters));
        list.addArg(MTime(1.0, MTime::kSeconds));
        list.addArg(MVector(1.0, 2.0, 3.0));
        list.addArg(MPoint(2.0, 4.0, 6.0, 2.0));
        unsigned int index = 0;
        MAngle angle;
        MDistance distance;
        MTime time;
        MVector vector;
        MPoint point;
        CHECK_MSTATUS_AND_RETURN_IT(list.get(index, angle));
        CHECK_MSTATUS_AND_RETURN_IT(list.get(index, distance));
        CHECK_MSTATUS_AND_RETURN_IT(list.get(index, time));
        CHECK_MSTATUS_AND_RETURN_IT(list.get(index, vector));
        CHECK_MSTATUS_AND_RETURN_IT(list.get(index, point));
        answer << angle.asDegrees() << ' ' << distance.asInches() << ' ' << time.as(MTime::kSeconds) << ' '
               << vector << ' ' << point;
        for (const bool binary : {false, true}) {
            std::stringstream stream;
            MStreamUtils::writeInt(stream, -5, binary);
            MStreamUtils::writeDouble(stream, 0.1, binary);
            MStreamUtils::writeCharBuffer(stream, "ab", binary);
            int number = 0;
            double real = 0.0;
            char text[3] = {};
            char* letters = text;
            MStreamUtils::readInt(stream, number, binary);
            MStreamUtils::readDouble(stream, real, binary);
            if (!binary) {
                stream >> std::ws;
            }
            MStreamUtils::readCharBuffer(stream, letters, 2, binary);
            answer << ' ' << number << (real == 0.1) << text;
            if (MStreamUtils::readInt(stream, number, binary)) {
                return MS::kFailure;
            }
        }
        MStreamUtils::stdErrorStream() << flush;
        cout << flush;
        return MS::kSuccess;
    }
};

} // namespace

MStatus initializePlugin(MObject object) {
    MFnPlugin plugin(object, "Somebody", "1.0", "Any");
    return plugin.registerCommand("typedArguments", TypedArguments::Creator);
}

MStatus uninitializePlugin(MObject object) {
    MFnPlugin plugin(object);
    return plugin.deregisterCommand("typedArguments");
}
