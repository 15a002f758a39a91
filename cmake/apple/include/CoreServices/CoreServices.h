// The part of CoreServices that tells the system's version.
#pragma once

using SInt16 = short;
using SInt32 = int;
using OSErr = SInt16;
using OSType = unsigned int;
enum { noErr = 0 };

extern "C" OSErr Gestalt(OSType selector, SInt32* response);
