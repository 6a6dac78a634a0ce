#pragma once

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/WinTypes.h"

// The grammar of one .reg line, apart from any registry or file.
namespace regsyntax {

// Cuts the line at the first ";" outside quotes. A double quote opens a
// quoted part that never closes again (so no ";" after any quote is a
// comment); inside it a backslash hides the next character.
void StripComment(CString& line);

enum class EKeyLine { NotKeyLine, Key, SyntaxError };

// "[" ... "]" with the key text up to the last "]"; what follows it is
// ignored. The root must be a long name; a leading "-" asks for deletion.
EKeyLine ParseKeyLine(const CString& line, bool& deletion, HKEY& root, CString& path);

// A value name: a quoted name (backslash takes the next character as it
// is) or "@" for the default value, then "=". On success `position` is just
// after the "=".
bool ParseValueName(const CString& line, size_t& position, CString& name);

// True if the data text is "-" and white space: a value deletion.
bool IsDeletion(const CString& line, size_t position);

enum class EData { Complete, Continues, SyntaxError, OutOfMemory };

// The data after "=": a quoted string (REG_SZ, with its NUL), dword:,
// hex: or hex(type):. Hex data ending in "\" continues on the next lines.
// `hexForm` tells whether the data was written as hex bytes.
EData ParseValueData(const CString& line, size_t position, DWORD& type, CShdBinaryBuffer& data, bool& hexForm);

// A comma-separated list of one- or two-digit hexadecimal bytes, appended
// to `data`; a "\" at the end means that more follows.
EData ParseHexBytes(const CString& line, size_t position, CShdBinaryBuffer& data);

}  // namespace regsyntax
