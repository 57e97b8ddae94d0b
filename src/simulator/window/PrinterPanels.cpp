#include "PrinterPanels.h"

#include "FiscalMemory.h"
#include "Money.h"
#include "SimulatedFiscalPrinter.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

// ---------------------------------------------------------------- lamp

QColor PrinterLamp::Color(Level level) {
    switch (level) {
    case Level::Ok:
        return {40, 200, 60};
    case Level::Warning:
        return {240, 170, 0};
    case Level::Alarm:
        return {225, 30, 30};
    case Level::Off:
        break;
    }
    return {150, 150, 150};
}

PrinterLamp::PrinterLamp(const QString& caption, QWidget* parent) : QWidget(parent), m_caption(caption) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PrinterLamp::SetLevel(Level level, const QString& text) {
    if (level == m_level && text == m_text)
        return;
    m_level = level;
    m_text = text;
    setToolTip(m_caption + QStringLiteral(": ") + text);
    update();
}

QString PrinterLamp::Text() const {
    return m_text;
}

QSize PrinterLamp::sizeHint() const {
    const QFontMetrics fm(font());
    return {fm.horizontalAdvance(m_caption + QStringLiteral(": near end")) + 30,
            std::max(18, fm.height() + 4)};
}

void PrinterLamp::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const int d = std::min(14, height() - 4);
    const QRectF lamp(2, (height() - d) / 2.0, d, d);
    p.setPen(QPen(Qt::black, 1));
    p.setBrush(Color(m_level));
    p.drawEllipse(lamp);
    p.setPen(palette().color(QPalette::WindowText));
    p.drawText(QRectF(lamp.right() + 6, 0, width() - lamp.right() - 6, height()), Qt::AlignVCenter,
               m_caption + QStringLiteral(": ") + m_text);
}

// ---------------------------------------------------------------- customer display

namespace {
constexpr int kCellW = 12, kCellH = 22, kBorder = 8;
const QColor kGlass(12, 24, 20);
const QColor kGlow(80, 255, 200);
} // namespace

CustomerDisplayView::CustomerDisplayView(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("CustomerDisplayView"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_rows = QStringList(2, QString());
    m_widths = {20, 20};
}

void CustomerDisplayView::Show(const sim::CustomerDisplay& display) {
    m_rows = display.Rows();
    m_widths.clear();
    for (int r = 1; r <= display.RowCount(); ++r)
        m_widths.append(display.Width(r));
    m_image = display.ShownImage();
    m_imagePos = display.ShownBitmapPos();
    updateGeometry();
    update();
}

QSize CustomerDisplayView::sizeHint() const {
    const int columns = m_widths.isEmpty() ? 20 : *std::max_element(m_widths.begin(), m_widths.end());
    return {columns * kCellW + 2 * kBorder, int(m_widths.size()) * kCellH + 2 * kBorder};
}

void CustomerDisplayView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), kGlass);
    QFont f = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    f.setPixelSize(kCellH - 6);
    p.setFont(f);
    for (int r = 0; r < m_widths.size(); ++r) {
        const int y = kBorder + r * kCellH;
        for (int c = 0; c < m_widths[r]; ++c) { // the unlit cells of the glass
            p.fillRect(QRect(kBorder + c * kCellW + 1, y + 2, kCellW - 2, kCellH - 4), QColor(22, 40, 34));
        }
        p.setPen(kGlow);
        const QString text = m_rows.value(r);
        for (int c = 0; c < std::min<qsizetype>(text.size(), m_widths[r]); ++c)
            p.drawText(QRect(kBorder + c * kCellW, y, kCellW, kCellH), Qt::AlignCenter, QString(text[c]));
    }
    if (!m_image.isNull()) { // one display dot for one pixel, cut to the glass
        const QRect glass = rect().adjusted(kBorder, kBorder, -kBorder, -kBorder);
        QImage lit = m_image.convertToFormat(QImage::Format_ARGB32);
        QImage shown = lit.copy(QRect(QPoint(0, 0), glass.size() - QSize(m_imagePos.x(), m_imagePos.y())));
        p.setClipRect(glass);
        for (int y = 0; y < shown.height(); ++y)
            for (int x = 0; x < shown.width(); ++x)
                if (qGray(shown.pixel(x, y)) < 128)
                    p.fillRect(
                        QRect(glass.left() + m_imagePos.x() + x, glass.top() + m_imagePos.y() + y, 1, 1),
                        kGlow);
    }
}

