#pragma once

// The keyboard extension's protocol header names a field "explicit", a C++
// keyword; rename it while the header is read.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
