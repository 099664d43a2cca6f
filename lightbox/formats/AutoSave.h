#pragma once

#include "formats/AutoSaveSettings.h"
#include "formats/SessionRecord.h"
#include "scene/NonCopyable.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace lightbox {

class Host;

/// Saves the scene by itself: to numbered files in a folder of its own, beside the scene's file. The scene's
/// name, its unsaved changes and the undo queue stay, and no event is fired. Remembers on disk what it has
/// saved until the scene is saved or given up, so that a later session can offer it after a crash.
///
/// When to save is for the caller: see shell/AutoSaveTimer.
class AutoSave : NonCopyable {
public:
    explicit AutoSave(Host& host);
    ~AutoSave();

    AutoSaveSettings Settings() const;
    void SetSettings(const AutoSaveSettings& settings);

    /// Whether the scene has changes that neither its file nor an automatic save holds.
    bool IsNeeded() const;
    /// Saves the scene and returns the file. Throws FileError when that fails; older automatic saves then
    /// stay.
    std::string Perform();
    /// The scene was saved, or makes place for another: its automatic saves need not be offered any more. The
    /// files stay.
    void Settle();

    /// The session ends now, and nobody can be asked about unsaved changes: saves them, and leaves them for
    /// the next session to offer. Throws FileError when that fails.
    void LeaveForNextStart();

    /// A session that has not ended properly, and its last automatic save.
    struct Unfinished {
        std::unique_ptr<SessionRecord::Abandoned> record;
        std::string file;
    };
    /// Finds the session with the latest automatic save. Forgets sessions whose scene was saved later, or of
    /// which no file is left. Without a `record` there is none.
    Unfinished FindUnfinished();
    /// Opens the automatic save as the scene that it was made of, with unsaved changes, and takes over the
    /// record. Throws FileError when it cannot be opened, or only with faults; the record then stays.
    void Recover(Unfinished session);

private:
    using Version = std::pair<std::uint64_t, std::uint64_t>;

    Host& host_;
    SessionRecord record_;
    Version savedVersion_; ///< of the scene, in the last automatic save
};

} // namespace lightbox
