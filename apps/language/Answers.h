// Answers to what a client asks about one page.
#pragma once

#include <string>

#include "apps/language/Shapes.h"
#include "apps/language/Workspace.h"

namespace kvo::language {

// All take the parameters of the request of their name, and throw Json::exception when these have
// another shape, RequestError for a text that is not open.
Json Completion(Workspace& workspace, const Client& client, const Json& params);
Json Hover(Workspace& workspace, const Client& client, const Json& params);
Json DocumentSymbol(Workspace& workspace, const Client& client, const Json& params);

// Offers the fixes in OpenText::problems.
Json CodeAction(Workspace& workspace, const Client& client, const Json& params);

// Returns a problem as a diagnostic of the page.
Json DiagnosticJson(const OpenPage& page, const page::Problem& problem);

// Returns the open text of a request. Throws as above.
OpenText& TextOf(Workspace& workspace, const Json& params);
// Returns what the office beside the text names; nullptr when there is none.
const office::Office::Description* OfficeOf(Workspace& workspace, const OpenText& text);

}  // namespace kvo::language
