#pragma once

// The plug-in's entry points, as the host's header declares them: initializePlugin and uninitializePlugin.
// The header also brings the version string by which the host knows what the plug-in was built for, so only
// one file of the plug-in includes it like this.
#include <maya/MFnPlugin.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
