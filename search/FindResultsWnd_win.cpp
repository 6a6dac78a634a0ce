#include "search/FindResultsWnd_win.h"

#include <commctrl.h>

#include "framework/WindowHelpers_win.h"
#include "registry/RegistryRoots.h"
#include "resources/resource.h"

namespace {

const DWORD kListStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS;
const DWORD kListExtendedStyle = LVS_EX_FULLROWSELECT | LVS_EX_ONECLICKACTIVATE;

// Images of the strip.
const int kNothingFoundImage = 0;
const int kCancelImage = 1;
const int kKeyImage = 2;
const int kValueImage = 3;
// The results take their 32-pixel images as soon as the screen's scale
// rounds to two, (dpi + 48) / 96 > 1: from 144 dpi on, earlier than the
// other image strips.
const int kLargeImagesFromDpi = 144;

// Matches are listed for this long at a time, so that the window keeps
// answering however many arrive; the rest follow on the next message.
const DWORD kListingSliceMs = 30;
// Once the search has run out, nothing else waits for the window: the rest
// is listed in longer slices, each followed at once by the next.
const DWORD kTailSliceMs = 60;
// The clock is read once per this many items.
const size_t kItemsPerClockRead = 32;
// Matches that arrive one by one are listed at most this often: each
// listing repaints the list, and under Wine painting goes through the same
// server as every registry call of the search, so that ten listings a
// second already slowed the search by a fifth.
const DWORD kListingIntervalMs = 250;
const UINT kListingContinueMs = 10;

}  // namespace

void CFindResultsWnd::CSink::OnMatchAdded(unsigned run, size_t)
{
    // One request at a time: the window takes every match found until then.
    if (!m_owner.m_listingRequested.exchange(true))
        PostMessageW(m_owner.GetHwnd(), kMatchesMessage, run, 0);
}

void CFindResultsWnd::CSink::OnSearchRanOut(unsigned run)
{
    PostMessageW(m_owner.GetHwnd(), kFinishedMessage, run, 0);
}

CFindResultsWnd::CFindResultsWnd() : m_sink(*this), m_search(m_sink) {}

CFindResultsWnd::~CFindResultsWnd()
{
    // The collecting thread posts to the window: it ends before the window.
    m_search.Stop();
    if (GetHwnd() != nullptr)
        DestroyWindow(GetHwnd());
}

bool CFindResultsWnd::Create(HWND parent, UINT id, const RECT& bounds, ICallback* callback, HINSTANCE instance)
{
    m_callback = callback;
    return CShdWnd::Create(0, nullptr, L"", WS_CHILD | WS_CLIPCHILDREN, bounds.left, bounds.top,
                           bounds.right - bounds.left, bounds.bottom - bounds.top, parent,
                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), instance) &&
           m_list != nullptr;
}

