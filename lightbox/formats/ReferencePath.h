#pragma once

#include <string>

namespace lightbox {

/// The path of a referenced file as a scene file gives it: absolute, relative to the scene, with variables of
/// the environment ("$SHOW/props/lamp.ma"), of another system ("C:/props/lamp.ma"), or numbered when the same
/// file is referenced again ("lamp.ma{1}").
class ReferencePath {
public:
    /// Returns the file for a scene in `folder`. A path that is absolute elsewhere, or begins with a variable
    /// that is not set, stays as it is.
    static std::string Resolve(const std::string& given, const std::string& folder);
};

} // namespace lightbox
