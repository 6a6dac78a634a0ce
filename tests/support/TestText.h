#pragma once

#include <string>
#include <vector>

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/Utf8.h"

// Test literals: narrow UTF-8 text and byte lists, so that expectations read
// the same on both builds.
CString W(const char* utf8);
std::vector<BYTE> Bytes(std::initializer_list<int> values);
std::vector<BYTE> Utf16Bytes(const CString& text, bool withNul);
std::vector<BYTE> operator+(std::vector<BYTE> a, const std::vector<BYTE>& b);
// `count` bytes counting up from 0 in steps of `step`, wrapping at 256.
std::vector<BYTE> Sequence(size_t count, int step = 1);
std::vector<BYTE> BufferBytes(const CShdBinaryBuffer& buffer);
