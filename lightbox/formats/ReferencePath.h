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
    /// Whether a resolved path names another computer, "//server/share/a.ma" or "\\\\server\\share\\a.ma".
    /// What it is does not depend on the system that we run on.
    static bool IsRemote(const std::string& path);
    /// Whether both paths name the same other computer.
    static bool AreOnSameServer(const std::string& left, const std::string& right);
    /// Whether a resolved path has a drive, "C:/a.ma", on a system that has none. Nothing is looked up for
    /// it.
    static bool IsOfOtherSystem(const std::string& path);
};

} // namespace lightbox
