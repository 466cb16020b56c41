// host/desktop/qt_copies.cpp: copies of unsaved documents.
// Layer: desktop platform, Qt.
#include "host/desktop/qt_copies.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>
#include <QUuid>

namespace {

QDir folder() {
    const QString place = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir dir(place + QStringLiteral("/unsaved"));
    dir.mkpath(QStringLiteral("."));
    return dir;
}

const QString TITLE = QStringLiteral("title");
const QString FILE_NAME = QStringLiteral("file");

} // namespace

qt_copy::qt_copy(QString s) : stem(std::move(s)), lock(stem + QStringLiteral(".lock")) {
    lock.setStaleLockTime(0); // held as long as its program runs, however long
}

std::unique_ptr<qt_copy> qt_copy::make() {
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);
    std::unique_ptr<qt_copy> copy(new qt_copy(folder().filePath(name)));
    copy->lock.tryLock(0);
    return copy;
}

std::vector<std::unique_ptr<qt_copy>> qt_copy::left_behind() {
    std::vector<std::unique_ptr<qt_copy>> found;
    const QDir dir = folder();
    for (const QFileInfo& info : dir.entryInfoList({QStringLiteral("*.kelb")}, QDir::Files, QDir::Time)) {
        std::unique_ptr<qt_copy> copy(new qt_copy(dir.filePath(info.completeBaseName())));
        if (copy->lock.tryLock(0))
            found.push_back(std::move(copy));
        else
            copy->keep(); // another program's, which runs
    }
    return found;
}

qt_copy::~qt_copy() {
    if (!kept) drop();
}

bool qt_copy::written() const {
    return QFile::exists(file());
}

void qt_copy::tell(const QString& title, const QString& of) {
    QSettings about(stem + QStringLiteral(".ini"), QSettings::IniFormat);
    about.setValue(TITLE, title);
    about.setValue(FILE_NAME, of);
}

QString qt_copy::title() const {
    return QSettings(stem + QStringLiteral(".ini"), QSettings::IniFormat).value(TITLE).toString();
}

QString qt_copy::of() const {
    return QSettings(stem + QStringLiteral(".ini"), QSettings::IniFormat).value(FILE_NAME).toString();
}

QString qt_copy::when() const {
    return QLocale().toString(QFileInfo(file()).lastModified(), QLocale::ShortFormat);
}

void qt_copy::drop() {
    QFile::remove(file());
    QFile::remove(stem + QStringLiteral(".ini"));
}
