#pragma once

#include <maya/MStatus.h>

namespace vellix {

// Follows the scene through the host's events, and through a script job that updates ghosting when playback
// starts or stops.

/// Adds every callback it can; returns the last failure.
MStatus AddCallbacks();
MStatus RemoveCallbacks();
/// Both always succeed; if the job could not be created, there is none to remove.
MStatus AddScriptJobs();
MStatus RemoveScriptJobs();

} // namespace vellix
