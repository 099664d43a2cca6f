#pragma once

#include <maya/MStatus.h>

namespace vellix {

// How the plug-in follows the scene: the host's events, and a script job that recomputes ghosting when
// playback starts or stops.

MStatus AddCallbacks();
MStatus RemoveCallbacks();
/// Both always succeed; a job that could not be made is none to remove.
MStatus AddScriptJobs();
MStatus RemoveScriptJobs();

} // namespace vellix
