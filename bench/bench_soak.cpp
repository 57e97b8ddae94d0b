// A long session through the bench's core on the simulated printer: 10,000 fiscal receipts of mixed
// content (items, item voids, discounts and surcharges of both kinds, refunds, subtotal discounts,
// payments in several tenders with change and not-paid parts, voided receipts), non-fiscal
// documents, X and Z reports, some receipts printed asynchronously, and faults injected through
// DirectIO 9999 and cleared (cover, paper, offline, a failure on demand, a power cut).
//
// The soak keeps its own books from the printer's rules and, at every Z report and at the end,
// compares them with what the printer answers through the wrapper: day and grand totals, the day's
// tenders, refunds and not-paid amounts, the document counters. Any difference, or any call that
// answers other than the rules say, ends the program with status 1.
//
// The last line gives the figures:
//   soak: N receipts on MODEL in S s, R receipts/s; resident A MB at 1000, B MB at N; ...
// Usage: bench_soak [receipts] [ZorvaneFPU|Tessorim]   (default 10000 on ZorvaneFPU)
#include "BenchSupport.h"
#include "FiscalMemoryFile.h"
#include "OposAll.h"
#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchCore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <random>
#include <utility>
#include <vector>

using namespace OposAll;

namespace {

constexpr Amount Cent = 100; // ten-thousandths

// Heap in use, in MB: what the objects alive hold, whatever the allocator keeps resident.
double HeapInUseMB() {
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / (1024 * 1024);
}

// Rounds ten-thousandths to whole cents, halves away from zero: the printer's precision.
Amount Cents(__int128 tenThousandths) {
    const bool negative = tenThousandths < 0;
    const __int128 magnitude = negative ? -tenThousandths : tenThousandths;
    const __int128 rounded = (magnitude + Cent / 2) / Cent * Cent;
    return static_cast<Amount>(negative ? -rounded : rounded);
}

QString Money(Amount a) {
    return QString::number(a / Cent);
}

// The log of the soak under way: its last lines go out with a failure.
const clsBenchLog* g_log = nullptr;

[[noreturn]] void Fail(const QString& what) {
    if (g_log)
        for (qsizetype i = std::max<qsizetype>(0, g_log->LineCount() - 30); i < g_log->LineCount(); ++i)
            std::fprintf(stderr, "  %s\n", qPrintable(g_log->Line(i)));
    std::fprintf(stderr, "soak: %s\n", qPrintable(what));
    std::exit(1);
}

// What the soak expects the printer to hold.
struct Books {
    Amount dayNet = 0, grandNet = 0, dayRefund = 0, dayNotPaid = 0;
    std::array<Amount, 12> dayTenders{}; // tenders 1..11
    int fiscal = 0, voided = 0, nonFiscal = 0, zReports = 0, restarts = 0;
};

// What the whole run did, for the last line.
struct Run {
    int fiscal = 0, voided = 0, nonFiscal = 0, faults = 0;
};

struct Item {
    Amount price;
    int32_t vat;
    Amount adjustment = 0; // what its discounts and surcharges add (negative for discounts)
    bool voided = false;
};

class Soak {
public:
    Soak(const QString& model, unsigned seed)
        : m_model(model), m_core(std::in_place, m_printer, [](const QString&) { return false; }),
          m_w(m_core->FprtWrapper()), m_random(seed) {
        g_log = &m_core->Log();
        // The fiscal memory in its file, as the desktop program keeps it.
        m_printer.SetFiscalMemoryFactory(sim::PersistentFiscalMemories(
            [](const QString& text) { std::fprintf(stderr, "soak: %s\n", qPrintable(text)); }));
    }

    void Open() {
        m_core->OpenClaimEnable(m_model);
        if (m_printer.ResultCode() != 0)
            Fail(QStringLiteral("the printer does not open"));
        // Queued output prints at once: the soak measures the bench, not the paper's speed.
        Debug(QStringLiteral("print time 0"));
    }

