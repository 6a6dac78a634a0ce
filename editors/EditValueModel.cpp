#include "editors/EditValueModel.h"

#include "base/ValueData.h"
#include "editors/ValueEditRules.h"
#include "registry/RegKey.h"
#include "views/ValueText.h"

namespace {

// A custom type is a 16-bit number.
const DWORD kCustomTypeLimit = 0xFFFF;

}  // namespace

CEditValueModel::CEditValueModel(HKEY root, LPCWSTR path, LPCWSTR name, bool asBinary)
    : m_root(root), m_path(path), m_name(name), m_type(REG_NONE), m_isNew(false), m_asBinary(asBinary)
{
}

CEditValueModel::CEditValueModel(HKEY root, LPCWSTR path, LPCWSTR proposedName, DWORD type, bool custom)
    : m_root(root), m_path(path), m_name(proposedName), m_type(type), m_isNew(true), m_asBinary(custom)
{
}

bool CEditValueModel::Load()
{
    if (!(m_isNew ? MakeNewData() : LoadExisting()))
        return false;
    m_base = 10;
    if (!m_asBinary && (m_type == REG_SZ || m_type == REG_EXPAND_SZ))
        m_editor = kEditorString;
    else if (m_asBinary)
        m_editor = kEditorHex;
    else if (m_type == REG_DWORD)
        m_editor = kEditorDword;
    else if (m_type == REG_MULTI_SZ)
        m_editor = kEditorMultiString;
    else
        m_editor = kEditorHex;
    return m_editor != kEditorDword || m_data.GetSize() == sizeof(DWORD);
}

bool CEditValueModel::LoadExisting()
{
    CShdRegKey key;
    return key.Open(m_root, m_path) && key.ReadValue(m_name, m_type, m_data);
}

bool CEditValueModel::MakeNewData()
{
    m_data.Clear();
    if (m_asBinary)
        return true;
    switch (m_type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return StringToBytes(TEXT(""), m_data);
    case REG_MULTI_SZ:
        return TextToMultiString(TEXT(""), m_data);
    case REG_DWORD:
        return m_data.SetSize(sizeof(DWORD));
    case REG_BINARY:
        return true;
    default:
        return false;
    }
}

CString CEditValueModel::GetEditorText() const
{
    switch (m_editor) {
    case kEditorString:
        return StringDataText(m_data.GetData(), m_data.GetSize());
    case kEditorDword:
        return m_data.GetSize() == sizeof(DWORD) ? DwordToText(DwordAt(m_data.GetData()), m_base) : CString();
    case kEditorMultiString:
        return MultiStringToText(m_data.GetData(), m_data.GetSize());
    default:
        return CString();
    }
}

CString CEditValueModel::GetTypeLine() const
{
    return TEXT("Type: ") + ValueTypeName(m_type);
}

CString CEditValueModel::GetCustomTypeText() const
{
    return DwordToText(m_type, 16);
}

bool CEditValueModel::SwitchBase(DWORD newBase, LPCWSTR text, CString& shown)
{
    DWORD value = 0;
    if (!ParseNumber(text, m_base == 16, 0, value))
        return false;
    m_base = newBase;
    shown = DwordToText(value, m_base);
    return true;
}

bool CEditValueModel::InputToBytes(const SInput& input, DWORD& type, CShdBinaryBuffer& bytes) const
{
    type = m_type;
    switch (m_editor) {
    case kEditorString:
        return StringToBytes(input.text, bytes);
    case kEditorDword: {
        DWORD value = 0;
        if (!ParseNumber(input.text, m_base == 16, 0, value))
            return false;
        const auto little = DwordBytes(value);
        return bytes.Assign(little.data(), little.size());
    }
    case kEditorMultiString:
        return TextToMultiString(input.text, bytes);
    default:
        if (IsCustom() && !ParseNumber(input.customType, true, kCustomTypeLimit, type))
            return false;
        return bytes.Assign(input.bytes.GetData(), input.bytes.GetSize());
    }
}

CEditValueModel::ESaveResult CEditValueModel::Save(const SInput& input)
{
    const CString name = m_isNew ? input.name : m_name;
    DWORD type = REG_NONE;
    CShdBinaryBuffer bytes;
    if (!InputToBytes(input, type, bytes))
        return kInvalidInput;
    // Made when missing: the key may have been deleted while the dialog was
    // open. Flushed on close, as every write path is.
    CShdRegKey key(true);
    if (!key.Create(m_root, m_path, nullptr))
        return kKeyNotWritable;
    if (m_isNew && key.ValueExists(name))
        return kNameExists;
    if (!key.WriteValue(name, type, bytes.GetData(), static_cast<DWORD>(bytes.GetSize())))
        return kWriteFailed;
    m_name = name;
    m_type = type;
    return kSaved;
}

LPCWSTR CEditValueModel::SaveFailureMessage(ESaveResult result)
{
    switch (result) {
    case kInvalidInput: return TEXT("Entered value is invalid");
    case kNameExists: return TEXT("Value with this name already exists");
    case kWriteFailed: return TEXT("Unable to write value");
    default: return nullptr;
    }
}
