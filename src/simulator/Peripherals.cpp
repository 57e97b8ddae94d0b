#include "Peripherals.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>

namespace sim {

namespace {

constexpr int kSuccess = 0;
constexpr int kIllegal = 106;
constexpr int kNoExist = 109;

struct DisplayMode {
    int rows;
    int widths[3];
};

constexpr DisplayMode kModes[] = {
    {2, {20, 20, 0}},
    {3, {22, 22, 22}},
    {2, {9, 22, 0}},
    {2, {10, 22, 0}},
};

bool ValidSlot(int slot) {
    return slot >= 1 && slot <= BitmapStore::kSlots;
}

// Reads a BMP or GIF as a monochrome image. Other formats are refused even when Qt could read
// them: the printer's firmware only knows these two.
int LoadMono(const QString& path, int maxWidth, QImage& out) {
    const QFileInfo fi(path);
    if (path.isEmpty() || !fi.exists() || !fi.isFile())
        return kNoExist;
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format().toLower();
    if (format != "bmp" && format != "gif")
        return kIllegal;
    const QImage img = reader.read();
    if (img.isNull() || img.width() <= 0 || img.height() <= 0)
        return kIllegal;
    if (maxWidth > 0 && img.width() > maxWidth)
        return kIllegal;
    out = img.convertToFormat(QImage::Format_Mono, Qt::MonoOnly | Qt::ThresholdDither);
    return kSuccess;
}

} // namespace

// ---- CustomerDisplay ----

CustomerDisplay::CustomerDisplay(QObject* parent) : QObject(parent) {
    SetMode(1);
}

bool CustomerDisplay::SetMode(int mode) {
    if (mode < 1 || mode > 4)
        return false;
    m_mode = mode;
    m_rows = QStringList(kModes[mode - 1].rows, QString());
    m_shownSlot = 0;
    m_shownImage = QImage();
    emit changed();
    return true;
}

int CustomerDisplay::Mode() const {
    return m_mode;
}

int CustomerDisplay::RowCount() const {
    return kModes[m_mode - 1].rows;
}

int CustomerDisplay::Width(int row) const {
    if (row < 1 || row > RowCount())
        return 0;
    return kModes[m_mode - 1].widths[row - 1];
}

void CustomerDisplay::Clear() {
    for (QString& r : m_rows)
        r.clear();
    m_shownSlot = 0;
    m_shownImage = QImage();
    emit changed();
}

bool CustomerDisplay::PrintText(int row, const QString& text) {
    if (row < 1 || row > RowCount())
        return false;
    m_rows[row - 1] = text.left(Width(row));
    emit changed();
    return true;
}

QStringList CustomerDisplay::Rows() const {
    return m_rows;
}

int CustomerDisplay::LoadBitmap(int slot, const QString& path) {
    if (!ValidSlot(slot))
        return kIllegal;
    QImage img;
    const int rc = LoadMono(path, 0, img);
    if (rc == kSuccess)
        m_bitmaps[slot - 1] = img;
    return rc;
}

int CustomerDisplay::EraseBitmap(int slot) {
    if (!ValidSlot(slot))
        return kIllegal;
    m_bitmaps[slot - 1] = QImage();
    if (m_shownSlot == slot) {
        m_shownSlot = 0;
        m_shownImage = QImage();
    }
    if (m_standbySlot == slot)
        m_standbySlot = 0;
    emit changed();
    return kSuccess;
}

int CustomerDisplay::ShowBitmap(int x, int y, int slot) {
    if (x < 0 || y < 0 || !HasBitmap(slot))
        return kIllegal;
    m_shownSlot = slot;
    m_shownPos = QPoint(x, y);
    m_shownImage = m_bitmaps[slot - 1];
    emit changed();
    return kSuccess;
}

int CustomerDisplay::ShowBitmapFile(int x, int y, const QString& path) {
    if (x < 0 || y < 0)
        return kIllegal;
    QImage img;
    const int rc = LoadMono(path, 0, img);
    if (rc != kSuccess)
        return rc;
    m_shownSlot = 0;
    m_shownPos = QPoint(x, y);
    m_shownImage = img;
    emit changed();
    return kSuccess;
}

void CustomerDisplay::SetStandbyText(const QString& text) {
    m_standbyText = text;
    emit changed();
}

int CustomerDisplay::SetStandbyBitmap(int x, int y, int slot) {
    if (x < 0 || y < 0 || !HasBitmap(slot))
        return kIllegal;
    m_standbySlot = slot;
    m_standbyPos = QPoint(x, y);
    emit changed();
    return kSuccess;
}

QString CustomerDisplay::StandbyText() const {
    return m_standbyText;
}

int CustomerDisplay::ShownBitmap() const {
    return m_shownSlot;
}

void CustomerDisplay::ShowTwoLines(const QString& top, const QString& bottom) {
    {
        const QSignalBlocker once(this); // one announcement for the three steps
        Clear();
        PrintText(1, top);
        PrintText(2, bottom);
    }
    emit changed();
}

QPoint CustomerDisplay::ShownBitmapPos() const {
    return m_shownPos;
}

QImage CustomerDisplay::ShownImage() const {
    return m_shownImage;
}

int CustomerDisplay::StandbyBitmap() const {
    return m_standbySlot;
}

bool CustomerDisplay::HasBitmap(int slot) const {
    return ValidSlot(slot) && !m_bitmaps[slot - 1].isNull();
}

// ---- CashDrawer ----

CashDrawer::CashDrawer(QObject* parent) : QObject(parent) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &CashDrawer::Close);
}

void CashDrawer::Open() {
    if (m_open)
        return; // the solenoid fires again, the drawer is already out
    m_open = true;
    if (m_autoCloseMs > 0)
        m_timer.start(m_autoCloseMs);
    emit opened();
}

void CashDrawer::Close() {
    m_timer.stop();
    if (!m_open)
        return;
    m_open = false;
    emit closed();
}

bool CashDrawer::IsOpen() const {
    return m_open;
}

void CashDrawer::SetAutoCloseMs(int ms) {
    m_autoCloseMs = std::max(ms, 0);
}

int CashDrawer::AutoCloseMs() const {
    return m_autoCloseMs;
}

bool CashDrawer::WaitClosed(int timeoutMs) {
    if (!m_open)
        return true;
    if (timeoutMs <= 0)
        return false;
    QEventLoop loop;
    QTimer guard;
    guard.setSingleShot(true);
    connect(&guard, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(this, &CashDrawer::closed, &loop, &QEventLoop::quit);
    guard.start(timeoutMs);
    loop.exec();
    return !m_open;
}

// ---- BitmapStore ----

int BitmapStore::Load(int slot, const QString& path) {
    if (!ValidSlot(slot))
        return kIllegal;
    QImage img;
    const int rc = LoadMono(path, kMaxWidth, img);
    if (rc == kSuccess)
        m_slots[slot - 1] = img;
    return rc;
}

int BitmapStore::Erase(int slot) {
    if (!ValidSlot(slot))
        return kIllegal;
    m_slots[slot - 1] = QImage();
    return kSuccess;
}

bool BitmapStore::Has(int slot) const {
    return ValidSlot(slot) && !m_slots[slot - 1].isNull();
}

QImage BitmapStore::Get(int slot) const {
    return ValidSlot(slot) ? m_slots[slot - 1] : QImage();
}

} // namespace sim
