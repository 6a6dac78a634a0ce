#pragma once

#include <cstddef>

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/WinTypes.h"

// How the value editor turns a value's bytes into the text it shows and the
// typed text back into bytes, and how it reads the numbers typed in.

// A string's text and one terminating NUL: (length + 1) * 2 bytes,
// little-endian units. False only when memory runs out.
bool StringToBytes(LPCWSTR text, CShdBinaryBuffer& bytes);

// A multi-string's members one a line, separated by CR LF. Up to two
// trailing NULs are taken as terminators; any NUL before them separates
// members, so empty members show as empty lines. A CR inside a member is
// followed by an LF too, so it shows as a line break.
CString MultiStringToText(const BYTE* data, size_t size);
// The lines as typed (CR LF, LF CR, and lone LFs or CRs all end a line),
// each ending with a NUL, and a NUL after the last: a text that ends with a
// line break gives an empty last member. False only when memory runs out.
bool TextToMultiString(LPCWSTR text, CShdBinaryBuffer& bytes);

// A DWORD in base 10 ("%lu") or 16 ("%lx", no prefix).
CString DwordToText(DWORD value, DWORD base);

// Digits only, in base 16 when `hexadecimal`, else 10: no sign, blank,
// prefix or point. The value must fit 32 bits and not exceed `limit` (0: no
// limit beyond 32 bits). The digits accumulate in 64 bits without an
// overflow test, so a number of 20 decimal digits and more may wrap round
// to an accepted value; typed numbers are never that long in practice.
bool ParseNumber(LPCWSTR text, bool hexadecimal, DWORD limit, DWORD& value);

// "REG_SZ" and the other known names; "Unknown (0x5)" for the rest.
CString ValueTypeName(DWORD type);