    void Receipt(int index) {
        const bool async = index % 100 == 7;
        if (async)
            m_w.SetAsyncMode(true);
        Expect(m_w.BeginFiscalReceipt(true), 0, "BeginFiscalReceipt");
        m_items.clear();
        m_rates = {};
        m_refunded = 0;
        Amount total = 0;

        const int fault = index % 50 == 13 ? (index / 50) % 6 : -1;
        const int items = Pick(1, 8);
        for (int i = 0; i < items; ++i) {
            if (fault >= 0 && i == items / 2) {
                const std::optional<Amount> sold = InjectFault(fault);
                // A power cut voided the receipt: the printer is back in MONITOR.
                if (!sold)
                    return;
                total += *sold;
            }
            total += SellItem();
            const int roll = Pick(0, 99);
            if (roll < 12)
                total += AdjustLastItem(Pick(1, 4));
            else if (roll < 20 && m_items.size() > 1)
                total += VoidAnItem();
        }
        if (Pick(0, 99) < 10)
            Expect(m_w.PrintRecMessage(QStringLiteral("Grazie e arrivederci")), 0, "PrintRecMessage");
        if (Pick(0, 99) < 10)
            total += Refund(total);
        if (Pick(0, 99) < 8)
            total += SubtotalDiscount(total);
        if (Pick(0, 99) < 20)
            Expect(m_w.PrintRecSubtotal(total), 0, "PrintRecSubtotal");

        if (total == 0 || Pick(0, 99) < 3) {
            Expect(m_w.PrintRecVoid(QStringLiteral("ANNULLO")), 0, "PrintRecVoid");
            EndVoided();
        } else {
            Pay(total);
            Drain();
            Expect(m_w.EndFiscalReceipt(false), 0, "EndFiscalReceipt");
            ++m_books.fiscal;
            ++m_run.fiscal;
            m_books.dayRefund += m_refunded;
            m_books.dayNet += total;
            m_books.grandNet += total;
        }
        if (async)
            m_w.SetAsyncMode(false);
    }

    void NonFiscal() {
        Expect(m_w.BeginNonFiscal(), 0, "BeginNonFiscal");
        for (int i = Pick(1, 5); i > 0; --i)
            Expect(m_w.PrintNormal(FPTR_S_RECEIPT, QStringLiteral("Riga non fiscale %1").arg(i)), 0,
                   "PrintNormal");
        Expect(m_w.EndNonFiscal(), 0, "EndNonFiscal");
        ++m_books.nonFiscal;
        ++m_run.nonFiscal;
    }

    void XReport() { Expect(m_w.PrintXReport(), 0, "PrintXReport"); }

    void ZReport() {
        Compare();
        Expect(m_w.PrintZReport(), 0, "PrintZReport");
        ++m_books.zReports;
        const int zReports = m_books.zReports, restarts = m_books.restarts;
        const Amount grand = m_books.grandNet;
        m_books = Books{};
        m_books.zReports = zReports;
        m_books.restarts = restarts;
        m_books.grandNet = grand;
    }

    // The printer's answers against the soak's books.
    void Compare() {
        Check(FPTR_GD_DAILY_TOTAL, 0, m_books.dayNet, "day total");
        Check(FPTR_GD_GRAND_TOTAL, 0, m_books.grandNet, "grand total");
        Check(FPTR_GD_REFUND, 0, m_books.dayRefund, "day's refunds");
        Check(FPTR_GD_NOT_PAID, 0, m_books.dayNotPaid, "day's not-paid amounts");
        for (int tender = 1; tender <= 11; ++tender)
            Check(FPTR_GD_TENDER, tender, m_books.dayTenders[static_cast<size_t>(tender)],
                  qPrintable(QStringLiteral("tender %1").arg(tender)));
        CheckCount(FPTR_GD_FISCAL_REC, m_books.fiscal, "fiscal receipts");
        CheckCount(FPTR_GD_FISCAL_REC_VOID, m_books.voided, "voided receipts");
        CheckCount(FPTR_GD_NONFISCAL_DOC, m_books.nonFiscal, "non-fiscal documents");
        CheckCount(FPTR_GD_Z_REPORT, m_books.zReports, "Z reports");
        CheckCount(FPTR_GD_RESTART, m_books.restarts, "restarts");
    }

    const Books& Kept() const { return m_books; }
    const Run& Done() const { return m_run; }

    // Frees the bench (its log, the macro store), then the printer (its paper, its journal), and
    // gives the heap each held, in MB. The soak is over after it.
    std::pair<double, double> Release() {
        const double all = HeapInUseMB();
        g_log = nullptr;
        m_core.reset();
        const double printer = HeapInUseMB();
        m_owned.reset();
        return {all - printer, printer - HeapInUseMB()};
    }
    const clsBenchLog& Log() const { return m_core->Log(); }
    const SimulatedFiscalPrinter& Printer() const { return m_printer; }

private:
    int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

    void Expect(int32_t rc, int32_t expected, const char* call, int32_t extended = 0) {
        if (rc == expected && (extended == 0 || m_printer.ResultCodeExtended() == extended))
            return;
        Fail(QStringLiteral("%1 answered %2/%3 (%4), the rules say %5/%6")
                 .arg(QLatin1String(call))
                 .arg(rc)
                 .arg(m_printer.ResultCodeExtended())
                 .arg(m_printer.ErrorString())
                 .arg(expected)
                 .arg(extended));
    }