bool CFindResultsWnd::OnCreate()
{
    const HINSTANCE instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(GetHwnd(), GWLP_HINSTANCE));
    RECT client = {};
    GetClientRect(GetHwnd(), &client);
    m_list = CreateWindowExW(0, WC_LISTVIEWW, L"", kListStyle, 0, 0, client.right, client.bottom, GetHwnd(),
                             reinterpret_cast<HMENU>(static_cast<UINT_PTR>(kListId)), instance, nullptr);
    if (m_list == nullptr)
        return false;
    SendMessageW(m_list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, kListExtendedStyle);
    const HFONT font = CShdFontsManager::Instance().GetDefaultFont();
    SendMessageW(m_list, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    SendMessageW(ListView_GetHeader(m_list), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    LVCOLUMNW column = {};
    column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
    column.fmt = LVCFMT_LEFT;
    column.cx = client.right - 2 * GetSystemMetrics(SM_CXVSCROLL);
    column.pszText = const_cast<LPWSTR>(L"Location");
    SendMessageW(m_list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    // The list owns its image list and destroys it with itself.
    const HIMAGELIST images = LoadImageStrip(instance, IDB_RESULTS_16, IDB_RESULTS_32, kLargeImagesFromDpi);
    if (images != nullptr)
        SendMessageW(m_list, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(images));
    return true;
}

void CFindResultsWnd::StartFindAll(const SSearchParams& params, const SStartPosition& start)
{
    m_search.Stop();
    ClearList();
    m_cancelItemShown = InsertItem(0, L"< Cancel search >", kCancelImage, kCancelItemData) >= 0;
    m_search.Start(params, start);
    ChangeState();
}

void CFindResultsWnd::Pause()
{
    if (!m_search.Pause())
        return;
    // The list then shows exactly what was found up to the pause.
    ListNewMatches(true);
    ChangeState();
}

void CFindResultsWnd::Resume()
{
    if (m_search.Resume())
        ChangeState();
}

void CFindResultsWnd::Cancel()
{
    m_search.Cancel();
    ListNewMatches(true);
    FinishList();
    ChangeState();
}

void CFindResultsWnd::OnFinished(unsigned run)
{
    // A search that was replaced meanwhile may still report its end.
    if (run != m_search.GetRun())
        return;
    // A search that outran the list finishes once the rest is listed, in
    // slices as before, so that the window keeps answering meanwhile.
    m_ranOut = true;
    ListNewMatches(false);
}

void CFindResultsWnd::FinishOnceListed()
{
    if (!m_ranOut || m_listed < m_search.GetResultCount())
        return;
    m_ranOut = false;
    m_search.Finish();
    FinishList();
    ChangeState();
}

void CFindResultsWnd::ChangeState()
{
    if (m_callback != nullptr)
        m_callback->OnSearchStateChanged();
}

void CFindResultsWnd::Show(bool show)
{
    ShowWindow(GetHwnd(), show ? SW_SHOW : SW_HIDE);
}

bool CFindResultsWnd::IsShown() const
{
    return GetHwnd() != nullptr && IsWindowVisible(GetHwnd());
}

int CFindResultsWnd::InsertItem(int index, LPCWSTR text, int image, LPARAM data)
{
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    item.iItem = index;
    item.pszText = const_cast<LPWSTR>(text);
    item.iImage = image;
    item.lParam = data;
    return static_cast<int>(SendMessageW(m_list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

void CFindResultsWnd::OnMatchesArrived()
{
    const DWORD since = GetTickCount() - m_lastListing;
    if (since < kListingIntervalMs)
        SetTimer(GetHwnd(), kListingTimer, kListingIntervalMs - since, nullptr);
    else
        ListNewMatches(false);
}

void CFindResultsWnd::ListNewMatches(bool all)
{
    KillTimer(GetHwnd(), kListingTimer);
    m_lastListing = GetTickCount();
    m_listingRequested = false;
    const size_t count = m_search.GetResultCount();
    if (m_listed >= count) {
        FinishOnceListed();
        return;
    }
    const DWORD started = GetTickCount();
    SendMessageW(m_list, WM_SETREDRAW, FALSE, 0);
    CRegFinder::SSearchPosition match;
    while (m_listed < count && m_search.GetResult(m_listed, match)) {
        const CString text = CString(RootShortName(match.root)) + L"\\" + match.keyPath;
        const int image = match.kind == CRegFinder::kStateAtValue ? kValueImage : kKeyImage;
        InsertItem(ListView_GetItemCount(m_list), text, image, static_cast<LPARAM>(m_listed));
        ++m_listed;
        if (!all && m_listed % kItemsPerClockRead == 0 &&
            GetTickCount() - started >= (m_ranOut ? kTailSliceMs : kListingSliceMs))
            break;
    }
    SendMessageW(m_list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(m_list, nullptr, TRUE);
    // The rest follows soon, after what else waits in the queue.
    if (m_listed < count && !m_listingRequested.exchange(true)) {
        if (m_ranOut)
            PostMessageW(GetHwnd(), kListMoreMessage, 0, 0);
        else
            SetTimer(GetHwnd(), kListingTimer, kListingContinueMs, nullptr);
    }
    FinishOnceListed();
}

void CFindResultsWnd::FinishList()
{
    if (m_cancelItemShown) {
        ListView_DeleteItem(m_list, 0);
        m_cancelItemShown = false;
    }
    if (!m_nothingFoundShown && m_search.GetResultCount() == 0)
        m_nothingFoundShown =
            InsertItem(ListView_GetItemCount(m_list), L"< Nothing was found >", kNothingFoundImage,
                       kNothingFoundItemData) >= 0;
}

void CFindResultsWnd::ClearList()
{
    ListView_DeleteAllItems(m_list);
    m_listed = 0;
    m_ranOut = false;
    m_cancelItemShown = false;
    m_nothingFoundShown = false;
}

void CFindResultsWnd::OnActivate(const NMITEMACTIVATE* activation)
{
    int index = activation->iItem;
    if (index < 0)
        index = ListView_GetNextItem(m_list, -1, LVNI_SELECTED);
    if (index < 0)
        index = ListView_GetNextItem(m_list, -1, LVNI_FOCUSED);
    if (index < 0)
        return;
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = index;
    if (!ListView_GetItem(m_list, &item))
        return;
    if (item.lParam == kCancelItemData) {
        Cancel();
        return;
    }
    CRegFinder::SSearchPosition match;
    if (item.lParam < 0 || !m_search.GetResult(static_cast<size_t>(item.lParam), match) ||
        m_callback == nullptr)
        return;
    if (match.kind == CRegFinder::kStateAtKey || match.kind == CRegFinder::kStateAtValue)
        m_callback->ShowSearchResult(match.root, match.keyPath, match.valueName,
                                     match.kind == CRegFinder::kStateAtValue);
}

void CFindResultsWnd::OnSize()
{
    RECT client = {};
    GetClientRect(GetHwnd(), &client);
    MoveWindow(m_list, 0, 0, client.right, client.bottom, TRUE);
}

LRESULT CFindResultsWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        return OnCreate() ? 0 : -1;
    case WM_DESTROY:
        m_search.Stop();
        m_list = nullptr;
        break;
    case WM_SIZE:
        if (m_list != nullptr)
            OnSize();
        return 0;
    case WM_SETFOCUS:
        SetFocus(m_list);
        return 0;
    case WM_NOTIFY: {
        const NMHDR* header = reinterpret_cast<const NMHDR*>(lParam);
        if (header->hwndFrom == m_list && header->code == LVN_ITEMACTIVATE)
            OnActivate(reinterpret_cast<const NMITEMACTIVATE*>(lParam));
        return 0;
    }
    case kMatchesMessage:
        OnMatchesArrived();
        return 0;
    case kListMoreMessage:
        ListNewMatches(false);
        return 0;
    case WM_TIMER:
        if (wParam != kListingTimer)
            break;
        ListNewMatches(false);
        return 0;
    case kFinishedMessage:
        OnFinished(static_cast<unsigned>(wParam));
        return 0;
    default:
        break;
    }
    return CShdWnd::WindowProc(message, wParam, lParam);
}
