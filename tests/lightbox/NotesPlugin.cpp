#include "NotesPlugin.h"

#include <maya/MArgList.h>
#include <maya/MFnPlugin.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MGlobal.h>
#include <maya/MPxCommand.h>
#include <maya/MPxData.h>
#include <maya/MPxLocatorNode.h>

#include <cstdint>
#include <istream>
#include <new>
#include <ostream>
#include <string>
#include <vector>

namespace notes {
namespace {

int g_values = 0;
int g_nodes = 0;
bool g_writingFails = false;
Trouble g_trouble = Trouble::None;

void MakeTrouble() {
    if (g_trouble == Trouble::NoMemory) {
        throw std::bad_alloc();
    }
    if (g_trouble == Trouble::Complains) {
        MGlobal::displayError("A note is blurred");
    }
}

class Notes : public MPxData {
public:
    Notes() { ++g_values; }
    ~Notes() override { --g_values; }

    MStatus readASCII(const MArgList& args, unsigned& element) override {
        MStatus status;
        const int count = args.asInt(element++, &status);
        for (int i = 0; status && i < count; ++i) {
            const MString line = args.asString(element++, &status);
            if (status) {
                lines.emplace_back(line.asChar());
                MakeTrouble();
            } else {
                MGlobal::displayError("Invalid note");
            }
        }
        return status;
    }
    MStatus writeASCII(std::ostream& out) override {
        out << lines.size();
        for (const std::string& line : lines) {
            out << "\n\t\t\"" << line << '"';
        }
        return g_writingFails ? MS::kFailure : MS::kSuccess;
    }
    MStatus readBinary(std::istream& in, unsigned length) override {
        while (length > 0) {
            std::uint8_t size = 0;
            in.read(reinterpret_cast<char*>(&size), 1);
            std::string line(size, '\0');
            if (!in.read(&line[0], size) || size + 1U > length) {
                return MS::kFailure;
            }
            lines.push_back(line);
            MakeTrouble();
            length -= size + 1U;
        }
        return MS::kSuccess;
    }
    MStatus writeBinary(std::ostream& out) override {
        for (const std::string& line : lines) {
            out.put(static_cast<char>(line.size()));
            out << line;
        }
        return g_writingFails ? MS::kFailure : MS::kSuccess;
    }
    void copy(const MPxData& other) override {
        if (const auto* notes = dynamic_cast<const Notes*>(&other)) {
            lines = notes->lines;
        }
    }
    MTypeId typeId() const override { return MTypeId(0x10021); }
    MString name() const override { return "notes"; }
    static void* Create() { return new Notes; }

    std::vector<std::string> lines;
};

class Notebook : public MPxLocatorNode {
public:
    Notebook() { ++g_nodes; }
    ~Notebook() override { --g_nodes; }
    static void* Create() { return new Notebook; }
    static MStatus Initialize() {
        MFnTypedAttribute typed;
        return addAttribute(typed.create("pages", "pg", MTypeId(0x10021)));
    }
};

class TurnPage : public MPxCommand {
public:
    MStatus doIt(const MArgList&) override { return MS::kSuccess; }
    bool isUndoable() const override { return true; }
    MStatus undoIt() override { return MS::kSuccess; }
    static void* Create() { return new TurnPage; }
};

} // namespace

MStatus Initialize(MObject plugin) {
    MFnPlugin fn(plugin, "Maker", "1.5", "Any");
    CHECK_MSTATUS_AND_RETURN_IT(fn.registerCommand("turnPage", TurnPage::Create));
    CHECK_MSTATUS_AND_RETURN_IT(fn.registerData("notes", MTypeId(0x10021), Notes::Create));
    return fn.registerNode("notebook", MTypeId(0x10022), Notebook::Create, Notebook::Initialize,
                           MPxNode::kLocatorNode);
}

MStatus Uninitialize(MObject plugin) {
    MFnPlugin fn(plugin);
    CHECK_MSTATUS_AND_RETURN_IT(fn.deregisterNode(MTypeId(0x10022)));
    CHECK_MSTATUS_AND_RETURN_IT(fn.deregisterData(MTypeId(0x10021)));
    return fn.deregisterCommand("turnPage");
}

MStatus InitializeBadly(MObject plugin) {
    MFnPlugin fn(plugin, "Maker", "1.5", "Any");
    CHECK_MSTATUS_AND_RETURN_IT(fn.registerData("notes", MTypeId(0x10021), Notes::Create));
    return MS::kFailure;
}

int ValueCount() {
    return g_values;
}

int NodeCount() {
    return g_nodes;
}

void SetWritingFails(bool fails) {
    g_writingFails = fails;
}

void SetReadingTrouble(Trouble trouble) {
    g_trouble = trouble;
}

} // namespace notes
