#include "app/VersionInfo.h"

namespace {

const DWORD kFixedInfoSignature = 0xFEEF04BD;
// Signature, structure version, then the file version's high and low words.
const size_t kFixedInfoPrefix = 4 * sizeof(DWORD);

DWORD ReadDword(const BYTE* data)
{
    return static_cast<DWORD>(data[0]) | static_cast<DWORD>(data[1]) << 8 | static_cast<DWORD>(data[2]) << 16 |
           static_cast<DWORD>(data[3]) << 24;
}

}  // namespace

bool ReadFixedFileVersion(const BYTE* data, size_t size, SFileVersion& version)
{
    version = SFileVersion();
    if (data == nullptr)
        return false;
    for (size_t offset = 0; offset + kFixedInfoPrefix <= size; offset += sizeof(DWORD)) {
        if (ReadDword(data + offset) != kFixedInfoSignature)
            continue;
        const DWORD high = ReadDword(data + offset + 2 * sizeof(DWORD));
        const DWORD low = ReadDword(data + offset + 3 * sizeof(DWORD));
        version.major = static_cast<int>(high >> 16);
        version.minor = static_cast<int>(high & 0xFFFF);
        version.patch = static_cast<int>(low >> 16);
        version.build = static_cast<int>(low & 0xFFFF);
        return true;
    }
    return false;
}
