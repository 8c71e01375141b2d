// Which property is stored under which key, found out by storing: the one declaration of it is each
// class's own bag.
#pragma once

#include <iosfwd>

namespace kvo {

// A line for every key of every class: the class, the key, the property and how that is stored,
// with blanks between. "-" is a key without a property. Stored is a value "as-is"; "tokens" is the
// token form of a text; two words are those of a flag, the one for true first ("yes/no").
void WriteStoredProperties(std::ostream& out);

}  // namespace kvo
