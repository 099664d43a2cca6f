#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>

/// Base class of plug-in commands. The host makes one instance per execution and calls doIt(). If that
/// succeeds and isUndoable() is true, the instance stays on the undo queue until it drops off.
class MPxCommand {
public:
    MPxCommand();
    virtual ~MPxCommand();
    MPxCommand(const MPxCommand&) = delete;
    MPxCommand& operator=(const MPxCommand&) = delete;

    virtual MStatus doIt(const MArgList& args) = 0;
    virtual MStatus undoIt();
    virtual MStatus redoIt();
    virtual bool isUndoable() const;
    virtual bool hasSyntax() const;

    /// The syntax with which the command was registered.
    MSyntax syntax() const;

    MString commandString() const;
    void setCommandString(const MString& text);

    static void displayInfo(const MString& theInfo);
    static void displayWarning(const MString& theWarning, bool showLineNumber = false);
    static void displayError(const MString& theError, bool showLineNumber = false);

    static void clearResult();
    static void setResult(bool result);
    static void setResult(int result);
    static void setResult(unsigned int result);
    static void setResult(double result);
    static void setResult(const MString& result);
    static void setResult(const char* result);
    static void setResult(const MIntArray& result);
    static void setResult(const MDoubleArray& result);
    static void setResult(const MStringArray& result);

    /// Appends to the result; fails when the result has another type.
    static MStatus appendToResult(int result);
    static MStatus appendToResult(double result);
    static MStatus appendToResult(const MString& result);

private:
    friend class lightbox::ApiBridge;
    struct State;
    std::unique_ptr<State> state_;
};
