#pragma once

#include "base/CString.h"
#include "base/ObjArray.h"
#include "base/WinTypes.h"

// A bookmark is a key's location: the root's long name, then "\" and the
// path when it is not empty ("HKEY_LOCAL_MACHINE\Software"; a root alone is
// one too). FullKeyName builds a location and ParseFullKeyPath opens it
// (registry/KeyPath.h); the key itself need not exist.

// True for text the user may store as a location: not empty, no "\" at the
// end, no "\\", and a long or short root name (any case) before the first
// "\".
bool IsValidBookmarkLocation(LPCWSTR location);

// The bookmarks in their stored order, kept in the Bookmarks key of the
// program's own key as "count" and the strings "item_0", "item_1" and so on.
// Locations are compared without regard to case.
class CBookmarkList {
public:
    enum class EChange {
        Changed,        // the list changed and was saved
        AlreadyExists,  // another item equals the location; nothing changed
        Unchanged,      // the location is the item's own; nothing to do
        Failed,         // the list could not grow, or the store refused the save
    };

    // Replaces the list with the stored one. Missing and empty items are
    // skipped; a missing key gives an empty list.
    void Load();
    // Replaces the stored list with this one, going on past refused writes;
    // false when any write failed.
    bool Save() const;

    size_t GetCount() const { return m_items.GetCount(); }
    const CString& GetAt(size_t index) const { return *m_items[index]; }
    // The index of the item equal to `location` without regard to case,
    // ignoring the item at `except`; -1 when there is none.
    int Find(LPCWSTR location, int except = -1) const;

    // Appends a location that is not there yet, and saves.
    EChange Add(LPCWSTR location);
    // Puts `location` in place of an item, and saves. Any change of the text
    // counts, a change of case alone too, unless another item equals it.
    EChange Replace(size_t index, LPCWSTR location);
    // Removes an item and saves; returns the index to select next (the item
    // that took its place, or the new last one), -1 when the list is empty.
    int Remove(size_t index);

private:
    EChange SaveChange() const { return Save() ? EChange::Changed : EChange::Failed; }

    CShdObjArray<CString> m_items;
};

enum class EAddBookmarkResult { Added, AlreadyExists, Failed };

// Adds the location of a key to the stored list, unless it is there already.
// Failed for an unknown root or when the list could not grow; a refused save
// is no failure of the adding.
EAddBookmarkResult AddBookmark(HKEY root, LPCWSTR path);
