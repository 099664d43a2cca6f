#pragma once

#include <maya/MApiNamespace.h>

/// The version of the API, as MGlobal::apiVersion() returns it.
#define MAYA_API_VERSION 201800

using MInt64 = long long;
using MUint64 = unsigned long long;
using MByte = unsigned char;
