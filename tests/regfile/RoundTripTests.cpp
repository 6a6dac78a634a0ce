// Export, import into the emptied key, export again: the two files must be
// the same bytes, for random registries whose names and data hold what the
// format must escape or keep (quotes, backslashes, semicolons, brackets,
// non-ASCII text, every type and size).

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "framework/Text.h"
#include "regfile/RegImporter.h"
#include "registry/KeyOperations.h"
#include "registry/RegKey.h"
#include "tests/regfile/ExportTestFiles.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestText.h"

namespace {

struct SLess {
    bool operator()(const CString& a, const CString& b) const { return CompareNoCase(a, b) < 0; }
};

// Makes a random tree. Text stays within Windows-1252 when the file will be
// version 4, whose ANSI text cannot hold more. Line ends never appear in
// names or strings: the format writes them raw, and they would end the line.
// No default values: the format writes them as a value named "@".
class CRandomRegistry {
public:
    CRandomRegistry(unsigned seed, bool ansiOnly) : m_random(seed), m_ansiOnly(ansiOnly) {}

    void Fill(HKEY parent, const CString& path, int depth)
    {
        CShdRegKey key;
        ASSERT_TRUE(key.Create(parent, path, nullptr));
        std::set<CString, SLess> valueNames, keyNames;
        for (int i = Pick(0, 6); i > 0; --i) {
            const CString name = UniqueName(valueNames, false);
            const std::vector<BYTE> data = Data();
            ASSERT_TRUE(key.WriteValue(name, m_type, data.data(), static_cast<DWORD>(data.size())));
        }
        for (int i = depth > 0 ? Pick(0, 3) : 0; i > 0; --i)
            Fill(key.GetHandle(), UniqueName(keyNames, true), depth - 1);
    }

private:
    int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

    // Awkward ASCII, then Windows-1252 letters, then letters beyond it; a
    // fifth of the picks are plain letters. Key names hold no backslash.
    CString Text(int length, bool forKeyName)
    {
        static const char16_t kChars[] = u"\"\\;[]@= -,()\täÖßéÆ€ŠЖλ中ᚠ";
        CString text;
        while (static_cast<int>(text.GetLength()) < length) {
            const int last = m_ansiOnly ? 19 : 23;
            const WCHAR c = static_cast<WCHAR>(Pick(0, 4) == 0 ? 'a' + Pick(0, 25) : kChars[Pick(0, last)]);
            if (!(forKeyName && c == '\\'))
                text += c;
        }
        return text;
    }

    // A name of white space alone would be an odd test: start with a letter.
    CString UniqueName(std::set<CString, SLess>& taken, bool forKeyName)
    {
        for (;;) {
            CString name = CString::Formatted(TEXT("%c"), static_cast<WCHAR>('A' + Pick(0, 25)));
            name += Text(Pick(0, 12), forKeyName);
            if (taken.insert(name).second)
                return name;
        }
    }

    std::vector<BYTE> Data()
    {
        static const DWORD kTypes[] = {REG_NONE, REG_SZ, REG_EXPAND_SZ, REG_BINARY, REG_DWORD,
                                       REG_DWORD_BIG_ENDIAN, REG_MULTI_SZ, REG_QWORD, 0x4242};
        m_type = kTypes[Pick(0, 8)];
        if (m_type == REG_SZ || m_type == REG_EXPAND_SZ || m_type == REG_MULTI_SZ) {
            const bool wellFormed = Pick(0, 3) != 0;
            CString text = Text(Pick(0, 40), false);
            if (m_type == REG_MULTI_SZ)
                text += CString(TEXT("\0second\0"), 8);
            std::vector<BYTE> data = Utf16Bytes(text, wellFormed);
            // Version 4 writes string types as characters: no odd bytes.
            if (!wellFormed && !m_ansiOnly && Pick(0, 1) == 0)
                data.push_back(0x7F);
            return data;
        }
        const int size = m_type == REG_DWORD && Pick(0, 3) != 0 ? 4 : Pick(0, 3) == 0 ? Pick(0, 3000) : Pick(0, 60);
        std::vector<BYTE> data(size);
        for (BYTE& byte : data)
            byte = static_cast<BYTE>(Pick(0, 255));
        return data;
    }

    std::mt19937 m_random;
    bool m_ansiOnly;
    DWORD m_type = REG_NONE;
};

TEST(RoundTrip, ExportImportExportGivesTheSameBytes)
{
    CScratchKey scratch(TEXT("RoundTrip"));
    const CString tree = scratch.Path() + TEXT("\\Tree");
    CTestFile first("round-trip-1.reg");
    CTestFile second("round-trip-2.reg");
    for (unsigned seed = 1; seed <= 6; ++seed) {
        for (bool unicode : {true, false}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << (unicode ? " version 5" : " version 4"));
            ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, tree));
            CRandomRegistry(seed, !unicode).Fill(HKEY_CURRENT_USER, tree, 3);
            ASSERT_TRUE(ExportKey(first.Path(), unicode, tree));
            ASSERT_TRUE(DeleteKeyTree(HKEY_CURRENT_USER, tree));
            CRegImporter importer;
            bool result = false;
            CString error;
            ASSERT_TRUE(importer.Start(first.Path()) && importer.GetResult(result, error) && result) << ToUtf8(error);
            ASSERT_TRUE(ExportKey(second.Path(), unicode, tree));
            ASSERT_EQ(first.Bytes(), second.Bytes());
        }
    }
}

}  // namespace
