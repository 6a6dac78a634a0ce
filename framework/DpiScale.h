#pragma once

// Every length of the user interface is designed at 96 dots per inch and
// scaled to the screen, separately for x and y.

// n design units at `dpi`: (n * dpi + 48) / 96, rounded half away from zero
// so that negative lengths step like positive ones.
int ScaleByDpi(int designUnits, int dpi);
// The font height (negative: a character height) of a point size at `dpi`.
int FontHeightForPoints(int points, int dpi);

// The screen's logical dots per inch, read once.
int ScreenDpiX();
int ScreenDpiY();
int ScaleX(int designUnits);
int ScaleY(int designUnits);

// Puts another screen resolution in place for the lifetime of the object
// (tests of layouts at high resolution).
class CScopedScreenDpi {
public:
    CScopedScreenDpi(int dpiX, int dpiY);
    ~CScopedScreenDpi();
    CScopedScreenDpi(const CScopedScreenDpi&) = delete;
    CScopedScreenDpi& operator=(const CScopedScreenDpi&) = delete;

private:
    int m_previousX;
    int m_previousY;
};

// The system's answer, made by the build's own half of this file.
int QuerySystemDpi(bool vertical);
