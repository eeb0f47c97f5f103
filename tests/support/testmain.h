#pragma once

#include <QObject>

#include <functional>
#include <memory>

/// A class of tests in a program of several. The program's first argument names the one to run by
/// its file: "tst_datestamp"; what follows are options of Qt Test.
class RegisteredTest
{
public:
    using Maker = std::function<std::unique_ptr<QObject>()>;

    /// @p file is the path of the source.
    RegisteredTest(const char *file, const Maker &make);
};

/// Makes a class a test of its program; the class's .moc file follows.
#define VELTRA4_TEST(TestClass)                                                                    \
    static const RegisteredTest registered##TestClass(                                             \
        __FILE__, [] { return std::make_unique<TestClass>(); });
