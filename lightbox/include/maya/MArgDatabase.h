#pragma once

#include <maya/MArgParser.h>

class MSelectionList;

/// An MArgParser that also returns objects and selection items as nodes of the scene.
class MArgDatabase : public MArgParser {
public:
    MArgDatabase(const MSyntax& syntax, const MArgList& argList, MStatus* ReturnStatus = nullptr);
    ~MArgDatabase() override;

    using MArgParser::getFlagArgument;
    using MArgParser::getObjects;
    /// Fails when the text names no object.
    MStatus getFlagArgument(const char* flag, unsigned int index, MSelectionList& result) const;
    MStatus getCommandArgument(unsigned int index, MSelectionList& result) const;
    using MArgParser::getCommandArgument;
    /// Fails when one of the objects does not exist.
    MStatus getObjects(MSelectionList& result) const;
};
