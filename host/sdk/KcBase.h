// SPDX-FileCopyrightText: 2026 The OvCustomControl developers
// SPDX-License-Identifier: MIT

#pragma once

/// @file
/// @ingroup sdk
/// What every header of the host's SDK rests on: characters, strings and status codes.

/// Marks what the host provides; a program that links the host finds it there.
#define KCSDK_EXPORT __attribute__((visibility("default")))

/// A character of the host's texts: one `wchar_t`, zero at the end of a string.
using KTCHAR = wchar_t;

/// Frees a string that the host handed out and sets @p text to null; null is allowed.
///
/// Strings that come through a `KTCHAR *&` argument or as a `KTCHAR *` result belong to the caller
/// and are freed here. Strings that come as a `const KTCHAR *` stay the host's: they live as long
/// as the object that gave them is open and unchanged, and are not freed.
KCSDK_EXPORT void kcutDelString(KTCHAR *&text);

namespace Kcore {

/// The outcome of a database operation.
///
/// @ingroup sdk
enum ErrorStatus {
    eOk = 0,                 ///< done
    eInvalidInput,           ///< an argument has no meaning here
    eNullObjectId,           ///< the id names no object
    eNotThatKindOfClass,     ///< the id names an object of another class
    eKeyNotFound,            ///< no object of that name
    eDuplicateKey,           ///< the name is taken; letter case does not tell names apart
    eWasErased,              ///< the object was erased
    eWasOpenForRead,         ///< somebody reads the object, so it cannot be opened for write
    eWasOpenForWrite,        ///< somebody writes the object, so it cannot be opened again
    eNotOpenForRead,         ///< the object is not open at all
    eNotOpenForWrite,        ///< the object is not open, or only for read
    eCannotBeErasedByCaller, ///< layer "0" can be neither erased nor renamed
    eLayerIsCurrent,         ///< the current layer can be neither frozen nor erased
    eLayerInUse,             ///< entities lie on the layer, so it cannot be erased
    eOnLockedLayer,          ///< the layer is locked, so what lies on it cannot be changed
};

} // namespace Kcore
