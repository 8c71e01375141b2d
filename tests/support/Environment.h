// The environment of every native test program, so that a test sees the same on every machine.
#pragma once

namespace kvo::test {

// Takes away what the user has set, but for PATH, TMPDIR and what steers tests, sanitizers and Qt's
// scale. Then sets a home folder of its own, which goes with the program, this locale, UTC, and for
// Qt a screen that nobody sees. Call it first in main(), before anything reads a variable.
void SetEnvironment(const char* locale = "C.UTF-8");

}  // namespace kvo::test
