#pragma once

#include <atomic>

#include <windows.h>

#include <commctrl.h>

#include "framework/ShdWnd_win.h"
#include "search/FindAllSearch.h"

// The list of a find-all search's matches, a child of the main window that
// covers its panes when shown. While the search runs, "< Cancel search >"
// heads the list; a search that found nothing leaves "< Nothing was found >".
// Activating a match asks the callback to show it.
//
// Matches are added to the list by the window's own thread, in batches, from
// what the collecting thread has found: the window answers its messages
// however fast matches arrive.
class CFindResultsWnd : public CShdWnd {
public:
    // Posted by the collecting thread when the search ran out by itself.
    static const UINT kFinishedMessage = WM_USER + 101;
    static const UINT kListId = 1;

    // Item data of the two special items, outside any index of a match.
    static const LPARAM kCancelItemData = 0x7FFF0001;
    static const LPARAM kNothingFoundItemData = 0x7FFF0002;

    // The main window.
    class ICallback {
    public:
        // After every change of state.
        virtual void OnSearchStateChanged() = 0;
        // A match was activated: show it in the tree and the value list.
        virtual void ShowSearchResult(HKEY root, LPCWSTR keyPath, LPCWSTR valueName, bool isValue) = 0;

    protected:
        ~ICallback() = default;
    };

    CFindResultsWnd();
    ~CFindResultsWnd() override;

    // A hidden child with its list, filling `bounds`.
    bool Create(HWND parent, UINT id, const RECT& bounds, ICallback* callback, HINSTANCE instance);

    // Starts a new search from `start`, stopping one that runs.
    void StartFindAll(const SSearchParams& params, const SStartPosition& start);
    // Each only in the state it applies to; they return once the collecting
    // thread has seen the request, and tell the callback.
    void Pause();
    void Resume();
    // Stops the search, keeping what was found: "Search cancelled".
    void Cancel();

    // CFindAllSearch::EState.
    DWORD GetState() const { return m_search.GetState(); }
    LPCWSTR GetStatusText() const { return SearchStatusText(GetState()); }
    // In progress or paused.
    bool IsRunning() const { return m_search.IsRunning(); }
    bool IsPaused() const { return GetState() == CFindAllSearch::kPaused; }
    // A find-all has been started since the window was made.
    bool HasStarted() const { return GetState() != CFindAllSearch::kReady; }
    size_t GetResultCount() const { return m_search.GetResultCount(); }

    void Show(bool show);
    bool IsShown() const;
    HWND GetList() const { return m_list; }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    class CSink : public CFindAllSearch::ISink {
    public:
        explicit CSink(CFindResultsWnd& owner) : m_owner(owner) {}
        void OnMatchAdded(unsigned run, size_t index) override;
        void OnSearchRanOut(unsigned run) override;

    private:
        CFindResultsWnd& m_owner;
    };

    // Asks for the new matches to be listed.
    static const UINT kMatchesMessage = WM_USER + 102;
    // Asks for the next slice of the matches left after the search ran out.
    static const UINT kListMoreMessage = WM_USER + 103;
    static const UINT_PTR kListingTimer = 1;

    bool OnCreate();
    void OnSize();
    void OnFinished(unsigned run);
    // After the search ran out: once every match is listed, the search is
    // finished and the callback told.
    void FinishOnceListed();
    // Lists new matches now, or when the interval since the last listing is
    // over.
    void OnMatchesArrived();
    // Lists the matches found since the last call, for a slice of time; asks
    // again for the rest. `all` lists them all at once.
    void ListNewMatches(bool all);
    int InsertItem(int index, LPCWSTR text, int image, LPARAM data);
    // Takes the cancel item away and, with no match, shows that nothing was
    // found.
    void FinishList();
    void ClearList();
    void OnActivate(const NMITEMACTIVATE* activation);
    void ChangeState();

    CSink m_sink;
    CFindAllSearch m_search;
    ICallback* m_callback = nullptr;
    HWND m_list = nullptr;
    bool m_cancelItemShown = false;
    bool m_nothingFoundShown = false;
    // How many of the matches are in the list.
    size_t m_listed = 0;
    // The search ran out; matches may still wait to be listed.
    bool m_ranOut = false;
    // A kMatchesMessage or kListMoreMessage is on its way, or the listing
    // timer runs.
    std::atomic<bool> m_listingRequested{false};
    DWORD m_lastListing = 0;
};
