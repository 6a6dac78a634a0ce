#include "tests/support/ImportPreviewCases.h"

#include <random>

#include "tests/support/TestFiles.h"

const char kPreviewSyntaxErrorTail[] = "\"broken\"=text\n";

std::string PreviewCaseFile(unsigned seed, const char* tail)
{
    std::mt19937 random(seed);
    const auto pick = [&](unsigned count) { return std::to_string(random() % count); };
    std::string text = "Windows Registry Editor Version 5.00\n\n";
    for (int line = 0; line < 40; ++line) {
        std::string key = "HKEY_CURRENT_USER\\Software\\QuendaTests\\Preview\\K" + pick(4);
        if (random() % 2 != 0)
            key += "\\S" + pick(3);
        if (random() % 6 == 0) {
            text += "[-" + key + "]\n";
            continue;
        }
        text += "[" + key + "]\n";
        for (unsigned values = random() % 4; values > 0; --values) {
            const std::string name = random() % 5 == 0 ? "@=" : "\"v" + pick(4) + "\"=";
            switch (random() % 4) {
            case 0:
                text += name + "-\n";
                break;
            case 1:
                text += name + "dword:" + pick(3) + "\n";
                break;
            case 2:
                text += name + "\"t" + pick(3) + "\"\n";
                break;
            default:
                text += name + "hex(7):6" + pick(3) + ",00,00,00,00,00\n";
            }
        }
    }
    return Utf16FileBytes(text + tail, true);
}
