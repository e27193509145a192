// What a shared library of this project shows: whatever bears this mark. All else is hidden, since
// every target is compiled with hidden symbols.
//
// Marked are the classes and functions of the public headers, the seams and exceptions among them,
// so that an exception of one library is caught in another, and the few that the tool takes from
// an adapter's own headers. A template is marked where all libraries of a program must share what
// it keeps. In a static library the mark changes nothing.
#pragma once

#ifdef _WIN32
#define KVARTA16_EXPORT
#else
#define KVARTA16_EXPORT __attribute__((visibility("default")))
#endif
