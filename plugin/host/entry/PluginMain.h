#pragma once

// The plug-in's entry points, initializePlugin and uninitializePlugin, as the host's header declares them.
// That header also defines the version string of the API the plug-in was built for, so only one file may
// include it without MNoVersionString.
#include <maya/MFnPlugin.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
