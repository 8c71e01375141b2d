// The environment of every native test program, so that tests run the same on every machine.
#pragma once

namespace kvo::test {

// Removes the user's environment variables except PATH, TMPDIR and those that control tests,
// sanitizers and Qt's scaling. Then sets a temporary home folder, which is deleted at exit, this
// locale, UTC, and an offscreen display for Qt. Call it first in main(), before anything reads a
// variable.
void SetEnvironment(const char* locale = "C.UTF-8");

}  // namespace kvo::test
