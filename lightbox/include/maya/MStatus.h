#pragma once

#include <maya/MApiNamespace.h>

#include <iosfwd>
#include <string>

/// The result of an OpenMaya call: a code, and a text if there is more to say.
class MStatus {
public:
    enum MStatusCode {
        kSuccess = 0,
        kFailure,
        kInsufficientMemory,
        kInvalidParameter,
        kLicenseFailure,
        kUnknownParameter,
        kNotImplemented,
        kNotFound,
        kEndOfFile
    };

    MStatus() = default;
    MStatus(MStatusCode code)
        : code_(code) {}

    bool operator==(const MStatus& other) const { return code_ == other.code_; }
    bool operator==(MStatusCode code) const { return code_ == code; }
    bool operator!=(const MStatus& other) const { return code_ != other.code_; }
    bool operator!=(MStatusCode code) const { return code_ != code; }
    /// True on success.
    operator bool() const { return code_ == kSuccess; }

    bool error() const { return code_ != kSuccess; }
    void clear();
    MStatusCode statusCode() const { return code_; }
    /// The text of the failing call, or else the name of the code.
    MString errorString() const;
    /// Prints the context and the error text to standard error; does nothing on success.
    void perror(const char* context) const;
    void perror(const MString& context) const;

private:
    friend class lightbox::ApiBridge;
    MStatusCode code_ = kSuccess;
    std::string text_;
};

using MS = MStatus;

std::ostream& operator<<(std::ostream& os, const MStatus& status);

/// Returns the status from the calling function if it is a failure.
#define CHECK_MSTATUS_AND_RETURN_IT(_status)                                                                 \
    do {                                                                                                     \
        MStatus maya_status = (_status);                                                                     \
        if (maya_status.error()) {                                                                           \
            return maya_status;                                                                              \
        }                                                                                                    \
    } while (false)

/// Returns the value from the calling function if the status is a failure.
#define CHECK_MSTATUS_AND_RETURN(_status, _retVal)                                                           \
    do {                                                                                                     \
        const MStatus maya_status = (_status);                                                               \
        if (maya_status.error()) {                                                                           \
            return (_retVal);                                                                                \
        }                                                                                                    \
    } while (false)

/// Reports a failing status on standard error and continues.
#define CHECK_MSTATUS(_status)                                                                               \
    do {                                                                                                     \
        const MStatus maya_status = (_status);                                                               \
        if (maya_status.error()) {                                                                           \
            maya_status.perror(__FILE__);                                                                    \
        }                                                                                                    \
    } while (false)
