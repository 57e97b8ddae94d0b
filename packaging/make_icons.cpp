// Writes the icon at each size asked for, as the hicolor theme lays it out:
//   make_icons SOURCE.png OUTPUT_ROOT NAME SIZE...  ->  OUTPUT_ROOT/SIZExSIZE/apps/NAME.png
// The icon is pixel art: whole multiples of its size keep their pixels sharp, so the scaling
// takes the nearest pixel rather than blurring them.
#include <QDir>
#include <QImage>
#include <QString>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr, "usage: make_icons SOURCE.png OUTPUT_ROOT NAME SIZE...\n");
        return 2;
    }
    const QImage source(QString::fromLocal8Bit(argv[1]));
    if (source.isNull()) {
        std::fprintf(stderr, "make_icons: cannot read %s\n", argv[1]);
        return 1;
    }
    const QString root = QString::fromLocal8Bit(argv[2]);
    const QString name = QString::fromLocal8Bit(argv[3]);
    for (int i = 4; i < argc; ++i) {
        const int size = std::atoi(argv[i]);
        if (size <= 0) {
            std::fprintf(stderr, "make_icons: bad size %s\n", argv[i]);
            return 2;
        }
        const Qt::TransformationMode mode = size % source.width() == 0 && size % source.height() == 0
                                                ? Qt::FastTransformation
                                                : Qt::SmoothTransformation;
        const QImage icon = source.scaled(size, size, Qt::IgnoreAspectRatio, mode);
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(root).arg(size);
        const QString file = folder + QLatin1Char('/') + name + QStringLiteral(".png");
        if (!QDir().mkpath(folder) || !icon.save(file, "PNG")) {
            std::fprintf(stderr, "make_icons: cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
