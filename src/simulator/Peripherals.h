#pragma once

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <array>

namespace sim {

// Customer display: modes 1 2x20, 2 3x22, 3 1x9+1x22, 4 1x10+1x22. Every change that shows is
// announced by changed().
class CustomerDisplay : public QObject {
    Q_OBJECT
public:
    explicit CustomerDisplay(QObject* parent = nullptr);
    bool SetMode(int mode); // false for an unknown mode
    int Mode() const;
    int RowCount() const;
    int Width(int row) const; // row 1-based
    void Clear();
    // row 1-based; false beyond the mode's rows; text cut to the row's width
    bool PrintText(int row, const QString& text);
    QStringList Rows() const;
    // Display bitmaps (slots 1..10) load/erase/show, "now" (show a file directly), standby text and bitmap.
    // OPOS result: 0, 109 no such file, 106 unreadable / bad slot
    int LoadBitmap(int slot, const QString& path);
    int EraseBitmap(int slot);              // 0 or 106
    int ShowBitmap(int x, int y, int slot); // 0 or 106 (empty slot)
    int ShowBitmapFile(int x, int y, const QString& path);
    void SetStandbyText(const QString& text);
    int SetStandbyBitmap(int x, int y, int slot);
    QString StandbyText() const;
    int ShownBitmap() const; // slot on show, 0 none
    // What the printer shows by itself during a receipt (two rows).
    void ShowTwoLines(const QString& top, const QString& bottom);

    // Where the shown bitmap sits, the picture on show (also one shown from a file), the standby slot.
    QPoint ShownBitmapPos() const;
    QImage ShownImage() const;
    int StandbyBitmap() const; // slot, 0 none
    bool HasBitmap(int slot) const;

signals:
    void changed();

private:
    int m_mode = 1;
    QStringList m_rows;
    std::array<QImage, 10> m_bitmaps;
    int m_shownSlot = 0;
    QPoint m_shownPos;
    QImage m_shownImage;
    QString m_standbyText;
    int m_standbySlot = 0;
    QPoint m_standbyPos;
};

// The cash drawer: opened by command, closes by itself after autoCloseMs (default 5000) on the event loop.
class CashDrawer : public QObject {
    Q_OBJECT
public:
    explicit CashDrawer(QObject* parent = nullptr);
    void Open();
    void Close();
    bool IsOpen() const;
    void SetAutoCloseMs(int ms); // takes effect at the next opening; 0 or less: no automatic closing
    int AutoCloseMs() const;
    // Waits with the event loop running until the drawer is closed, at most timeoutMs; true if closed.
    bool WaitClosed(int timeoutMs);
signals:
    void closed();
    void opened();

private:
    bool m_open = false;
    int m_autoCloseMs = 5000; // 0: closes only by command
    QTimer m_timer;
};

// Printer bitmaps: slots 1..10, monochrome, at most 576 dots wide, loaded from BMP or GIF.
class BitmapStore {
public:
    static constexpr int kSlots = 10;
    static constexpr int kMaxWidth = 576;
    int Load(int slot,
             const QString& path); // 0; 109 no such file; 106 not an image, wider than 576, or bad slot
    int Erase(int slot);           // 0; 106 bad slot
    bool Has(int slot) const;
    QImage Get(int slot) const; // Format_Mono

private:
    std::array<QImage, kSlots> m_slots;
};

} // namespace sim
