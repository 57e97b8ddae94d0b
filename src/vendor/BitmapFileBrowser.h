#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

// A folder's GIF and BMP files, a "Folder" button to change the folder and a preview of the file
// clicked. A click hands the file's path on; nothing here talks to the device.
class BitmapFileBrowser : public QWidget {
    Q_OBJECT
public:
    // The three controls take the names the owning tab gives them.
    BitmapFileBrowser(const char* listName, const char* folderButtonName, const char* pictureName,
                      QWidget* parent = nullptr);

    static QString Pattern() { return QStringLiteral("*.gif;*.bmp"); }

    QString Folder() const { return m_folder; }
    // Lists the folder's files that match the pattern, by name. A path that is not a folder
    // leaves the present one as it is.
    void SetFolder(const QString& folder);
    QStringList Files() const;

    QListWidget* fileList;
    QPushButton* cmdFolder;
    QLabel* picture;

signals:
    // The path of the file clicked: the folder, a separator and the file's name.
    void fileChosen(const QString& path);

private:
    void FileClicked(QListWidgetItem* item);
    void FolderClicked();

    QString m_folder;
};
