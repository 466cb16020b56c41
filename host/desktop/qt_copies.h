// host/desktop/qt_copies.h: copies of unsaved documents, for after a crash or a power failure.
// Layer: desktop platform, Qt.
// Called by the desktop and its windows.
#pragma once

#include <memory>
#include <vector>

#include <QLockFile>
#include <QString>

// The copy of one open document: a file with the notes, one that tells whose it is, and a lock that tells whether the
// program that wrote it still runs. Gone with the scope, since the document was then saved or given up.
class qt_copy {
public:
    // A place for a copy; nothing is written yet. [main]
    static std::unique_ptr<qt_copy> make();
    // The copies that a program which did not end as it should has left; taken over from it. [main]
    static std::vector<std::unique_ptr<qt_copy>> left_behind();

    ~qt_copy();
    qt_copy(const qt_copy&) = delete;
    qt_copy& operator=(const qt_copy&) = delete;

    // The file of the notes, and whether it is there.
    QString file() const { return stem + QStringLiteral(".kelb"); }
    bool written() const;
    // What the document is called and which file it is, empty: none. Kept beside the notes.
    void tell(const QString& title, const QString& of);
    QString title() const;
    QString of() const;
    QString when() const; // it was written last
    // The notes are not needed any more, though the document is still open.
    void drop();
    // Leaves the files to the next start.
    void keep() { kept = true; }

private:
    explicit qt_copy(QString stem);

    QString stem; // of the files' names
    QLockFile lock;
    bool kept = false;
};
