// An editor in a separate process for a test to kill. Opens a page, types, and waits.
#pragma once

#include <QString>

namespace kvo::editor {

inline const QString kVictimArgument = "--victim";
inline const QString kVictimText = "getippt ";

// Does not return on its own.
int RunVictim(const QString& drafts, const QString& page);

}  // namespace kvo::editor
