// An editor in a process of its own, for a test to kill: it opens a page, types, and waits.
#pragma once

#include <QString>

namespace kvo::editor {

inline const QString kVictimArgument = "--victim";
inline const QString kVictimText = "getippt ";

// Never returns of itself.
int RunVictim(const QString& drafts, const QString& page);

}  // namespace kvo::editor
