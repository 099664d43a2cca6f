#pragma once

// The standard streams, and their names without std::.

#include <iostream>

using std::cerr;
using std::cin;
using std::clog;
using std::cout;
using std::endl;
using std::flush;
using std::ios;
using std::istream;
using std::ostream;
using std::streambuf;
using std::ws;
