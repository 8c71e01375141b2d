// Answers about names that several files share: fields, ids and classes.
#pragma once

#include "apps/language/Shapes.h"
#include "apps/language/Workspace.h"

namespace kvo::language {

// As in apps/language/Answers.h. The place may be in a page or, for a field, in its office file.
Json Definition(Workspace& workspace, const Json& params);
Json References(Workspace& workspace, const Json& params);
Json PrepareRename(Workspace& workspace, const Json& params);
Json Rename(Workspace& workspace, const Client& client, const Json& params);

}  // namespace kvo::language
