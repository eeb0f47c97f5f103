#pragma once

#include "tests/endtoend/frontend.h"

#include <QDialog>
#include <QMessageBox>

#include <functional>

/// A user at work on windows that may vanish at any time, on a controller with little to read and
/// little to transfer, so that there are few calls and each can be tried.
struct Scene
{
    using Action = std::function<void(QDialog *)>;

    Scene();

    /// Expects a window, which the user closes in the end if it is still there. The last thing that
    /// @p action does is the one that may cost the window the life.
    void expect(const char *objectName, const Action &action);
    void expectChooser(const char *caption, const QString &path);
    void answer(QMessageBox::StandardButton button);
    void useList(const Action &action);
    void failAlways(const char *fault);

    TemporaryHome home;
    FrontEnd frontEnd;
    QString file; ///< what is loaded
};

/// One thing that users or hosts do.
struct Operation
{
    using Step = void (*)(Scene &scene);

    const char *name;
    Step prepare;
    Step play;
};

/// All of them, on each of their ways.
QVector<Operation> allOperations();
