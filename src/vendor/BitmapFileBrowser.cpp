#include "BitmapFileBrowser.h"

#include "Seams.h"

#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>

namespace {
constexpr int PreviewWidth = 160;
constexpr int PreviewHeight = 120;
} // namespace

BitmapFileBrowser::BitmapFileBrowser(const char* listName, const char* folderButtonName,
                                     const char* pictureName, QWidget* parent)
    : QWidget(parent) {
    fileList = new QListWidget(this);
    fileList->setObjectName(QLatin1StringView(listName));
    fileList->setSelectionMode(QAbstractItemView::SingleSelection);
    cmdFolder = new QPushButton(QStringLiteral("Folder"), this);
    cmdFolder->setObjectName(QLatin1StringView(folderButtonName));
    cmdFolder->setAutoDefault(false);
    picture = new QLabel(this);
    picture->setObjectName(QLatin1StringView(pictureName));
    picture->setFixedSize(PreviewWidth, PreviewHeight);
    picture->setAlignment(Qt::AlignCenter);
    picture->setFrameShape(QFrame::StyledPanel);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(fileList, 0, 0, 2, 1);
    grid->addWidget(cmdFolder, 0, 1, Qt::AlignTop);
    grid->addWidget(picture, 1, 1);
    grid->setColumnStretch(0, 1);

    connect(fileList, &QListWidget::itemClicked, this, &BitmapFileBrowser::FileClicked);
    connect(cmdFolder, &QPushButton::clicked, this, &BitmapFileBrowser::FolderClicked);
}

void BitmapFileBrowser::SetFolder(const QString& folder) {
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return;
    m_folder = folder;
    // The pattern matches in either case, as on the system the bench comes from.
    const QDir dir(folder);
    fileList->clear();
    fileList->addItems(dir.entryList(Pattern().split(u';'), QDir::Files | QDir::Readable | QDir::Hidden,
                                     QDir::Name | QDir::IgnoreCase));
}

QStringList BitmapFileBrowser::Files() const {
    QStringList names;
    for (int row = 0; row < fileList->count(); ++row)
        names.append(fileList->item(row)->text());
    return names;
}

void BitmapFileBrowser::FileClicked(QListWidgetItem* item) {
    if (!item)
        return;
    // No check for a folder that already ends in a separator: the path is what the list shows.
    const QString path = m_folder + u'/' + item->text();
    QPixmap image;
    // A file that is no picture leaves the preview as it was; the path still goes out.
    if (image.load(path)) {
        if (image.width() > PreviewWidth || image.height() > PreviewHeight)
            image = image.scaled(PreviewWidth, PreviewHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        picture->setPixmap(image);
    }
    emit fileChosen(path);
}

void BitmapFileBrowser::FolderClicked() {
    // A cancelled picker gives the empty text, which keeps the present folder.
    SetFolder(PickFolder(m_folder, nullptr, QString()));
}
