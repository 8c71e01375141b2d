// Rules for pages that are sent as mail: what recipients and their programs make trouble with.
#pragma once

#include <span>

#include "document/check/Check.h"

namespace kvo::check {

std::span<const Rule> MailRules();

// Checks the published page, as the template engine gets it; problems are at the places in the page
// that they come from, in page order. Says nothing about a page without content. Asks no network.
page::Problems CheckMail(const page::Page& page);

}  // namespace kvo::check