// ---------------------------------------------------------------- status

namespace {

QGroupBox* Group(const QString& title, QWidget* parent) {
    auto* g = new QGroupBox(title, parent);
    return g;
}

PrinterLamp::Level PaperLamp(sim::PaperLevel level) {
    return level == sim::PaperLevel::Ok        ? PrinterLamp::Level::Ok
           : level == sim::PaperLevel::NearEnd ? PrinterLamp::Level::Warning
                                               : PrinterLamp::Level::Alarm;
}

QString PaperText(sim::PaperLevel level) {
    return level == sim::PaperLevel::Ok        ? QStringLiteral("ok")
           : level == sim::PaperLevel::NearEnd ? QStringLiteral("near end")
                                               : QStringLiteral("empty");
}

} // namespace

PrinterStatusPanel::PrinterStatusPanel(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("PrinterStatusPanel"));
    auto* display = Group(QStringLiteral("Customer display"), this);
    displayView = new CustomerDisplayView(display);
    lblDisplayMode = new QLabel(display);
    lblDisplayMode->setObjectName(QStringLiteral("lblDisplayMode"));
    auto* dl = new QVBoxLayout(display);
    dl->addWidget(displayView, 0, Qt::AlignHCenter);
    dl->addWidget(lblDisplayMode);

    auto* drawer = Group(QStringLiteral("Cash drawer"), this);
    lmpDrawer = new PrinterLamp(QStringLiteral("Drawer"), drawer);
    cmdCloseDrawer = new QPushButton(QStringLiteral("Close drawer"), drawer);
    cmdCloseDrawer->setObjectName(QStringLiteral("cmdCloseDrawer"));
    auto* drl = new QHBoxLayout(drawer);
    drl->addWidget(lmpDrawer, 1);
    drl->addWidget(cmdCloseDrawer);

    auto* sensors = Group(QStringLiteral("Sensors"), this);
    lmpCover = new PrinterLamp(QStringLiteral("Cover"), sensors);
    lmpReceiptPaper = new PrinterLamp(QStringLiteral("Receipt paper"), sensors);
    lmpJournalPaper = new PrinterLamp(QStringLiteral("Journal paper"), sensors);
    lmpOnline = new PrinterLamp(QStringLiteral("Line"), sensors);
    lmpPower = new PrinterLamp(QStringLiteral("Power"), sensors);
    auto* sl = new QGridLayout(sensors);
    const QList<PrinterLamp*> lamps{lmpCover, lmpReceiptPaper, lmpJournalPaper, lmpOnline, lmpPower};
    for (int i = 0; i < lamps.size(); ++i)
        sl->addWidget(lamps[i], i / 2, i % 2);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(display);
    layout->addWidget(drawer);
    layout->addWidget(sensors);

    connect(cmdCloseDrawer, &QPushButton::clicked, this, &PrinterStatusPanel::closeDrawerRequested);
}

void PrinterStatusPanel::ShowDrawer(bool open) {
    lmpDrawer->SetLevel(open ? PrinterLamp::Level::Warning : PrinterLamp::Level::Ok,
                        open ? QStringLiteral("open") : QStringLiteral("closed"));
    cmdCloseDrawer->setEnabled(open);
}

void PrinterStatusPanel::Show(const SimulatedFiscalPrinter& printer) {
    const sim::CustomerDisplay& d = printer.Display();
    displayView->Show(d);
    QStringList widths;
    for (int r = 1; r <= d.RowCount(); ++r)
        widths << QString::number(d.Width(r));
    QString mode =
        QStringLiteral("Mode %1: %2 rows (%3)").arg(d.Mode()).arg(d.RowCount()).arg(widths.join(u'+'));
    if (d.ShownBitmap() > 0)
        mode += QStringLiteral(", bitmap %1 on show").arg(d.ShownBitmap());
    if (!d.StandbyText().isEmpty())
        mode += QStringLiteral(", standby \"%1\"").arg(d.StandbyText());
    lblDisplayMode->setText(mode);

    const sim::Machine& m = printer.Hardware();
    lmpCover->SetLevel(m.CoverOpen() ? PrinterLamp::Level::Alarm : PrinterLamp::Level::Ok,
                       m.CoverOpen() ? QStringLiteral("open") : QStringLiteral("closed"));
    lmpReceiptPaper->SetLevel(PaperLamp(m.ReceiptPaper()), PaperText(m.ReceiptPaper()));
    lmpJournalPaper->SetLevel(PaperLamp(m.JournalPaper()), PaperText(m.JournalPaper()));
    lmpOnline->SetLevel(m.Offline() ? PrinterLamp::Level::Alarm : PrinterLamp::Level::Ok,
                        m.Offline() ? QStringLiteral("offline") : QStringLiteral("online"));
    lmpPower->SetLevel(m.PowerOff() ? PrinterLamp::Level::Alarm : PrinterLamp::Level::Ok,
                       m.PowerOff() ? QStringLiteral("off") : QStringLiteral("on"));
}

