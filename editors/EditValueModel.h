#pragma once

#include "base/BinaryBuffer.h"
#include "base/CString.h"
#include "base/WinTypes.h"

// What the value editor does apart from its window: it reads the value (or
// makes the empty data of a new one), chooses the editor that shows it,
// turns the typed input back into bytes and writes them. The dialog shows
// the editor's text or bytes and hands back what the user typed.
class CEditValueModel {
public:
    enum EEditor {
        kEditorString,
        kEditorDword,
        kEditorMultiString,
        // The hex edit control: binary data, unknown types, custom values and
        // "Edit as Binary...".
        kEditorHex,
    };

    enum ESaveResult {
        kSaved,
        // A DWORD or custom type that is no valid number.
        kInvalidInput,
        // The key could not be opened (or made) for writing.
        kKeyNotWritable,
        // A new value whose name is taken.
        kNameExists,
        kWriteFailed,
    };

    // What the user typed, as the dialog reads it from its controls.
    struct SInput {
        // Read only when the value is new.
        CString name;
        // The string, DWORD or multi-string editor's text.
        CString text;
        // The hex control's bytes.
        CShdBinaryBuffer bytes;
        // Read only for a custom value.
        CString customType;
    };

    // An existing value; `asBinary` edits its bytes whatever its type.
    CEditValueModel(HKEY root, LPCWSTR path, LPCWSTR name, bool asBinary);
    // A new value of `type`, or of a type the user enters when `custom`.
    CEditValueModel(HKEY root, LPCWSTR path, LPCWSTR proposedName, DWORD type, bool custom);

    // Reads the value, or makes a new value's empty data, and chooses the
    // editor. False when the value cannot be read, a DWORD is not exactly
    // four bytes long, or a new value's type has no editor: the dialog then
    // closes at once.
    bool Load();

    bool IsNew() const { return m_isNew; }
    // A new value whose type the user enters.
    bool IsCustom() const { return m_isNew && m_asBinary; }
    EEditor GetEditor() const { return m_editor; }
    DWORD GetType() const { return m_type; }
    DWORD GetBase() const { return m_base; }
    const CString& GetName() const { return m_name; }
    const CShdBinaryBuffer& GetData() const { return m_data; }
    // The loaded data as the string, DWORD or multi-string editor shows it.
    CString GetEditorText() const;
    // "Type: REG_SZ" and the like.
    CString GetTypeLine() const;
    // The type as the custom type field shows it (hexadecimal, no prefix).
    CString GetCustomTypeText() const;

    // Shows the DWORD typed in the current base in `newBase` instead. False,
    // keeping the base, when the text is no number in the current base.
    bool SwitchBase(DWORD newBase, LPCWSTR text, CString& shown);

    // Turns the input into bytes and writes them. Nothing is written unless
    // the whole input is valid; a new value's name is kept on success.
    ESaveResult Save(const SInput& input);

    // The message that tells the user why saving failed; null when nothing
    // is to be said.
    static LPCWSTR SaveFailureMessage(ESaveResult result);

private:
    bool LoadExisting();
    bool MakeNewData();
    // The bytes to write and their type; false on invalid input.
    bool InputToBytes(const SInput& input, DWORD& type, CShdBinaryBuffer& bytes) const;

    HKEY m_root;
    CString m_path;
    CString m_name;
    DWORD m_type;
    DWORD m_base = 10;
    bool m_isNew;
    bool m_asBinary;
    EEditor m_editor = kEditorHex;
    CShdBinaryBuffer m_data;
};
