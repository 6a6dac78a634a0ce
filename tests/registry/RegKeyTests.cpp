#include <gtest/gtest.h>

#include "platform/FaultInjectingPlatform.h"
#include "registry/RegKey.h"
#include "tests/support/ScratchKey.h"
#include "tests/support/TestText.h"

namespace {

class RegKeyTest : public testing::Test {
protected:
    RegKeyTest() : m_scoped(m_faults), m_scratch(TEXT("RegKey")) { EXPECT_TRUE(m_key.Open(m_scratch.Handle(), TEXT(""))); }

    void Write(const CString& name, DWORD type, const std::vector<BYTE>& data)
    {
        ASSERT_TRUE(m_key.WriteValue(name, type, data.data(), static_cast<DWORD>(data.size())));
    }

    CFaultInjectingPlatform m_faults;
    CScopedPlatform m_scoped;
    CScratchKey m_scratch;
    CShdRegKey m_key{true};
};

TEST_F(RegKeyTest, LongNamesAndLargeDataAreReadWhole)
{
    const CString name260 = W(std::string(260, 'n').c_str());
    const CString name400 = W(std::string(400, 'm').c_str());
    const std::vector<BYTE> big = Sequence(3000);
    Write(name260, REG_BINARY, Bytes({1}));
    Write(name400, REG_BINARY, big);
    Write(W("exact"), REG_BINARY, std::vector<BYTE>(1025, 0xAB));
    // Key names have at most 255 characters.
    const CString name255 = W(std::string(255, 'k').c_str());
    CShdRegKey child;
    ASSERT_TRUE(child.Create(m_key.GetHandle(), name255, nullptr));

    // Values enumerate as "exact", name400, name260. The longest value name
    // is 400: sized from the listing, the first call fits; the plain form
    // starts at 261 and grows once.
    CString name;
    DWORD type = 0;
    m_faults.ResetRegistryCallCount();
    EXPECT_TRUE(m_key.EnumValueName(1, name, type, m_key.QueryListing().longestValueName));
    EXPECT_EQ(name, name400);
    EXPECT_EQ(m_faults.RegistryCallCount(), 2u) << "the listing, one call that fits";
    EXPECT_TRUE(m_key.EnumValueName(1, name, type));
    EXPECT_EQ(name, name400);
    EXPECT_TRUE(m_key.EnumValueName(2, name, type, 400));
    EXPECT_EQ(name, name260);
    EXPECT_TRUE(m_key.EnumSubkey(0, name, m_key.QueryListing().longestSubkey));
    EXPECT_EQ(name, name255);
    EXPECT_TRUE(m_key.EnumSubkey(0, name));
    EXPECT_EQ(name, name255);
    EXPECT_FALSE(m_key.EnumSubkey(1, name));
    EXPECT_EQ(name, W(""));

    CShdBinaryBuffer data;
    EXPECT_TRUE(m_key.EnumValue(1, name, type, data));
    EXPECT_EQ(name, name400);
    EXPECT_EQ(BufferBytes(data), big);
    EXPECT_TRUE(m_key.EnumValue(0, name, type, data));
    EXPECT_EQ(name, W("exact"));
    EXPECT_EQ(data.GetSize(), 1025u);
    EXPECT_TRUE(m_key.ReadValue(name400, type, data));
    EXPECT_EQ(data.GetSize(), 3000u);
    EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
    EXPECT_FALSE(m_key.EnumValue(3, name, type, data));
    EXPECT_TRUE(data.IsEmpty());
}

TEST_F(RegKeyTest, ClassesOpeningAndClosing)
{
    CShdRegKey child(true);
    ASSERT_TRUE(child.Create(m_key.GetHandle(), W("Classy"), W("myclass")));

    // A failed open closes the key that was open before.
    EXPECT_FALSE(child.Open(m_key.GetHandle(), W("Missing")));
    EXPECT_FALSE(child.IsOpen());
    CString className = W("sentinel");
    EXPECT_FALSE(child.GetClass(className));
    EXPECT_EQ(className, W(""));
    EXPECT_EQ(child.ValueCount(), 0u);
    EXPECT_FALSE(child.WriteDword(W("x"), 1));

    // Flush on close costs one call more than a plain close.
    ASSERT_TRUE(child.Open(m_key.GetHandle(), W("classy")));
    m_faults.ResetRegistryCallCount();
    child.Close();
    EXPECT_EQ(m_faults.RegistryCallCount(), 2u);
    ASSERT_TRUE(child.Open(m_key.GetHandle(), W("classy")));
    m_faults.ResetRegistryCallCount();
    child.Close(false);
    EXPECT_EQ(m_faults.RegistryCallCount(), 1u);
}

}  // namespace
