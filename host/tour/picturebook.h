#pragma once

#include <QDir>
#include <QPixmap>

class QWidget;

/// The numbered pictures of a tour, "01-name.png" and so on in one folder.
///
/// Windows are drawn with a plain title bar of our own, so that pictures look the same on every
/// desktop and without one.
class PictureBook
{
public:
    explicit PictureBook(const QDir &folder);

    /// Saves a picture of @p window.
    /// @throw StepFailed if it cannot be written
    void add(const QString &name, QWidget *window);

    /// Saves a picture of @p window with @p above on top of it: a menu where it popped up, a dialog
    /// in the middle.
    void add(const QString &name, QWidget *window, QWidget *above);

    int count() const { return m_count; }

private:
    void save(const QString &name, const QPixmap &picture);

    QDir m_folder;
    int m_count = 0;
};