    void Check(int32_t item, int32_t option, Amount expected, const char* what) {
        QString data;
        Expect(m_w.GetData(item, option, data), 0, "GetData");
        if (data != Money(expected))
            Fail(QStringLiteral("%1: the printer says %2, the soak counted %3 (hundredths)")
                     .arg(QLatin1String(what), data, Money(expected)));
    }

    void CheckCount(int32_t item, int expected, const char* what) {
        QString data;
        Expect(m_w.GetData(item, 0, data), 0, "GetData");
        if (data != QString::number(expected))
            Fail(QStringLiteral("%1: the printer says %2, the soak counted %3")
                     .arg(QLatin1String(what), data)
                     .arg(expected));
    }

    int32_t Debug(const QString& command) {
        int32_t cmd = 9999;
        DirectIOData data{};
        QString text = command;
        const int32_t rc = m_w.DirectIO(cmd, data, text);
        Expect(rc, 0, "DirectIO 9999");
        return rc;
    }

    // A price of whole cents, now and then as quantity times unit price.
    Amount SellItem() {
        static const int32_t vats[] = {1, 2, 3, 4, 10001, 10002};
        const int32_t vatInfo = vats[Pick(0, 5)];
        const int32_t rate = vatInfo > 10000 ? vatInfo - 10000 : vatInfo; // departments 1A, 2B
        Amount unitPrice = 0, price = Pick(1, 9999) * Cent;
        int32_t quantity = 0;
        if (Pick(0, 9) == 0) {
            quantity = Pick(2, 5) * 1000;
            unitPrice = Pick(1, 2000) * Cent;
            price = unitPrice * (quantity / 1000);
        }
        Expect(m_w.PrintRecItem(QStringLiteral("Articolo"), price, quantity, vatInfo, unitPrice,
                                quantity ? QStringLiteral("pz") : QString()),
               0, "PrintRecItem");
        m_items.push_back({price, vatInfo});
        m_rates[static_cast<size_t>(rate)] += price;
        return price;
    }

    Item* LastItem() {
        for (auto it = m_items.rbegin(); it != m_items.rend(); ++it)
            if (!it->voided)
                return &*it;
        return nullptr;
    }

    static int32_t Rate(int32_t vatInfo) { return vatInfo > 10000 ? vatInfo - 10000 : vatInfo; }

    // Types 1/2 amount discount/surcharge, 3/4 percentage, on the last item not voided, at its VAT.
    Amount AdjustLastItem(int32_t type) {
        Item* item = LastItem();
        if (!item)
            return 0;
        Amount amount = 0, change = 0;
        if (type <= 2) {
            amount = Pick(1, static_cast<int>(std::min<Amount>(item->price / Cent, 500))) * Cent;
            if (type == 1 && amount >= item->price + item->adjustment)
                return 0;
            change = type == 1 ? -amount : amount;
        } else {
            amount = Pick(1, 50) * 100 * Cent; // 1 % to 50 %
            const Amount part = Cents(__int128(item->price) * amount / (100 * 100 * Cent));
            if (part == 0 || (type == 3 && part >= item->price + item->adjustment))
                return 0;
            change = type == 3 ? -part : part;
        }
        Expect(m_w.PrintRecItemAdjustment(
                   type, type % 2 ? QStringLiteral("Sconto") : QStringLiteral("Maggiorazione"), amount,
                   item->vat),
               0, "PrintRecItemAdjustment");
        item->adjustment += change;
        m_rates[static_cast<size_t>(Rate(item->vat))] += change;
        return change;
    }

    // Voids an earlier item by its price and VAT: the printer reverses the latest match, and the
    // adjustments standing on it go with it.
    Amount VoidAnItem() {
        const Item& chosen = m_items[static_cast<size_t>(Pick(0, static_cast<int>(m_items.size()) - 1))];
        if (chosen.voided)
            return 0;
        Item* match = nullptr;
        for (auto it = m_items.rbegin(); it != m_items.rend() && !match; ++it)
            if (!it->voided && it->price == chosen.price && it->vat == chosen.vat)
                match = &*it;
        // Its rate may not go below zero, and a refund is never voided here.
        const Amount reversed = match->price + match->adjustment;
        Expect(m_w.PrintRecItemVoid(QStringLiteral("Articolo"), match->price, 0, match->vat, 0, QString()), 0,
               "PrintRecItemVoid");
        match->voided = true;
        m_rates[static_cast<size_t>(Rate(match->vat))] -= reversed;
        return -reversed;
    }

