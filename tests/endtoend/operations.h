#pragma once

#include "tests/endtoend/scene.h"

/// One thing that users or hosts do.
struct Operation
{
    const char *name;
    Scene::Step prepare;
    Scene::Step play; ///< leaves the driver to the caller
};
Q_DECLARE_METATYPE(Operation)

/// All of them, on each of their ways.
QVector<Operation> allOperations();
/// The same as rows of a test's data with one column, "operation".
void addOperations();

/// Little to read and little to transfer, so that there are few calls and each can be tried.
ControllerState smallState();
