// The database seam. A shop connection and a recordset are Objects (late bound) with the members
// that Windows' ADO gives them, so that the real ones work unchanged. These are the members in use,
// which is all that an adapter must offer:
//
//   connection  State              0 while it is closed
//               ConnectionString   text; a recordset can be opened on it as well
//   recordset   Open(source, connection or connection string, cursor type, lock type, options)
//                                  checks that the statement can run; need not fetch a row
//               Source             the statement, as it was given to Open
//               RecordCount        -1 when it is not known
//               Move(n, 1)         to the n-th record, from 0; beyond the last one EOF is true
//               MoveNext, EOF
//               Bookmark           get: where the record stands; let: back to that record
//               Fields(name)       an object with `Name` and `Value`; a null value is empty
//               Fields             all of them, a collection to walk
//
// Any failure is a std::exception whose text is safe to show: it holds no password.
#pragma once

#include <cstdint>

namespace kvo::ado {

// The numbers that the members above are called with.
inline constexpr std::int32_t kStateClosed = 0;
inline constexpr std::int32_t kStateOpen = 1;
inline constexpr std::int32_t kOpenKeyset = 1;  // cursor types
inline constexpr std::int32_t kOpenDynamic = 2;
inline constexpr std::int32_t kOpenStatic = 3;
inline constexpr std::int32_t kLockReadOnly = 1;
inline constexpr std::int32_t kOptionsUnspecified = -1;
inline constexpr std::int32_t kOptionsText = 1;
inline constexpr std::int32_t kBookmarkFirst = 1;

}  // namespace kvo::ado
