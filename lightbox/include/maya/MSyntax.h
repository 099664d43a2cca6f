#pragma once

#include <maya/MStatus.h>

#include <memory>

class MString;

namespace lightbox {
namespace mel {
struct SyntaxTable;
}
} // namespace lightbox

/// The syntax of a command: its flags with the types of their arguments, its own arguments and objects, and
/// whether it can be queried and edited.
class MSyntax {
public:
    enum MArgType {
        kInvalidArgType,
        kNoArg,
        kBoolean,
        kLong,
        kDouble,
        kString,
        kUnsigned,
        kDistance,
        kAngle,
        kTime,
        kSelectionItem,
        kLastArgType
    };
    enum MObjectFormat { kInvalidObjectFormat, kNone, kStringObjects, kSelectionList, kLastObjectFormat };

    MSyntax();
    MSyntax(const MSyntax& other) = default;
    MSyntax& operator=(const MSyntax& other) = default;
    virtual ~MSyntax();

    /// Adds a flag with up to six arguments. Names may be given with or without the hyphen. Fails for a name
    /// that is taken or malformed, and for a short name of more than three letters.
    MStatus addFlag(const char* shortName, const char* longName, MArgType argType1 = kNoArg,
                    MArgType argType2 = kNoArg, MArgType argType3 = kNoArg, MArgType argType4 = kNoArg,
                    MArgType argType5 = kNoArg, MArgType argType6 = kNoArg);
    /// Allows a flag to be given more than once.
    MStatus makeFlagMultiUse(const char* flag);
    /// Makes a flag keep its arguments in a query; `argRequired` false makes them optional there.
    MStatus makeFlagQueryWithFullArgs(const char* flag, bool argRequired);
    MStatus addArg(MArgType argType);

    MStatus setObjectType(MObjectFormat type, unsigned int minimumObjects = 0);
    MStatus setObjectType(MObjectFormat type, unsigned int minimumObjects, unsigned int maximumObjects);
    void setMinObjects(unsigned int minimumObjects);
    void setMaxObjects(unsigned int maximumObjects);
    MObjectFormat objectType() const;
    unsigned int minObjects() const;
    unsigned int maxObjects() const;
    /// Uses the selection as the objects when none are given.
    void useSelectionAsDefault(bool useSelection);

    void enableQuery(bool supportsQuery = true);
    void enableEdit(bool supportsEdit = true);
    bool canQuery() const;
    bool canEdit() const;

private:
    friend struct lightbox::mel::SyntaxTable;
    friend class MPxContextCommand;

    /// The table, for writing. Copies of a syntax share a table until the first change.
    lightbox::mel::SyntaxTable& change();

    std::shared_ptr<lightbox::mel::SyntaxTable> table_;
    /// True for the result of MPxContextCommand::syntax(), which changes the command's own table.
    bool writesThrough_ = false;
};