    // A refund of part of one rate's running total.
    Amount Refund(Amount total) {
        for (int32_t rate = 1; rate <= 4; ++rate) {
            const Amount held = m_rates[static_cast<size_t>(rate)];
            if (held < 2 * Cent || total < 2 * Cent)
                continue;
            const Amount amount = Pick(1, static_cast<int>(std::min<Amount>(held, total) / Cent / 2)) * Cent;
            Expect(m_w.PrintRecRefund(QStringLiteral("Reso"), amount, rate), 0, "PrintRecRefund");
            m_rates[static_cast<size_t>(rate)] -= amount;
            m_refunded += amount;
            return -amount;
        }
        return 0;
    }

    // An amount discount on the subtotal, spread by the printer over the rates.
    Amount SubtotalDiscount(Amount total) {
        if (total < 10 * Cent)
            return 0;
        const Amount amount = Pick(1, static_cast<int>(total / Cent / 10)) * Cent;
        Expect(m_w.PrintRecSubtotalAdjustment(1, QStringLiteral("Sconto cassa"), amount), 0,
               "PrintRecSubtotalAdjustment");
        return -amount;
    }

    // One to three payments: non-cash tenders for exact parts, sometimes a part not paid, and cash
    // last, rounded up to the next five euros, with change.
    void Pay(Amount total) {
        Amount due = total;
        bool tendering = false;
        for (int parts = Pick(0, 2); parts > 0 && due > 2 * Cent; --parts) {
            const int tender = Pick(2, 11);
            const Amount part = Pick(1, static_cast<int>(due / Cent / 2)) * Cent;
            Expect(m_w.PrintRecTotal(total, part, QString::number(tender - 1)), 0, "PrintRecTotal");
            m_books.dayTenders[static_cast<size_t>(tender)] += part;
            due -= part;
            tendering = true;
        }
        if (due > 2 * Cent && Pick(0, 9) == 0) {
            if (!tendering)
                Expect(m_w.PrintRecTotal(total, 0, QStringLiteral("0")), 0, "PrintRecTotal");
            const Amount part = Pick(1, static_cast<int>(due / Cent / 2)) * Cent;
            Expect(m_w.PrintRecNotPaid(QStringLiteral("Non pagato"), part), 0, "PrintRecNotPaid");
            m_books.dayNotPaid += part;
            due -= part;
        }
        const Amount fiveEuros = 500 * Cent;
        const Amount handed = Pick(0, 1) ? due : (due + fiveEuros - 1) / fiveEuros * fiveEuros;
        Expect(m_w.PrintRecTotal(total, handed, QStringLiteral("0")), 0, "PrintRecTotal");
        m_books.dayTenders[1] += due; // the change comes off the cash
    }

    void EndVoided() {
        Drain();
        // The strict model waits in FISCAL_RECEIPT_ENDING for the end of a voided receipt.
        if (m_printer.PrinterState() == FPTR_PS_FISCAL_RECEIPT_ENDING)
            Expect(m_w.EndFiscalReceipt(false), 0, "EndFiscalReceipt");
        ++m_books.voided;
        ++m_run.voided;
    }

