#include "app/VersionInfo.h"

#include "base/ValueData.h"

namespace {

const DWORD kFixedInfoSignature = 0xFEEF04BD;
// Signature, structure version, then the file version's high and low words.
const size_t kFixedInfoPrefix = 4 * sizeof(DWORD);

}  // namespace

bool ReadFixedFileVersion(const BYTE* data, size_t size, SFileVersion& version)
{
    version = SFileVersion();
    if (data == nullptr)
        return false;
    for (size_t offset = 0; offset + kFixedInfoPrefix <= size; offset += sizeof(DWORD)) {
        if (DwordAt(data + offset) != kFixedInfoSignature)
            continue;
        const DWORD high = DwordAt(data + offset + 2 * sizeof(DWORD));
        const DWORD low = DwordAt(data + offset + 3 * sizeof(DWORD));
        version.major = static_cast<int>(high >> 16);
        version.minor = static_cast<int>(high & 0xFFFF);
        version.patch = static_cast<int>(low >> 16);
        version.build = static_cast<int>(low & 0xFFFF);
        return true;
    }
    return false;
}
