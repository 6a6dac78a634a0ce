#pragma once

#include "base/CString.h"
#include "base/WinTypes.h"

// How the value list shows one value: the image by type and the one-line
// text of its data.

// The image list holds the seven cut images at 0 to 6 and the seven normal
// ones at 7 to 13, each normal image 7 above its cut form.
const int kCutImageOffset = 7;

// Bytes as "%02X" pairs joined by single blanks: "0A 1B FF".
CString HexPairsText(const BYTE* data, size_t size);

// The image of a value of `type`, in its cut form when `cut`.
int ValueImage(DWORD type, bool cut);

// String data as text: little-endian units up to the first NUL; an odd last
// byte is dropped.
CString StringDataText(const BYTE* data, size_t size);

// Strings up to their first NUL (a multi-string's first member, followed by
// "..."), a DWORD as decimal and hexadecimal (empty unless exactly four
// bytes), anything else as hexadecimal bytes: at most the first 128, with
// "..." right after them when there are more.
CString ValueDataText(DWORD type, const BYTE* data, size_t size);
