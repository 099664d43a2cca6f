#pragma once

// The plug-in's entry points, as the host's header declares them: initializePlugin and uninitializePlugin.
#include <maya/MFnPlugin.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>
