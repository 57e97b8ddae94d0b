// fpubench-run on a macro of 10,000 receipt lines against the same program on an empty macro:
// the lines per second of the replay beyond the start and end of the process. Each is run
// alternately, with --open, its standard output to /dev/null; the fastest run of each counts,
// the one least disturbed by whatever else the machine does, and the median is shown beside
// it. The processor time of the runs (user and system) comes from the children's rusage. The
// last line is the verdict:
//   fpubench-run: X lines/s beyond the process start (...)
// Usage: bench_runner [runs] [PATH_TO_FPUBENCH_RUN]   (default 15 runs of each)
#include "BenchSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <sys/resource.h>

namespace {

constexpr int Receipts = 2000; // five lines a receipt: 10,000 lines

double ChildrenCpuMs() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
}

struct Run {
    double wallMs = 0;
    double cpuMs = 0;
};

Run Time(const QString& program, const QString& macro) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    const double cpu = ChildrenCpuMs();
    QElapsedTimer clock;
    clock.start();
    process.start(program, {QStringLiteral("--open"), macro});
    if (!process.waitForFinished(60000) || process.exitCode() != 0) {
        std::fprintf(stderr, "fpubench-run failed on %s\n", qPrintable(macro));
        std::exit(1);
    }
    return {clock.nsecsElapsed() / 1e6, ChildrenCpuMs() - cpu};
}

double Min(std::vector<double> v) {
    return *std::min_element(v.begin(), v.end());
}

double Median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 15;
    const QString program = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral(FPUBENCH_RUN_PATH);

    QTemporaryDir dir;
    const QString receipts = dir.filePath(QStringLiteral("receipts.oposcmd"));
    const QString empty = dir.filePath(QStringLiteral("empty.oposcmd"));
    QFile full(receipts), none(empty);
    if (!full.open(QIODevice::WriteOnly) || full.write(bench::ReceiptMacro(Receipts)) < 0 ||
        !none.open(QIODevice::WriteOnly))
        return 1;
    full.close();
    none.close();

    // The lines the replay writes, --open's own included.
    QProcess count;
    count.start(program, {QStringLiteral("--open"), receipts});
    count.waitForFinished(60000);
    const qsizetype lines = count.readAllStandardOutput().count('\n');

    std::vector<double> fullWall, fullCpu, emptyWall, emptyCpu;
    for (int i = 0; i < runs; ++i) {
        const Run f = Time(program, receipts);
        const Run e = Time(program, empty);
        fullWall.push_back(f.wallMs);
        fullCpu.push_back(f.cpuMs);
        emptyWall.push_back(e.wallMs);
        emptyCpu.push_back(e.cpuMs);
    }
    const double wall = Min(fullWall) - Min(emptyWall);
    const double cpu = Min(fullCpu) - Min(emptyCpu);
    std::printf("%d runs of each; %lld lines written a run\n", runs, static_cast<long long>(lines));
    std::printf("10,000-line macro: wall min %.1f ms, median %.1f ms; cpu min %.1f ms, median %.1f ms\n",
                Min(fullWall), Median(fullWall), Min(fullCpu), Median(fullCpu));
    std::printf("empty macro:       wall min %.1f ms, median %.1f ms; cpu min %.1f ms, median %.1f ms\n",
                Min(emptyWall), Median(emptyWall), Min(emptyCpu), Median(emptyCpu));
    std::printf("by medians: %.0f lines/s wall, %.0f lines/s cpu\n",
                lines / ((Median(fullWall) - Median(emptyWall)) / 1e3),
                lines / ((Median(fullCpu) - Median(emptyCpu)) / 1e3));
    std::printf("fpubench-run: %.0f lines/s beyond the process start (fastest runs, wall %.1f ms; cpu %.0f "
                "lines/s)\n",
                lines / (wall / 1e3), wall, lines / (cpu / 1e3));
    return 0;
}