// ---------------------------------------------------------------- fiscal memory

namespace {

QString OffsetText(qint64 seconds) {
    if (seconds == 0)
        return QStringLiteral("no offset");
    const QString sign = seconds < 0 ? QStringLiteral("-") : QStringLiteral("+");
    qint64 s = std::abs(seconds);
    const qint64 days = s / 86400;
    s %= 86400;
    QString out = sign;
    if (days)
        out += QString::number(days) + QStringLiteral("d ");
    return out + QStringLiteral("%1:%2:%3")
                     .arg(s / 3600, 2, 10, QLatin1Char('0'))
                     .arg(s / 60 % 60, 2, 10, QLatin1Char('0'))
                     .arg(s % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

FiscalMemoryPanel::FiscalMemoryPanel(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("FiscalMemoryPanel"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    const auto row = [&](const QString& caption, const char* name) {
        auto* value = new QLabel(this);
        value->setObjectName(QLatin1String(name));
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setWordWrap(true);
        const int r = grid->rowCount();
        grid->addWidget(new QLabel(caption, this), r, 0, Qt::AlignTop);
        grid->addWidget(value, r, 1);
        return value;
    };
    lblDay = row(QStringLiteral("Fiscal day"), "lblDay");
    lblZCount = row(QStringLiteral("Z reports"), "lblZCount");
    lblReceiptNumber = row(QStringLiteral("Next receipt"), "lblReceiptNumber");
    lblDocuments = row(QStringLiteral("Journal documents"), "lblDocuments");
    lblDayTotal = row(QStringLiteral("Day total"), "lblDayTotal");
    lblGrandTotal = row(QStringLiteral("Grand total"), "lblGrandTotal");
    lblVatTable = row(QStringLiteral("VAT table"), "lblVatTable");
    lblClock = row(QStringLiteral("Printer clock"), "lblClock");
    lblRemaining = row(QStringLiteral("Z records left"), "lblRemaining");
    grid->setColumnStretch(1, 1);
    m_actions = new QHBoxLayout;
    m_actions->setObjectName(QStringLiteral("layFiscalMemoryActions"));
    grid->addLayout(m_actions, grid->rowCount(), 0, 1, 2);
}

void FiscalMemoryPanel::Show(const SimulatedFiscalPrinter& printer) {
    const sim::IFiscalMemory& m = printer.Memory();
    const bool printing = printer.CurrentReceipt() != nullptr;
    if (m.DayOpened())
        lblDay->setText(QStringLiteral("open since ") +
                        m.DayOpenedAt().toString(QStringLiteral("dd/MM/yyyy HH:mm")));
    else
        lblDay->setText(printing ? QStringLiteral("opening with the receipt in progress")
                                 : QStringLiteral("closed"));
    lblZCount->setText(QString::number(m.GrandCounters().zReports));
    lblReceiptNumber->setText(
        QStringLiteral("%1 of day %2").arg(sim::NextReceiptNumber(m)).arg(sim::CurrentDayNumber(m)));
    lblDocuments->setText(QString::number(m.JournalCount()));
    lblDayTotal->setText(sim::MoneyText(m.DayTotals().Sum(sim::TotalKind::Net)));
    lblGrandTotal->setText(sim::MoneyText(m.GrandTotals().Sum(sim::TotalKind::Net)));
    QStringList vat;
    for (int i = 0; i < m.VatRates().size(); ++i)
        vat << QStringLiteral("%1 %2").arg(QChar(u'A' + i)).arg(sim::PercentText(m.VatRates()[i]));
    lblVatTable->setText(vat.join(QStringLiteral(", ")));
    lblClock->setText(printer.Now().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")) + QStringLiteral(" (") +
                      OffsetText(printer.ClockOffsetSeconds()) + u')');
    lblRemaining->setText(QString::number(m.Remaining()));
}
