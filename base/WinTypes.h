#pragma once

// The Win32 vocabulary the portable code is written in. On Windows it is the
// real <windows.h>; elsewhere this header defines the same names with the same
// sizes and values, so that the logic compiles unchanged on Linux. Characters
// are UTF-16 code units on every build: WCHAR is wchar_t on Windows and
// char16_t elsewhere (where wchar_t is 32 bits), and TEXT("...") makes a
// literal of that type.

#ifdef _WIN32

#include <windows.h>

#else

#include <cstdint>

#define WINAPI
#define TEXT(s) u##s

typedef char16_t WCHAR;
typedef const WCHAR* LPCWSTR;
typedef WCHAR* LPWSTR;
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef int32_t LONG;
typedef uint32_t UINT;
typedef int BOOL;
typedef void* HANDLE;
typedef void* LPVOID;
typedef uintptr_t ULONG_PTR;
typedef DWORD REGSAM;
typedef struct HKEY__* HKEY;
typedef DWORD(WINAPI* LPTHREAD_START_ROUTINE)(LPVOID);
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

#define TRUE 1
#define FALSE 0

// Predefined roots are sign-extended 32-bit values, as on 64-bit Windows.
#define HKEY_CLASSES_ROOT ((HKEY)(ULONG_PTR)(LONG)0x80000000)
#define HKEY_CURRENT_USER ((HKEY)(ULONG_PTR)(LONG)0x80000001)
#define HKEY_LOCAL_MACHINE ((HKEY)(ULONG_PTR)(LONG)0x80000002)
#define HKEY_USERS ((HKEY)(ULONG_PTR)(LONG)0x80000003)

#define ERROR_SUCCESS 0L
#define ERROR_FILE_NOT_FOUND 2L
#define ERROR_PATH_NOT_FOUND 3L
#define ERROR_ACCESS_DENIED 5L
#define ERROR_INVALID_HANDLE 6L
#define ERROR_NOT_ENOUGH_MEMORY 8L
#define ERROR_WRITE_FAULT 29L
#define ERROR_READ_FAULT 30L
#define ERROR_HANDLE_EOF 38L
#define ERROR_FILE_EXISTS 80L
#define ERROR_NEGATIVE_SEEK 131L
#define ERROR_INVALID_PARAMETER 87L
#define ERROR_DISK_FULL 112L
#define ERROR_INSUFFICIENT_BUFFER 122L
#define ERROR_ALREADY_EXISTS 183L
#define ERROR_MORE_DATA 234L
#define ERROR_NO_MORE_ITEMS 259L
#define ERROR_NOACCESS 998L
#define ERROR_KEY_DELETED 1018L
#define ERROR_NO_UNICODE_TRANSLATION 1113L

#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_DWORD_BIG_ENDIAN 5
#define REG_LINK 6
#define REG_MULTI_SZ 7
#define REG_RESOURCE_LIST 8
#define REG_FULL_RESOURCE_DESCRIPTOR 9
#define REG_RESOURCE_REQUIREMENTS_LIST 10
#define REG_QWORD 11

#define REG_OPTION_NON_VOLATILE 0
#define REG_CREATED_NEW_KEY 1
#define REG_OPENED_EXISTING_KEY 2

#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_SHARE_READ 1
#define FILE_SHARE_WRITE 2
#define CREATE_NEW 1
#define CREATE_ALWAYS 2
#define OPEN_EXISTING 3
#define OPEN_ALWAYS 4
#define TRUNCATE_EXISTING 5
#define FILE_ATTRIBUTE_READONLY 0x1
#define FILE_ATTRIBUTE_DIRECTORY 0x10
#define FILE_ATTRIBUTE_NORMAL 0x80
#define FILE_ATTRIBUTE_TEMPORARY 0x100
#define INVALID_HANDLE_VALUE ((HANDLE)(intptr_t)-1)
#define INVALID_FILE_SIZE 0xFFFFFFFFu
#define INVALID_SET_FILE_POINTER 0xFFFFFFFFu
#define INVALID_FILE_ATTRIBUTES 0xFFFFFFFFu
#define FILE_BEGIN 0
#define FILE_CURRENT 1
#define FILE_END 2

#define CP_ACP 0
#define WC_COMPOSITECHECK 0x200
#define MB_PRECOMPOSED 0x1

#define INFINITE 0xFFFFFFFFu
#define WAIT_OBJECT_0 0
#define WAIT_TIMEOUT 258
#define WAIT_FAILED 0xFFFFFFFFu
#define MAXIMUM_WAIT_OBJECTS 64

#define THREAD_PRIORITY_NORMAL 0
#define THREAD_PRIORITY_BELOW_NORMAL (-1)

#endif
