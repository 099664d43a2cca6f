#pragma once

#include <functional>

namespace vellix {

/// The text that the user is typing into a drawing. It stays open between events, so it is committed before
/// the time or the view's camera changes and before the scene is saved. Whatever else changes the active
/// layer or camera, or the drawing, calls Commit() first. Main thread only.
class OpenText {
public:
    /// Sets what commits the text that has been opened; an empty function when no text is open any more.
    static void SetCommit(std::function<void()> commit);
    /// Commits the text, if one is open, as an undo step. While the host undoes or redoes, which would lose
    /// that step, it is committed right afterwards.
    static void Commit();
};

} // namespace vellix