    // Queued output finishes before the calls that may not run beside it.
    void Drain() {
        QElapsedTimer waited;
        waited.start();
        while (m_printer.State() == OPOS_S_BUSY) {
            if (waited.elapsed() > 10000)
                Fail(QStringLiteral("queued output did not finish in 10 s"));
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
    }

    // A fault in the middle of the items; the item it stops goes again once the fault is cleared,
    // and its price comes back. Nothing when the fault was a power cut, which voids the receipt.
    std::optional<Amount> InjectFault(int kind) {
        Drain();
        ++m_run.faults;
        const QString desc = QStringLiteral("Articolo");
        const Amount price = 1 * Cent;
        int32_t vat = 1;
        const auto tryItem = [&](int32_t expected, int32_t extended) {
            Expect(m_w.PrintRecItem(desc, price, 0, vat, 0, QString()), expected,
                   "PrintRecItem under a fault", extended);
        };
        switch (kind) {
        case 0:
            Debug(QStringLiteral("cover open"));
            tryItem(OPOS_E_EXTENDED, OPOS_EFPTR_COVER_OPEN);
            Debug(QStringLiteral("cover closed"));
            break;
        case 1:
            Debug(QStringLiteral("receipt empty"));
            tryItem(OPOS_E_EXTENDED, OPOS_EFPTR_REC_EMPTY);
            Debug(QStringLiteral("receipt ok"));
            break;
        case 2:
            Debug(QStringLiteral("journal empty"));
            tryItem(OPOS_E_EXTENDED, OPOS_EFPTR_JRN_EMPTY);
            Debug(QStringLiteral("journal ok"));
            break;
        case 3:
            Debug(QStringLiteral("offline"));
            tryItem(OPOS_E_OFFLINE, 0);
            Debug(QStringLiteral("online"));
            break;
        case 4:
            Debug(QStringLiteral("fail PrintRecItem 114 203"));
            tryItem(OPOS_E_EXTENDED, OPOS_EFPTR_REC_EMPTY);
            break;
        default:
            Debug(QStringLiteral("power off"));
            tryItem(OPOS_E_OFFLINE, 0);
            Debug(QStringLiteral("power on"));
            ++m_books.restarts;
            ++m_books.voided;
            ++m_run.voided;
            if (m_printer.PrinterState() != FPTR_PS_MONITOR)
                Fail(QStringLiteral("after a power cut the printer is not in MONITOR"));
            return std::nullopt;
        }
        tryItem(0, 0);
        m_items.push_back({price, vat});
        m_rates[1] += price;
        return price;
    }

    QString m_model;
    std::unique_ptr<SimulatedFiscalPrinter> m_owned = std::make_unique<SimulatedFiscalPrinter>();
    SimulatedFiscalPrinter& m_printer = *m_owned;
    std::optional<clsBenchCore> m_core;
    clsFprtWrapper& m_w;
    std::mt19937 m_random;
    Books m_books;
    Run m_run;
    std::vector<Item> m_items;
    std::array<Amount, 9> m_rates{}; // the open receipt's running total by rate
    Amount m_refunded = 0;           // the open receipt's refunds: the day's once it ends paid
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int receipts = argc > 1 ? std::atoi(argv[1]) : 10000;
    const QString model = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("ZorvaneFPU");
    if (receipts < 1 || !clsBenchCore::IsAcceptedDeviceName(model)) {
        std::fprintf(stderr, "usage: bench_soak [receipts] [ZorvaneFPU|Tessorim]\n");
        return 2;
    }
    // The fiscal memory, report files and the like stay out of the user's data folder.
    QTemporaryDir data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    SetMessageBoxHandler([](const QString& text, MsgButtons buttons, const QString&) {
        std::fprintf(stderr, "soak: unexpected message: %s\n", qPrintable(text));
        return UnattendedAnswer(buttons);
    });

    Soak soak(model, 20240601);
    soak.Open();
    const double before = bench::ResidentMiB();
    double atThousand = 0;
    qsizetype logAtThousand = 0;
    QElapsedTimer clock;
    clock.start();
    for (int i = 1; i <= receipts; ++i) {
        soak.Receipt(i);
        if (i % 25 == 0)
            soak.NonFiscal();
        if (i % 37 == 0)
            soak.XReport();
        if (i % 100 == 0)
            soak.ZReport();
        if (i == 1000) {
            atThousand = bench::ResidentMiB();
            logAtThousand = soak.Log().LineCount();
        }
    }
    const double seconds = clock.nsecsElapsed() / 1e9;
    soak.Compare();
    const double atEnd = bench::ResidentMiB();
    const Run run = soak.Done();
    const Books books = soak.Kept();
    const qsizetype logLines = soak.Log().LineCount();
    const SimulatedFiscalPrinter& printer = soak.Printer();
    const qsizetype receiptRoll = printer.ReceiptRoll().Count(), journalRoll = printer.JournalRoll().Count(),
                    journal = printer.Memory().JournalCount();
    const auto [benchMB, printerMB] = soak.Release();
    std::printf(
        "soak: %d receipts on %s (%d paid, %d voided, %d non-fiscal documents, %d Z reports, %d faults) in "
        "%.1f s, %.0f receipts/s; resident %.1f MB at start, %.1f MB at 1000, %.1f MB at %d; heap held at "
        "the end: the bench %.1f MB (log %lld lines, %lld at 1000), the printer %.1f MB (paper %lld + %lld "
        "elements, journal %lld documents); books agree, grand total %s\n",
        receipts, qPrintable(model), run.fiscal, run.voided, run.nonFiscal, books.zReports, run.faults,
        seconds, receipts / seconds, before, atThousand, atEnd, receipts, benchMB,
        static_cast<long long>(logLines), static_cast<long long>(logAtThousand), printerMB,
        static_cast<long long>(receiptRoll), static_cast<long long>(journalRoll),
        static_cast<long long>(journal), qPrintable(QString::number(double(books.grandNet) / 10000, 'f', 2)));
    return 0;
}
