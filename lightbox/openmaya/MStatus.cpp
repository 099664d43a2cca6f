#include "openmaya/ApiBridge.h"

#include <maya/MStatus.h>

#include <iostream>

void MStatus::clear() {
    *this = kSuccess;
}

MString MStatus::errorString() const {
    static const char* const texts[] = {"Success",
                                        "Unexpected Internal Failure",
                                        "Insufficient memory to complete this method",
                                        "Invalid parameter",
                                        "Application is not licensed for the attempted operation",
                                        "Unknown parameter",
                                        "Not implemented",
                                        "Item not found",
                                        "End of file"};
    return lightbox::ApiBridge::Wrap(text_.empty() ? texts[code_] : text_);
}

void MStatus::perror(const char* context) const {
    if (error()) {
        std::cerr << context << ": " << errorString() << '\n';
    }
}

void MStatus::perror(const MString& context) const {
    perror(context.asChar());
}

std::ostream& operator<<(std::ostream& os, const MStatus& status) {
    return os << status.errorString();
}
